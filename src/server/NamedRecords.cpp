#include "server/NamedRecords.h"

#include "server/Library.h"
#include "server/store/Database.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace sysadmin::server {

QString NameOf(const Table& table, const Row& row) {
    for (const char* column : {"name", "code", "title", "description"})
        if (const QString text = row.value(column).toString(); table.Find(column) && !text.isEmpty())
            return text;
    for (const Column& column : table.columns)
        if (const QString text = row.value(column.name).toString();
            column.type == ColumnType::Text && !column.secret && !text.isEmpty())
            return text;
    return row.value("rank").toString();
}

QString KeyOf(const Registry& registry, const RequestRule& rule, const Row& row, qint64 id) {
    if (rule.single)
        return {};
    const QString column = registry.KeyRuleOf(rule).keyColumn;
    return column.isEmpty() ? QString::number(id) : row.value(column).toString();
}

std::optional<qint64> IdOfKey(Context& context, const RequestRule& rule, const QString& key) {
    const QString table = rule.tables.first();
    if (rule.single)
        return context.records.IdWhere(table, "only_one", "Y");
    const RequestRule& keyRule = context.library.GetRegistry().KeyRuleOf(rule);
    if (keyRule.keyColumn.isEmpty())
        return context.records.Find(table, key.toLongLong()) ? std::optional(key.toLongLong()) : std::nullopt;
    if (keyRule.byReference)
        return context.records.IdWhere(table, keyRule.keyColumn, key.toLongLong());
    return context.records.IdOfText(table, keyRule.keyColumn, key);
}

Row RemovedRow(Database& database, const RecordName& record) {
    const QVariant stored = database.FirstValue(
        "SELECT fields FROM history_records WHERE table_name=? AND record_id=? AND kind='removed' "
        "ORDER BY id DESC LIMIT 1",
        {record.table, record.id});
    const QJsonObject fields = QJsonDocument::fromJson(stored.toString().toUtf8()).object();
    Row row;
    for (auto field = fields.begin(); field != fields.end(); ++field)
        row.insert(field.key(), field.value()[0].toVariant());
    return row;
}

} // namespace sysadmin::server
