#pragma once

#include "server/Prepared.h"
#include "server/Subject.h"
#include "server/store/Schema.h"

#include <deque>

namespace sysadmin::server {

enum class Access { View, Edit };

using Handler = std::function<Answer(Context&, const wire::Fields& request)>;

/// Does what of a request is slow, outside the transaction in which the handler runs: opens the password that
/// a request gives to an operator and checks it, asks another server. Null when there is nothing to prepare.
using Preparation = std::function<std::shared_ptr<Prepared>(Database&, const Library&, const Requester&,
                                                            const wire::Fields& request)>;

/// A numbered request: who may send it and what carries it out.
struct RequestRule {
    QString name;
    Area area = Area::AnyOperator;
    Access access = Access::View;
    /// It changes data (or the session), so its reply is kept with the change and it is never carried out
    /// twice.
    bool changes = false;
    Handler handler;
    /// In place of the area's rights.
    std::optional<RequestRights> rights = {};
    /// The tables of the records that it reads or changes; none when that is nothing that an operator edits.
    QStringList tables = {};
    /// The tag of the record's key, the first of these that was sent; none: all records, or the only one.
    QStringList keyTags = {};
    /// The unique text, or the reference to which there is one record, that is the key; empty: the id.
    QString keyColumn = {};
    bool byReference = false; ///< the key column is a reference
    /// SQL that finds the record's id by the key that is sent, where that is a part's; empty: the key is its
    /// own.
    QString keyQuery = {};
    bool several = false;       ///< the key may be sent many times: so many records are changed; no key: all
    bool single = false;        ///< there is one record of the table at the most
    QStringList narrowing = {}; ///< tags with which a list answers a part of the records only
    /// Sets apart what a session reads of a record that several requests read in parts.
    QString scope = {};
    /// Runs before the transaction of the handler; empty for most.
    Preparation prepare = {};

    bool Allows(const Rights& held) const;
    /// The request's own word ("VenTp" of "LstVenTp"): what its records are called towards the client.
    QString Word() const;
};

/// Everything that the server knows to store and to answer, collected once when the program starts.
class Registry {
public:
    /// `alter` may change each subject before it is taken in: how tests find out whether a wrong letter is
    /// noticed. Empty in the program.
    explicit Registry(std::function<void(Subject&)> alter = {});
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// Declares a table, or further columns and rules of one that is declared already.
    void AddTable(const Table& table);
    /// Declares a subject: its tables, and its requests with their handlers.
    void AddSubject(Subject subject);
    void AddRequest(RequestRule rule);
    /// Shorthand for a request that only reads.
    void AddRead(const QString& name, Area area, Handler handler);
    /// A request that answers these lists, one after the other.
    void AddList(const QString& name, Area area, const QList<ColumnList>& lists);
    /// Shorthand for a request that changes something.
    void AddChange(const QString& name, Area area, Handler handler);
    /// Says which records a request reads or changes.
    void About(const QString& request, const QStringList& tables, const QStringList& keyTags = {},
               const QString& keyColumn = {}, const QString& scope = {});
    /// The same of a request that names a part of the record: `keyQuery` finds the record's id by the part's
    /// key.
    void AboutOwner(const QString& request, const QString& table, const QString& keyTag,
                    const QString& keyQuery, const QString& scope);
    /// The same of a request that changes several records, each named by its id under the tag; without a tag
    /// all records of the table, as its list shows them.
    void AboutSeveral(const QString& request, const QString& table, const QString& keyTag = {},
                      const QString& scope = {});
    /// Gives a request a preparation.
    void Prepare(const QString& request, Preparation preparation);
    void AddMigration(Migration migration);

    /// The rule of a request name, or null.
    const RequestRule* Find(const QString& name) const;
    /// The subject that keeps its records in the table; null where nothing is declared of it.
    const Subject* SubjectOf(const QString& table) const;
    /// The rule of the request that reads one record of the table, or else the list of them; null when there
    /// is none.
    const RequestRule* ReadRuleOf(const QString& table) const;
    /// The same of the records that this word stands for towards the client.
    const RequestRule* ReadRuleOfWord(const QString& word) const;
    /// Of the requests about the same records one that names a record by its key; a rule that reads a list
    /// does not.
    const RequestRule& KeyRuleOf(const RequestRule& rule) const;
    /// The words of the requests that are about one of the tables.
    QStringList WordsOf(const QStringList& tables) const;
    QStringList RequestNames() const { return m_requests.keys(); }
    const Tables& GetTables() const { return m_tables; }
    Schema GetSchema() const;

private:
    std::function<void(Subject&)> m_alter;
    std::deque<Subject> m_subjects; // handlers refer to them
    QHash<QString, RequestRule> m_requests;
    Tables m_tables;
    QStringList m_tableOrder;
    QList<Migration> m_migrations;
};

} // namespace sysadmin::server
