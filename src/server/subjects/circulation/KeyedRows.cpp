#include "server/subjects/circulation/KeyedRows.h"

#include "server/Context.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

bool IsState(const QString& state) {
    return state == rowstate::Added || state == rowstate::Changed || state == rowstate::Removed ||
           state == rowstate::Unchanged;
}

QString Condition(const QString& among) {
    return among.isEmpty() ? QString() : " AND (" + among + ')';
}

} // namespace

bool IsAmount(const QString& value) {
    const QString text = value.trimmed();
    return text.size() <= 16 && !text.startsWith('-') && !text.startsWith('+');
}

bool IsShortUnit(const QString& value) {
    return value.size() == 1 && QString("DHM").contains(value);
}

SubjectField Count(const QString& tag, const QString& column) {
    return SubjectField::Whole(tag, column, 0, MostCount).Default("0");
}

SubjectField Amount(const QString& tag, const QString& column, const QString& fallback) {
    return SubjectField::Decimal(tag, column).Checked(IsAmount).Default(fallback);
}

Table KeyedRows::StoredAs(const QString& ownerTable) const {
    Table stored{.name = table,
                 .columns = {{.name = owner,
                              .type = ColumnType::Reference,
                              .target = ownerTable,
                              .onRemoval = OnRemoval::RemoveToo},
                             {.name = keyColumn,
                              .type = ColumnType::Reference,
                              .target = keyTable,
                              .onRemoval = onKeyRemoval}},
                 .uniqueSets = {exclusive ? QStringList{keyColumn} : QStringList{owner, keyColumn}},
                 .owner = owner};
    for (const SubjectField& field : fields)
        stored.columns << field.StoredAs();
    return stored;
}

std::optional<QList<KeyedRow>> ReadKeyedRows(const KeyedRows& rows, const wire::Fields& request) {
    QStringList tags{rows.keyTag, rows.state};
    for (const SubjectField& field : rows.fields)
        tags << field.tag;
    const QString marker = rows.marker.isEmpty() ? rows.state : rows.marker;
    QList<KeyedRow> read;
    for (const wire::Field& field : request) {
        if (field.tag == marker)
            read.append(KeyedRow());
        if (!read.isEmpty() && tags.contains(field.tag))
            read.last().fields.append(field);
    }
    for (KeyedRow& row : read) {
        row.key = wire::FirstValue(row.fields, rows.keyTag);
        row.state = wire::FirstValue(row.fields, rows.state);
        if (!IsState(row.state) || row.key.isEmpty())
            return std::nullopt;
    }
    return read;
}

std::optional<qint64> KeyRecord(Context& context, const QString& table, const QString& key,
                                const QString& among, const QVariantList& amongValues) {
    bool isNumber = false;
    const qint64 id = key.toLongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    const QVariant found = context.database.FirstValue(
        "SELECT m.id FROM " + table + " m WHERE m.id=?" + Condition(among), QVariantList{id} + amongValues);
    return found.isValid() ? std::optional(found.toLongLong()) : std::nullopt;
}

qint16 ApplyKeyedRows(Context& context, const KeyedRows& rows, qint64 owner, const QString& among,
                      const QVariantList& amongValues, const wire::Fields& request) {
    const auto sent = ReadKeyedRows(rows, request);
    if (!sent)
        return status::ColumnError;
    for (const KeyedRow& row : *sent) {
        if (row.state == rowstate::Unchanged)
            continue;
        const QVariant stored = context.database.FirstValue(
            "SELECT id FROM " + rows.table + " WHERE " + rows.owner + "=? AND " + rows.keyColumn + "=?",
            {owner, row.key.toLongLong()});
        if (row.state == rowstate::Removed) {
            if (stored.isValid())
                context.records.Remove(rows.table, stored.toLongLong());
            continue;
        }
        const auto key = KeyRecord(context, rows.keyTable, row.key, among, amongValues);
        if (!key)
            return status::NotFound;
        Row values;
        if (const qint16 refused = ReadFields(context, rows.fields, row.fields, !stored.isValid(), values))
            return refused;
        if (stored.isValid()) {
            context.records.Update(rows.table, stored.toLongLong(), values);
            continue;
        }
        values.insert(rows.owner, owner);
        values.insert(rows.keyColumn, *key);
        context.records.Insert(rows.table, values);
    }
    return status::Ok;
}

void PutKeyedRows(Context& context, const KeyedRows& rows, qint64 owner,
                  const QList<QPair<QString, QString>>& before, const QString& among,
                  const QVariantList& amongValues, ReplyFields& reply) {
    QStringList tags;
    QStringList columns;
    QStringList fallbacks;
    for (const auto& [tag, column] : before) {
        tags << tag;
        columns << column;
        fallbacks << QString();
    }
    for (const SubjectField& field : rows.fields) {
        tags << field.tag;
        columns << QString("r." + field.column);
        fallbacks << field.fallback;
    }
    const QString sql = "SELECT r.id, " + columns.join(", ") + " FROM " + rows.keyTable + " m LEFT JOIN " +
                        rows.table + " r ON r." + rows.keyColumn + "=m.id AND r." + rows.owner +
                        "=? WHERE TRUE" + Condition(among) + " ORDER BY m.id";
    context.database.Each(sql, QVariantList{owner} + amongValues, [&](const ResultRow& row) {
        const bool isStored = row.value(0).isValid();
        for (qsizetype i = 0; i < tags.size(); ++i) {
            const bool isDefault = !isStored && i >= before.size();
            Put(reply, tags[i], isDefault ? fallbacks[i] : row.value(int(i) + 1).toString());
        }
    });
}

} // namespace sysadmin::server
