#pragma once

#include "server/store/StoreAddress.h"
#include "server/store/Table.h"

#include <QMap>

#include <optional>

namespace sysadmin::server {

class Database;

/// A column as the database engine knows it.
struct StoredColumn {
    QString type; ///< "TEXT", "BIGINT" or "BYTES"
    bool notNull = false;
    std::optional<QString> fallback = {}; ///< without quotes
    QString target = {};                  ///< the table that a reference points to
    OnRemoval onRemoval = OnRemoval::Refuse;

    bool operator==(const StoredColumn&) const = default;
};

struct StoredIndex {
    QStringList columns;
    bool unique = false;

    bool operator==(const StoredIndex&) const = default;
};

/// A table as the database engine knows it, its `id` apart.
struct StoredTable {
    QStringList order; ///< the columns' names
    QMap<QString, StoredColumn> columns = {};
    QMap<QString, StoredIndex> indexes = {};
};

/// What is there.
QMap<QString, StoredTable> ReadCatalogue(Database& database);

/// What there is to be for a declaration.
StoredTable StoredForm(const Table& table);

/// How a column is written in CREATE TABLE and ADD COLUMN, without its name.
QString Definition(const StoredColumn& column, StoreAddress::Engine engine);
/// A text or number as SQL.
QString Literal(const StoredColumn& column, const QString& value);

} // namespace sysadmin::server
