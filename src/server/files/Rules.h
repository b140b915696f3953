#pragma once

#include "server/files/Compare.h"
#include "server/store/Records.h"

#include <QSet>

#include <functional>

namespace sysadmin::server {

/// The records that an import wrote, and the rules of their declarations that they must follow in the end.
class WrittenRecords {
public:
    /// `tables` are those that are about to change. Notes which rules are broken as things are: nobody is
    /// told of that.
    WrittenRecords(Records& records, FileForm& form, const QStringList& tables);

    void Note(const Difference& difference, qint64 id);
    /// To be called before the record is removed.
    void NoteRemoval(const Difference& difference);

    /// What is wrong with them. Throws `StoreError`.
    QList<FileProblem> Check();

private:
    void EachStoredRule(const std::function<void(const Table&, const StoredRule&)>& visit) const;
    void CheckStored();
    void CheckRows(const Table& table);
    void CheckOnlyOne(const Table& table);
    void CheckParts(const Table& table);
    void CheckPartsOf(const Table& table, const Table& owners, qint64 owner);
    int LineOf(const QString& table, qint64 id) const { return m_lines.value(table).value(id); }

    Records& m_records;
    FileForm& m_form;
    QHash<QString, QHash<qint64, int>> m_lines;
    QHash<QString, QSet<qint64>> m_owners; ///< whose parts changed, by the parts' table
    QSet<QString> m_changed;
    QHash<const StoredRule*, QList<qint64>> m_brokenBefore;
    QList<FileProblem> m_problems;
};

} // namespace sysadmin::server
