#include "server/SubjectRequests.h"

#include "server/Library.h"
#include "server/SubjectReads.h"
#include "server/store/Database.h"

namespace sysadmin::server {

namespace {

/// The value to store; none when the request's value does not fit the field.
std::optional<QVariant> ToStore(Context& context, const SubjectField& field, const QString& value) {
    const QString trimmed = value.trimmed();
    const auto fits = [&](ColumnType type) { return field.Rule().WrongWith(type, value).isEmpty(); };
    switch (field.kind) {
    case SubjectField::Kind::Text:
        return fits(ColumnType::Text) ? std::optional<QVariant>(value) : std::nullopt;
    case SubjectField::Kind::Flag:
        if (!fits(ColumnType::Flag))
            return std::nullopt;
        return trimmed.isEmpty() ? field.fallback : value;
    case SubjectField::Kind::Whole:
        if (!fits(ColumnType::Whole))
            return std::nullopt;
        return trimmed.isEmpty() ? QVariant() : QVariant(trimmed.toLongLong());
    case SubjectField::Kind::Decimal:
        return fits(ColumnType::Text) ? std::optional<QVariant>(trimmed) : std::nullopt;
    case SubjectField::Kind::Reference: {
        if (!IsStorable(value) || (field.required && trimmed.isEmpty()) ||
            (field.check && !field.check(value)))
            return std::nullopt;
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
    case SubjectField::Kind::Uses:
    case SubjectField::Kind::Secret:
        break;
    }
    return std::nullopt;
}

/// Takes a new secret from the request; what is not new stays as it is.
qint16 ReadSecret(Context& context, const SubjectField& field, const wire::Fields& request, Row& row) {
    const QString isNew = Sent(request, field.mark).value_or("N");
    if (isNew != "Y")
        return isNew == "N" || isNew.isEmpty() ? status::Ok : status::ColumnError;
    const QString sealed = Sent(request, field.tag).value_or(QString());
    QString kept;
    if (!sealed.isEmpty()) {
        const auto plain = OpenSealed(sealed, context.library.GetSealingKeys(), wire::PasswordPurpose::Set,
                                      context.requester.nonce);
        if (!plain || plain->Size() > 4 * qsizetype(field.limit))
            return status::ColumnError;
        if (plain->Size() > 0)
            kept = context.library.Secrets().Close(*plain);
    }
    row.insert(field.column, kept);
    return status::Ok;
}

/// The refusal for the first rule of whole records that this one breaks, or 0.
qint16 FindBroken(const Subject& subject, const Row& row) {
    for (const RowRule& rule : subject.rules)
        if (!rule.holds(row))
            return rule.status;
    return status::Ok;
}

/// The refusal for the first unique text that another record has, or 0.
/// Texts that the record held `before` are its own.
qint16 FindDuplicate(Context& context, const Subject& subject, const Row& row, qint64 except,
                     const Row& before = {}) {
    for (const SubjectField& field : subject.fields) {
        if (field.duplicateStatus == 0)
            continue;
        const bool isSame = except != 0 && row.value(field.column) == before.value(field.column) &&
                            row.value(field.uniqueWithin) == before.value(field.uniqueWithin);
        if (!isSame && context.records.IsTaken(subject.table, {field.column, field.uniqueWithin},
                                               row.value(field.column).toString(),
                                               row.value(field.uniqueWithin), except))
            return field.duplicateStatus;
    }
    return status::Ok;
}

qint16 FinishPut(Context& context, const Subject& subject, const wire::Fields& request, qint64 id,
                 bool added) {
    if (subject.memberships.isEmpty() && subject.children.isEmpty() && !subject.afterPut)
        return status::Ok;
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
    if (const qint16 refused = FindBroken(subject, row))
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
    if (subject.within && before[subject.within->column] != after[subject.within->column])
        return {status::NotFound};
    if (const qint16 refused =
            subject.checkPut ? subject.checkPut(context, request, before, after) : status::Ok)
        return {refused};
    if (const qint16 refused = FindBroken(subject, after))
        return {refused};
    if (const qint16 refused = FindDuplicate(context, subject, after, *id, before))
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
        if (!field.inPut)
            continue;
        if (field.kind == SubjectField::Kind::Secret) {
            if (const qint16 refused = ReadSecret(context, field, request, row))
                return refused;
            continue;
        }
        std::optional<QString> value = Sent(request, field.tag);
        // "NNm" says whether the operator changed the name, or gives the new one. A name that was not changed
        // may be old by now.
        const auto renamed = adding || field.column != u"name" ? std::nullopt : Sent(request, "NNm");
        if (renamed == "N" && value != "N")
            continue;
        if (renamed && renamed != "Y")
            value = renamed;
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
                answer.status = ReadAll(context, *s, shape, request, answer.fields);
                return answer;
            }};
    if (!names.get.isEmpty())
        rules << RequestRule{
            names.get, subject.area, Access::View, false,
            [s, shape = MakeShape(subject, false)](Context& context, const wire::Fields& request) {
                return ReadRecord(context, *s, shape, request);
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
