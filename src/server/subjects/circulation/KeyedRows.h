#pragma once

#include "server/Children.h"
#include "server/ReplyFields.h"
#include "server/SubjectField.h"
#include "wire/Counts.h"

namespace sysadmin::server {

struct Context;

/// The rows of a record that are known by the record of another table: the settings of a policy group for
/// each item type, its locations, its calendars. A record has one row for each of those at the most.
struct KeyedRows {
    QString table;
    QString owner; ///< the column that refers to the record
    QString state; ///< tag of the state, which begins a row in requests unless there is a marker
    QString keyTag;
    QString keyColumn;
    QString keyTable;
    QList<SubjectField> fields = {};
    OnRemoval onKeyRemoval = OnRemoval::RemoveToo;
    /// The same record may stand in the rows of one record only.
    bool exclusive = false;
    QString marker = {}; ///< tag that begins a row in requests; the state's when empty

    Table StoredAs(const QString& ownerTable) const;
};

/// A row as a request carries it.
struct KeyedRow {
    QString state;
    QString key;
    wire::Fields fields; ///< all of the row, up to the next one
};

/// The rows that a request carries; none when one of them has no known state or says no key.
std::optional<QList<KeyedRow>> ReadKeyedRows(const KeyedRows& rows, const wire::Fields& request);

/// Stores what a request says of a record's rows. `among` is SQL over the keys' table `m` that says which
/// records may be keys. 3 when a row is not in order, 5 when a key is no such record.
qint16 ApplyKeyedRows(Context& context, const KeyedRows& rows, qint64 owner, const QString& among,
                      const QVariantList& amongValues, const wire::Fields& request);

/// Appends a row for each record that may be a key, what is not stored with its default. `before` are further
/// columns (SQL over the key's record `m`) with their tags, which come first.
void PutKeyedRows(Context& context, const KeyedRows& rows, qint64 owner,
                  const QList<QPair<QString, QString>>& before, const QString& among,
                  const QVariantList& amongValues, ReplyFields& reply);

/// The record of the key, if it is among those that may be one.
std::optional<qint64> KeyRecord(Context& context, const QString& table, const QString& key,
                                const QString& among = {}, const QVariantList& amongValues = {});

/// A number that may have a decimal point and is not negative, or nothing.
bool IsAmount(const QString& value);
/// A unit by its letter: D, H or M.
bool IsShortUnit(const QString& value);

/// A count as these records have them.
inline constexpr qint64 MostCount = wire::MostCount;
SubjectField Count(const QString& tag, const QString& column);
SubjectField Amount(const QString& tag, const QString& column, const QString& fallback = {});

} // namespace sysadmin::server
