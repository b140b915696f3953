#pragma once

#include "server/store/FieldsText.h"
#include "server/store/Records.h"

namespace sysadmin::server {

struct Migration;

/// The tables of the history of changes: `history_requests` has one row for a request that changed something
/// (when, who, from where, which request, how many records), `history_records` one for each record that it
/// changed.
///
/// A record's fields stand as JSON, by column: [before, after]. Of an added or removed record those are noted
/// that held something; what is not noted was empty, or "N" where it is a flag. Secret columns never are.
///
/// `subject_table` and `subject_id` name the record to which the changed one belongs: itself, or its owner's
/// owner's ... for rows that go with an owner (a phone's location).
QList<Table> HistoryTables();

/// Takes over what libraries kept in one table with a row per record, from before requests had rows of their
/// own.
void ConvertFormerHistory(Database& database, const Tables& tables);

/// Collects one request's changes and writes them: one entry for each record, however often it was written
/// to.
class HistoryWriter {
public:
    HistoryWriter(Database& database, const Tables& tables, const Author& author);

    /// Notes a record that was added; its values in the order of the table's columns.
    void NoteAdded(const Table& table, qint64 id, const QVariantList& values);
    /// Notes a record's change. Of a changed record `before` and `after` hold the changed columns only.
    void NoteChanged(const Table& table, qint64 id, const Row& before, const Row& after);
    void NoteRemoved(const Table& table, qint64 id, const Row& before);
    /// Writes what was noted.
    void Finish();

    /// The number of this request in the history, greater than that of any request before it; 0 while it has
    /// changed nothing.
    qint64 Number() const { return m_request; }
    /// The records that it changed, each once, in the order of their first change.
    QList<RecordName> Changed() const;

private:
    enum class Kind { Added, Changed, Removed };
    struct Entry {
        RecordName record;
        RecordName subject;
        Kind kind = Kind::Changed;
        Row before = {};
        Row after = {};
        QByteArray fields = {}; ///< the same as it is written, where that is known already
        bool isWritten = false;
    };
    /// A column that is noted.
    struct NotedColumn {
        const Column* column;
        qsizetype place; ///< among the table's columns
        QByteArray key;
    };
    using Fields = QList<NotedColumn>; ///< by their names
    const Fields& FieldsOf(const Table& table);
    /// The record's entry that is still to be written, if it has one.
    Entry* Waiting(const Table& table, qint64 id);
    Entry& Begin(const Table& table, qint64 id, const QVariant& owner, Kind kind);
    QByteArray Written(const Entry& entry);
    RecordName SubjectOf(const Table& table, qint64 id, const QVariant& owner);

    Database& m_database;
    const Tables& m_tables;
    Author m_author;
    qint64 m_request = 0;
    QList<Entry> m_entries;
    QHash<QPair<QString, qint64>, qsizetype> m_places; // of records in the entries
    QHash<QString, Fields> m_fields;
    FieldsText m_text;
    QHash<QPair<QString, qint64>, RecordName> m_subjects; // of owners
};

/// The number of the last request that changed the record or a row that belongs to it; 0 when none is known.
qint64 LastChangeOf(Database& database, const RecordName& record);

} // namespace sysadmin::server
