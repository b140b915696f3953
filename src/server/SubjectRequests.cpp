#include "server/SubjectRequests.h"

#include "server/store/Database.h"

#include <QRegularExpression>

namespace sysadmin::server {

namespace {

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

/// The id of the record that a request names, if it is among those with which the request works.
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

bool IsDecimal(const QString& value) {
    static const QRegularExpression form("^[+-]?(\\d+(\\.\\d*)?|\\.\\d+)\\z");
    return form.match(value).hasMatch();
}

/// The value to store; none when the request's value does not fit the field.
std::optional<QVariant> ToStore(Context& context, const SubjectField& field, const QString& value) {
    if (!IsStorable(value))
        return std::nullopt;
    const QString trimmed = value.trimmed();
    if (field.required && trimmed.isEmpty())
        return std::nullopt;
    if (field.check && !field.check(value))
        return std::nullopt;
    switch (field.kind) {
    case SubjectField::Kind::Text:
        if (value.size() - value.count("\r\n") > field.limit) // a line break is one character
            return std::nullopt;
        return value;
    case SubjectField::Kind::Flag:
        if (trimmed.isEmpty())
            return field.fallback;
        if (value != "Y" && value != "N")
            return std::nullopt;
        return value;
    case SubjectField::Kind::Whole: {
        if (trimmed.isEmpty())
            return QVariant();
        bool valid = false;
        const qint64 number = trimmed.toLongLong(&valid);
        if (!valid || number < field.least || number > field.most)
            return std::nullopt;
        return number;
    }
    case SubjectField::Kind::Decimal:
        if (!trimmed.isEmpty() && (!IsDecimal(trimmed) || trimmed.size() > field.limit))
            return std::nullopt;
        return trimmed;
    case SubjectField::Kind::Reference: {
        if (trimmed.isEmpty())
            return QVariant();
        std::optional<qint64> id;
        if (!field.targetColumn.isEmpty()) {
            id = context.records.IdWhere(field.target, field.targetColumn, value);
        } else {
            bool valid = false;
            const qint64 number = trimmed.toLongLong(&valid);
            if (valid && number == 0) // screens send 0 when nothing is chosen
                return QVariant();
            if (valid)
                id = context.records.IdWhere(field.target, "id", number);
        }
        return id ? std::optional<QVariant>(*id) : std::nullopt;
    }
    case SubjectField::Kind::Joined:
        break;
    }
    return std::nullopt;
}

/// The refusal for the first unique text that another record has, or 0.
qint16 FindDuplicate(Context& context, const Subject& subject, const Row& row, qint64 except) {
    for (const SubjectField& field : subject.fields) {
        if (field.duplicateStatus != 0 &&
            context.records.IsTaken(subject.table, {field.column, field.uniqueWithin},
                                    row.value(field.column).toString(), row.value(field.uniqueWithin),
                                    except))
            return field.duplicateStatus;
    }
    return status::Ok;
}

/// How a record travels: the SQL that reads it and the tags of its columns, in order.
struct Shape {
    QStringList tags;
    QString select;
};

Shape MakeShape(const Subject& subject, bool list) {
    Shape shape;
    QStringList columns{"t.id"};
    QString joins;
    // The reply to a get leaves the id out: the screen knows for which one it asked.
    if (list && !KeyField(subject)) {
        shape.tags << subject.key;
        columns << "t.id";
    }
    for (const SubjectField& field : subject.fields) {
        if (list ? !field.inList : !field.inGet)
            continue;
        shape.tags << field.tag;
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

void AppendRecord(const Shape& shape, const ResultRow& row, ReplyFields& reply) {
    for (qsizetype i = 0; i < shape.tags.size(); ++i)
        Put(reply, shape.tags[i], row.value(int(i) + 1).toString());
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

qint16 ListAll(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request,
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

Answer Get(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request) {
    Answer answer;
    const auto id = FindKey(context, subject, request, false);
    if (!id && subject.single) {
        if (subject.requests.add.isEmpty())
            for (const SubjectField& field : subject.fields)
                if (field.inGet)
                    Put(answer.fields, field.tag, field.fallback);
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

qint16 FinishPut(Context& context, const Subject& subject, const wire::Fields& request, qint64 id,
                 bool added) {
    const Row record = *context.records.Find(subject.table, id);
    for (const Membership& membership : subject.memberships)
        if (membership.where.Holds(record)) {
            if (const qint16 refused = ApplyMembers(context, membership, id, request))
                return refused;
        } else {
            context.records.RemoveWhere(membership.table, membership.ownerColumn, id);
        }
    if (const qint16 refused = ApplyChildren(context, subject.children, record, id, request))
        return refused;
    return subject.afterPut ? subject.afterPut(context, request, id, added) : status::Ok;
}

Answer Add(Context& context, const Subject& subject, const wire::Fields& request) {
    Row row;
    if (subject.single) {
        if (FindKey(context, subject, request, false))
            return {status::DuplicateRecord};
        row.insert("only_one", "Y");
    }
    if (const qint16 refused = ReadFields(context, subject.fields, request, true, row))
        return {refused};
    if (const qint16 refused = subject.checkPut ? subject.checkPut(context, request, {}, row) : status::Ok)
        return {refused};
    if (const qint16 refused = FindDuplicate(context, subject, row, 0))
        return {refused};
    const qint64 id = context.records.Insert(subject.table, row);
    if (const qint16 refused = FinishPut(context, subject, request, id, true))
        return {refused};
    Answer answer;
    if (!subject.addedIdTag.isEmpty())
        Put(answer.fields, subject.addedIdTag, QString::number(id));
    for (const QString& tag : subject.addReply) {
        if (tag == subject.key && !KeyField(subject)) {
            Put(answer.fields, tag, QString::number(id));
            continue;
        }
        for (const SubjectField& field : subject.fields)
            if (field.tag == tag)
                Put(answer.fields, tag, row.value(field.column).toString());
    }
    return answer;
}

Answer Update(Context& context, const Subject& subject, const wire::Fields& request) {
    auto id = FindKey(context, subject, request, true);
    if (!id && subject.single && subject.requests.add.isEmpty())
        id = context.records.Insert(subject.table, {{"only_one", "Y"}});
    if (!id)
        return {status::NotFound};
    const Row before = *context.records.Find(subject.table, *id);
    Row after = before;
    if (const qint16 refused = ReadFields(context, subject.fields, request, false, after))
        return {refused};
    if (const qint16 refused =
            subject.checkPut ? subject.checkPut(context, request, before, after) : status::Ok)
        return {refused};
    if (const qint16 refused = FindDuplicate(context, subject, after, *id))
        return {refused};
    context.records.Update(subject.table, *id, after);
    return {FinishPut(context, subject, request, *id, false)};
}

Answer Remove(Context& context, const Subject& subject, const wire::Fields& request) {
    const auto id = FindKey(context, subject, request, false);
    if (!id)
        return {status::NotFound};
    if (subject.checkRemove)
        if (const qint16 refused =
                subject.checkRemove(context, *id, *context.records.Find(subject.table, *id)))
            return {refused};
    if (const qint16 refused = FindUse(context, subject, *id))
        return {refused};
    for (const UsageKind& usage : subject.usages)
        context.database.Run("DELETE FROM usage WHERE table_name=? AND kind=? AND record_id=?",
                             {subject.table, usage.kind, *id});
    context.records.Remove(subject.table, *id);
    return {};
}

} // namespace

qint16 ReadFields(Context& context, const QList<SubjectField>& fields, const wire::Fields& request,
                  bool adding, Row& row) {
    for (const SubjectField& field : fields) {
        // "NNm" says whether the operator changed the name: one that is as it was read may be old by now.
        if (!field.inPut || (!adding && field.column == u"name" && Sent(request, "NNm") == "N"))
            continue;
        std::optional<QString> value = Sent(request, field.tag);
        if (!value) {
            if (!adding)
                continue;
            value = field.fallback;
        }
        // A text that came from elsewhere may be longer than its field: unchanged it may stay.
        if (!adding && field.kind == SubjectField::Kind::Text && !value->isEmpty() &&
            row.value(field.column).toString() == *value)
            continue;
        const auto stored = ToStore(context, field, *value);
        if (!stored)
            return status::ColumnError;
        row.insert(field.column, *stored);
    }
    return status::Ok;
}

qint16 FindUse(Context& context, const Subject& subject, qint64 id) {
    for (const UsedBy& use : subject.usedBy)
        if (context.records.IdWhere(use.table, use.column, id))
            return use.status;
    for (const UsageKind& usage : subject.usages) {
        const auto used = context.database.FirstRow(
            "SELECT 1 FROM usage WHERE table_name=? AND kind=? AND record_id=? AND used>0",
            {subject.table, usage.kind, id});
        if (used)
            return usage.status;
    }
    return status::Ok;
}

QList<RequestRule> RequestsOf(const Subject& subject) {
    const Subject* s = &subject;
    const RequestNames& names = subject.requests;
    QList<RequestRule> rules;
    if (!names.list.isEmpty())
        rules << RequestRule{
            names.list, subject.listArea.value_or(subject.area), Access::View, subject.batch > 0,
            [s, shape = MakeShape(subject, true)](Context& context, const wire::Fields& request) {
                Answer answer;
                answer.status = ListAll(context, *s, shape, request, answer.fields);
                return answer;
            }};
    if (!names.get.isEmpty())
        rules << RequestRule{
            names.get, subject.area, Access::View, false,
            [s, shape = MakeShape(subject, false)](Context& context, const wire::Fields& request) {
                return Get(context, *s, shape, request);
            }};
    if (!names.available.isEmpty())
        rules << RequestRule{names.available, subject.area, Access::View, false,
                             [s](Context& context, const wire::Fields&) {
                                 Answer answer;
                                 for (const Membership& membership : s->memberships)
                                     if (membership.offered)
                                         PutAvailable(context, membership, std::nullopt, answer.fields);
                                 return answer;
                             }};
    const auto change = [&](const QString& name,
                            Answer (*run)(Context&, const Subject&, const wire::Fields&)) {
        if (!name.isEmpty())
            rules << RequestRule{name, subject.area, Access::Edit, true,
                                 [s, run](Context& context, const wire::Fields& request) {
                                     return run(context, *s, request);
                                 }};
    };
    change(names.add, Add);
    change(names.update, Update);
    change(names.remove, Remove);
    for (RequestRule& rule : rules) {
        if (const auto own = subject.rights.constFind(rule.name); own != subject.rights.constEnd())
            rule.rights = *own;
        if (rule.name == names.available)
            continue;
        rule.tables = {subject.table};
        rule.single = subject.single;
        if (rule.name == names.list)
            for (const ListFilter& filter : subject.listFilters)
                rule.narrowing << filter.tag;
        if (subject.single || rule.name == names.list || rule.name == names.add)
            continue;
        if (rule.name == names.update && !subject.originalKey.isEmpty())
            rule.keyTags << subject.originalKey;
        rule.keyTags << subject.key;
        if (const SubjectField* key = KeyField(subject))
            rule.keyColumn = key->column;
    }
    return rules;
}

} // namespace sysadmin::server
