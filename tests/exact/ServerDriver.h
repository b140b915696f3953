#pragma once

#include "exact/ExactTables.h"
#include "support/TestServer.h"

namespace sysadmin::exact {

/// Takes the server through everything that a table's rows in `tests/exact` say of its requests, as an
/// operator who holds the right of the screen's area and no other one, and collects where it differs.
class ServerDriver {
public:
    /// `registry`: what the server stores and answers, possibly altered. `folder`: a sample library of its
    /// own.
    ServerDriver(const Screen& screen, const Table& table, std::shared_ptr<const server::Registry> registry,
                 const QString& folder, bool stopAtFirst = false);

    /// What differs, a line each.
    QStringList Run();

private:
    struct Stop {};
    using Values = QMap<QString, QString>; // by tag

    void Expect(const QString& what, const QString& is, const QString& wanted);
    void ExpectStatus(const QString& what, const wire::Reply& reply, qint16 wanted);
    void Table();
    void Record();
    void Rights();
    void TakeRight();
    void FindEntries();
    void Refusals(const QString& id);
    void WrongValues(const QString& key);
    void Duplicates();
    void Stored(const QString& what, const QString& key, const Values& wanted,
                const QMap<QString, QStringList>& in);
    void ExpectOffered(const QString& request, const wire::Reply& reply);
    void History(const QString& request);

    Values ValuesOf(int record);
    QString Key(const Values& values, const QString& id) const;
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server->Send(name, fields);
    }
    wire::Reply Put(bool adding, const Values& values, const QString& key = {},
                    const QMap<QString, QStringList>& in = {}, const QMap<QString, QStringList>& out = {},
                    const Values& before = {});
    QStringList Taken(const wire::Fields& reply, const QString& tag) const;

    const Screen& m_screen;
    const exact::Table& m_table;
    bool m_stopAtFirst;
    QStringList m_differences;
    std::unique_ptr<testing::TestServer> m_server;
    QMap<QString, QStringList> m_entries; ///< ids that a choice may have, by control
};

} // namespace sysadmin::exact
