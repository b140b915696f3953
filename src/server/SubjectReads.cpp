#include "server/SubjectReads.h"

#include "server/store/Database.h"

namespace sysadmin::server {

namespace {

void AppendRecord(const Shape& shape, const ResultRow& row, ReplyFields& reply) {
    for (qsizetype i = 0; i < shape.tags.size(); ++i)
        reply.Put(shape.tags[i], row.Utf8(int(i) + 1));
}

bool IsNumber(const Subject& subject, const QString& column) {
    for (const SubjectField& field : subject.fields)
        if (field.column == column)
            return field.kind == SubjectField::Kind::Whole || field.kind == SubjectField::Kind::Reference ||
                   field.kind == SubjectField::Kind::Joined;
    for (const Column& hidden : subject.columns)
        if (hidden.name == column)
            return hidden.type == ColumnType::Whole || hidden.type == ColumnType::Reference;
    return false;
}

/// The id of the record of the key that a request names.
std::optional<qint64> IdOfKey(Context& context, const Subject& subject, const wire::Fields& request,
                              bool useOriginal) {
    if (subject.single)
        return context.records.IdWhere(subject.table, "only_one", "Y");
    std::optional<QString> key;
    if (useOriginal && !subject.originalKey.isEmpty())
        key = Sent(request, subject.originalKey);
    if (!key)
        key = Sent(request, subject.key);
    if (!key)
        return std::nullopt;
    if (const SubjectField* field = KeyField(subject))
        return context.records.IdOfText(subject.table, field->column, *key);
    bool valid = false;
    const qint64 id = key->toLongLong(&valid);
    return valid ? context.records.IdWhere(subject.table, "id", id) : std::nullopt;
}

} // namespace

std::optional<QString> Sent(const wire::Fields& request, const QString& tag) {
    for (const wire::Field& field : request)
        if (field.tag == tag)
            return field.value;
    return std::nullopt;
}

const SubjectField* KeyField(const Subject& subject) {
    for (const SubjectField& field : subject.fields)
        if (field.tag == subject.key && field.kind == SubjectField::Kind::Text)
            return &field;
    return nullptr;
}

std::optional<qint64> FindKey(Context& context, const Subject& subject, const wire::Fields& request,
                              bool useOriginal) {
    const auto id = IdOfKey(context, subject, request, useOriginal);
    const auto within = subject.within ? Sent(request, subject.within->tag) : std::nullopt;
    if (!id || !within)
        return id;
    const QVariant held = context.database.FirstValue(
        "SELECT " + subject.within->column + " FROM " + subject.table + " WHERE id=?", {*id});
    return held.toString() == within->trimmed() ? id : std::nullopt;
}

Shape MakeShape(const Subject& subject, bool list) {
    Shape shape;
    QStringList columns{"t.id"};
    QString joins;
    // The reply to a get leaves the id out: the screen knows for which one it asked.
    if (list && !KeyField(subject)) {
        shape.tags.emplaceBack(subject.key);
        columns << "t.id";
    }
    for (const SubjectField& field : subject.fields) {
        if (list ? !field.inList : !field.inGet)
            continue;
        if (field.kind == SubjectField::Kind::Secret) {
            shape.tags.emplaceBack(field.mark);
            columns << QString("CASE WHEN t." + field.column + "='' THEN 'N' ELSE 'Y' END");
            continue;
        }
        shape.tags.emplaceBack(field.tag);
        if (field.kind == SubjectField::Kind::Uses) {
            columns << QString("(SELECT COALESCE(SUM(u.used), 0) FROM usage u WHERE u.table_name='" +
                               subject.table + "' AND u.record_id=t.id)");
            continue;
        }
        if (field.targetColumn.isEmpty()) {
            columns << QString("t." + field.column);
            continue;
        }
        const QString alias = QString("j%1").arg(columns.size());
        columns << QString(alias + '.' + field.targetColumn);
        joins += " LEFT JOIN " + field.target + ' ' + alias + " ON " + alias + ".id=t." + field.column;
    }
    shape.select = "SELECT " + columns.join(", ") + " FROM " + subject.table + " t" + joins;
    return shape;
}

qint16 ReadAll(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request,
               ReplyFields& reply) {
    QStringList conditions;
    QVariantList values;
    for (const ListFilter& filter : subject.listFilters) {
        const auto value = Sent(request, filter.tag);
        if (!value)
            continue;
        conditions << QString("t." + filter.column + "=?");
        if (!IsNumber(subject, filter.column)) {
            values << *value;
            continue;
        }
        bool valid = false;
        values << value->toLongLong(&valid);
        if (!valid)
            return status::ColumnError;
    }
    if (subject.batch > 0) {
        const QString name = subject.requests.list;
        const bool goesOn = Sent(request, "55") == "Y" && context.cursor.request == name;
        if (!goesOn)
            context.cursor = {name, 0};
        conditions << "t.id>?";
        values << context.cursor.after;
    }
    QString sql = shape.select;
    if (!conditions.isEmpty())
        sql += " WHERE " + conditions.join(" AND ");
    QStringList order;
    if (subject.batch == 0)
        for (const QString& column : subject.order)
            order << QString("t." + column);
    order << "t.id";
    sql += " ORDER BY " + order.join(", ");
    if (subject.batch > 0)
        sql += " LIMIT " + QString::number(subject.batch + 1);

    int sent = 0;
    bool more = false;
    context.database.Each(sql, values, [&](const ResultRow& row) {
        if (subject.batch > 0 && sent == subject.batch) {
            more = true;
            return;
        }
        AppendRecord(shape, row, reply);
        ++sent;
        if (subject.batch > 0)
            context.cursor.after = row.value(0).toLongLong();
    });
    for (const ColumnList& list : subject.alsoListed)
        PutList(context, list, reply);
    if (subject.addToList)
        subject.addToList(context, request, reply);
    return more ? status::Continues : status::Ok;
}

Answer ReadRecord(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request) {
    Answer answer;
    const auto id = FindKey(context, subject, request, false);
    if (!id && subject.single) {
        if (subject.requests.add.isEmpty())
            for (const SubjectField& field : subject.fields)
                if (field.inGet)
                    Put(answer.fields, field.tag, field.fallback);
        if (subject.addToGet)
            subject.addToGet(context, 0, answer.fields);
        return answer;
    }
    if (!id)
        return {status::NotFound};
    context.database.Each(shape.select + " WHERE t.id=?", {*id},
                          [&](const ResultRow& row) { AppendRecord(shape, row, answer.fields); });
    for (const Membership& membership : subject.memberships) {
        PutAvailable(context, membership, *id, answer.fields);
        PutSelected(context, membership, *id, answer.fields);
    }
    if (subject.addToGet)
        subject.addToGet(context, *id, answer.fields);
    if (!subject.children.isEmpty()) {
        const Row record = *context.records.Find(subject.table, *id);
        for (const Children& children : subject.children)
            if (children.where.Holds(record))
                PutChildren(context, children, *id, answer.fields);
    }
    return answer;
}

} // namespace sysadmin::server
