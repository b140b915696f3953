#pragma once

#include "server/store/Table.h"

#include <QList>

#include <functional>

namespace sysadmin::server {

class Database;

/// A change of the stored data that adding tables and columns does not cover.
struct Migration {
    int version = 0; ///< the schema version after it
    std::function<void(Database&)> run;
};

/// What a library's database must look like.
struct Schema {
    QList<Table> tables = {};
    QList<Migration> migrations = {}; ///< in the order of their versions

    /// The version of a database that has them all.
    int Version() const { return migrations.isEmpty() ? 1 : migrations.last().version; }
};

/// Brings the database to the schema, in one transaction: makes missing tables, columns and indexes, then
/// runs the migrations that it has not seen. A new database sees none of them. Answers an explanation when
/// the database is of a later version than the schema, else an empty text. Throws `StoreError`.
QString BringToSchema(Database& database, const Schema& schema);

/// Texts that a library keeps about itself, by name ("schema_version", "library_name", ...).
QString ReadSetting(Database& database, const QString& name, const QString& fallback = {});
void WriteSetting(Database& database, const QString& name, const QString& value);

} // namespace sysadmin::server
