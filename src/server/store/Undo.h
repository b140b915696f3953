#pragma once

#include "server/store/Records.h"

#include <QJsonObject>

#include <tuple>

namespace sysadmin::server {

/// Which entries of the history are about a record: SQL over `history_records` and its values.
struct HistoryOf {
    QString condition;
    QVariantList values;
};

/// The entries of the record, of its parts, and of rows that are shown as its members. (Of the latter some
/// that say nothing about it may be among them.)
HistoryOf EntriesOf(const Tables& tables, const RecordName& record);

/// Whether an entry of the history is about the record itself or one of its parts: the row that changed, and
/// the record to which that belongs.
bool IsOwn(const Tables& tables, const RecordName& record, const RecordName& row, const RecordName& subject);
/// Whether it says something about the record.
bool IsAbout(const Tables& tables, const RecordName& record, const RecordName& row, const RecordName& subject,
             const QJsonObject& fields);

/// Makes a record what it once was, for a transaction that is not kept: a row of another record that stands
/// in the way (it has the code now, or the place) loses what it has of it. Secrets stay what they are; what
/// refers to a record that is gone refers to nothing. Everything throws `StoreError`.
class Undo {
public:
    Undo(Database& database, const Tables& tables)
        : m_database(database)
        , m_tables(tables) {}

    /// Takes back what requests after the one of this number in the history did to the record.
    void ChangesAfter(const RecordName& record, qint64 number);

private:
    void TakeBack(const Table& table, qint64 id, const QString& kind, const QJsonObject& fields);
    void Write(const Table& table, qint64 id, const Row& row, bool isNew);
    void Delete(const Table& table, qint64 id);
    void MakeRoom(const Table& table, qint64 id, const Row& row);
    void Park(const Table& table, const QString& column, const QString& condition,
              const QVariantList& values);
    void SetReferences();

    using Reference = std::tuple<QString, qint64, QString>; ///< table, row and column

    Database& m_database;
    const Tables& m_tables;
    QMap<Reference, qint64> m_waiting; ///< for their record to come back
};

} // namespace sysadmin::server
