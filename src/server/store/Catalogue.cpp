#include "server/store/Catalogue.h"

#include "server/store/Database.h"

#include <QCryptographicHash>

namespace sysadmin::server {

namespace {

using Engine = StoreAddress::Engine;

/// The queries by which an engine tells about its tables. Each answers the table's name first.
struct CatalogueQueries {
    const char* columns;    ///< name, type, whether null is refused (1), default
    const char* references; ///< column, target, what happens on removal
    const char* indexes;    ///< index, whether it is unique (1), column; in the order of the columns
};

const CatalogueQueries& QueriesOf(Engine engine) {
    static const CatalogueQueries sqlite{
        "SELECT m.name, c.name, c.type, c.\"notnull\", c.dflt_value FROM sqlite_master m, "
        "pragma_table_info(m.name) c WHERE m.type='table' ORDER BY m.name, c.cid",
        "SELECT m.name, f.\"from\", f.\"table\", f.on_delete FROM sqlite_master m, "
        "pragma_foreign_key_list(m.name) f WHERE m.type='table'",
        "SELECT m.name, l.name, l.\"unique\", i.name FROM sqlite_master m, pragma_index_list(m.name) l, "
        "pragma_index_info(l.name) i WHERE m.type='table' AND l.origin='c' ORDER BY m.name, l.name, i.seqno"};
    static const CatalogueQueries postgres{
        "SELECT table_name, column_name, data_type, CASE is_nullable WHEN 'NO' THEN 1 ELSE 0 END, "
        "column_default FROM information_schema.columns WHERE table_schema=current_schema() "
        "ORDER BY table_name, ordinal_position",
        "SELECT t.relname, a.attname, f.relname, CASE c.confdeltype WHEN 'c' THEN 'CASCADE' WHEN 'n' THEN "
        "'SET NULL' ELSE 'NO ACTION' END FROM pg_constraint c JOIN pg_class t ON t.oid=c.conrelid "
        "JOIN pg_namespace n ON n.oid=t.relnamespace JOIN pg_class f ON f.oid=c.confrelid "
        "JOIN pg_attribute a ON a.attrelid=t.oid AND a.attnum=c.conkey[1] "
        "WHERE c.contype='f' AND n.nspname=current_schema()",
        "SELECT t.relname, i.relname, CASE WHEN x.indisunique THEN 1 ELSE 0 END, a.attname FROM pg_index x "
        "JOIN pg_class i ON i.oid=x.indexrelid JOIN pg_class t ON t.oid=x.indrelid "
        "JOIN pg_namespace n ON n.oid=t.relnamespace "
        "JOIN LATERAL unnest(CAST(x.indkey AS int2[])) WITH ORDINALITY k(attnum, place) ON TRUE "
        "JOIN pg_attribute a ON a.attrelid=t.oid AND a.attnum=k.attnum "
        "WHERE n.nspname=current_schema() AND NOT x.indisprimary ORDER BY t.relname, i.relname, k.place"};
    return engine == Engine::Sqlite ? sqlite : postgres;
}

QString TypeFromEngine(const QString& type) {
    const QString name = type.toUpper();
    return name == u"BLOB" || name == u"BYTEA" ? QString("BYTES") : name;
}

/// A default as it was declared: PostgreSQL writes 'N'::text for 'N'.
std::optional<QString> FallbackFromEngine(const QVariant& stored) {
    QString text = stored.toString();
    if (stored.isNull() || text.startsWith(u"NULL"))
        return std::nullopt;
    if (!text.startsWith('\''))
        return text.section("::", 0, 0);
    text = text.mid(1, text.lastIndexOf('\'') - 1);
    return text.replace("''", "'");
}

/// The name of an index. PostgreSQL cuts names after 63 bytes, which would let two of them become one.
QString IndexName(const QString& table, const QStringList& columns) {
    constexpr int Longest = 56;
    constexpr int Kept = 40;
    const QString name = table + '_' + columns.join('_');
    if (name.size() <= Longest)
        return name + "_ix";
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Md5).toHex();
    return name.left(Kept) + '_' + QString::fromLatin1(hash.left(Longest - Kept - 4)) + "_ix";
}

StoredColumn StoredForm(const Column& column) {
    switch (column.type) {
    case ColumnType::Text:
        return {.type = "TEXT",
                .notNull = true,
                .fallback = column.fallback.isNull() ? QString("") : column.fallback};
    case ColumnType::Flag:
        return {.type = "TEXT",
                .notNull = true,
                .fallback = column.fallback.isEmpty() ? QString("N") : column.fallback};
    case ColumnType::Whole:
        return {.type = "BIGINT",
                .fallback = column.fallback.isEmpty() ? std::nullopt : std::optional(column.fallback)};
    case ColumnType::Reference:
        return {.type = "BIGINT", .target = column.target, .onRemoval = column.onRemoval};
    case ColumnType::Bytes:
        return {.type = "BYTES"};
    }
    Q_UNREACHABLE();
}

} // namespace

QMap<QString, StoredTable> ReadCatalogue(Database& database) {
    const CatalogueQueries& queries = QueriesOf(database.GetEngine());
    QMap<QString, StoredTable> tables;
    database.Each(queries.columns, {}, [&](const ResultRow& row) {
        StoredTable& table = tables[row.value(0).toString()];
        const QString name = row.value(1).toString();
        if (name == u"id")
            return;
        table.order << name;
        table.columns.insert(name, {.type = TypeFromEngine(row.value(2).toString()),
                                    .notNull = row.value(3).toInt() != 0,
                                    .fallback = FallbackFromEngine(row.value(4))});
    });
    database.Each(queries.references, {}, [&](const ResultRow& row) {
        StoredColumn& column = tables[row.value(0).toString()].columns[row.value(1).toString()];
        column.target = row.value(2).toString();
        const QString effect = row.value(3).toString();
        column.onRemoval = effect == u"CASCADE"    ? OnRemoval::RemoveToo
                           : effect == u"SET NULL" ? OnRemoval::Clear
                                                   : OnRemoval::Refuse;
    });
    database.Each(queries.indexes, {}, [&](const ResultRow& row) {
        StoredIndex& index = tables[row.value(0).toString()].indexes[row.value(1).toString()];
        index.unique = row.value(2).toInt() != 0;
        index.columns << row.value(3).toString();
    });
    return tables;
}

StoredTable StoredForm(const Table& table) {
    StoredTable stored;
    const auto add = [&](const QString& name, const StoredColumn& column) {
        stored.order << name;
        stored.columns.insert(name, column);
    };
    const auto index = [&](const QStringList& columns, bool unique) {
        StoredIndex& made = stored.indexes[IndexName(table.name, columns)];
        made = {.columns = columns, .unique = unique || made.unique};
    };
    for (const Column& column : table.columns)
        add(column.name, StoredForm(column));
    for (const UniqueText& unique : table.uniqueTexts) {
        const QString folded = FoldedName(unique.column);
        add(folded, {.type = "TEXT"});
        index(unique.within.isEmpty() ? QStringList{folded} : QStringList{unique.within, folded}, true);
    }
    for (const QStringList& set : table.uniqueSets)
        index(set, true);
    for (const Column& column : table.columns)
        if (column.type == ColumnType::Reference)
            index({column.name}, false);
    for (const QStringList& set : table.indexed)
        index(set, false);
    return stored;
}

QString Literal(const StoredColumn& column, const QString& value) {
    return column.type == u"TEXT" ? '\'' + QString(value).replace('\'', "''") + '\'' : value;
}

QString Definition(const StoredColumn& column, Engine engine) {
    QString text = column.type != u"BYTES" ? column.type : engine == Engine::Sqlite ? "BLOB" : "BYTEA";
    if (column.notNull)
        text += " NOT NULL";
    if (column.fallback)
        text += " DEFAULT " + Literal(column, *column.fallback);
    if (!column.target.isEmpty()) {
        text += " REFERENCES " + column.target + "(id)";
        if (column.onRemoval != OnRemoval::Refuse)
            text += column.onRemoval == OnRemoval::RemoveToo ? " ON DELETE CASCADE" : " ON DELETE SET NULL";
    }
    return text;
}

} // namespace sysadmin::server
