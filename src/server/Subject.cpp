#include "server/Subject.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

SubjectField Make(SubjectField::Kind kind, const QString& tag, const QString& column) {
    SubjectField field;
    field.kind = kind;
    field.tag = tag;
    field.column = column;
    return field;
}

} // namespace

SubjectField SubjectField::Text(const QString& tag, const QString& column, int limit) {
    SubjectField field = Make(Kind::Text, tag, column);
    field.limit = limit;
    return field;
}

SubjectField SubjectField::Flag(const QString& tag, const QString& column, const QString& fallback) {
    SubjectField field = Make(Kind::Flag, tag, column);
    field.fallback = fallback;
    return field;
}

SubjectField SubjectField::Whole(const QString& tag, const QString& column, qint64 least, qint64 most) {
    SubjectField field = Make(Kind::Whole, tag, column);
    field.least = least;
    field.most = most;
    return field;
}

SubjectField SubjectField::Decimal(const QString& tag, const QString& column) {
    SubjectField field = Make(Kind::Decimal, tag, column);
    field.limit = 32;
    return field;
}

SubjectField SubjectField::Reference(const QString& tag, const QString& column, const QString& target,
                                     OnRemoval onRemoval) {
    SubjectField field = Make(Kind::Reference, tag, column);
    field.target = target;
    field.onRemoval = onRemoval;
    return field;
}

SubjectField SubjectField::Joined(const QString& tag, const QString& through, const QString& target,
                                  const QString& column) {
    SubjectField field = Make(Kind::Joined, tag, through);
    field.target = target;
    field.targetColumn = column;
    field.inPut = false;
    return field;
}

SubjectField SubjectField::Uses(const QString& tag) {
    SubjectField field = Make(Kind::Uses, tag, {});
    field.inPut = false;
    return field;
}

SubjectField SubjectField::Secret(const QString& tag, const QString& mark, const QString& column, int limit) {
    SubjectField field = Make(Kind::Secret, tag, column);
    field.mark = mark;
    field.limit = limit;
    return field;
}

SubjectField SubjectField::Required() && {
    required = true;
    return std::move(*this);
}

SubjectField SubjectField::Unique(qint16 status, const QString& within) && {
    duplicateStatus = status;
    uniqueWithin = within;
    return std::move(*this);
}

SubjectField SubjectField::InList() && {
    inList = true;
    return std::move(*this);
}

SubjectField SubjectField::OnlyInList() && {
    inList = true;
    inGet = false;
    inPut = false;
    return std::move(*this);
}

SubjectField SubjectField::ReadOnly() && {
    inPut = false;
    return std::move(*this);
}

SubjectField SubjectField::WriteOnly() && {
    inGet = false;
    return std::move(*this);
}

SubjectField SubjectField::Default(const QString& value) && {
    fallback = value;
    return std::move(*this);
}

SubjectField SubjectField::Checked(bool (*theCheck)(const QString&)) && {
    check = theCheck;
    return std::move(*this);
}

SubjectField SubjectField::Carrying(const QString& column) && {
    targetColumn = column;
    return std::move(*this);
}

bool RequestRights::IsHeld(const Rights& rights) const {
    const bool any =
        std::any_of(anyOf.begin(), anyOf.end(), [&](const QString& tag) { return rights.Has(tag); });
    return (any || (orView && rights.MayView(*orView))) && (unless.isEmpty() || !rights.Has(unless));
}

CellRule SubjectField::Rule() const {
    CellRule rule{.isSet = inPut, .required = required, .check = check};
    if (kind == Kind::Text || kind == Kind::Decimal)
        rule.limit = limit;
    rule.isDecimal = kind == Kind::Decimal;
    if (kind == Kind::Whole) {
        rule.least = least;
        rule.most = most;
    }
    return rule;
}

Column SubjectField::StoredAs() const {
    const CellRule rule = inPut ? Rule() : CellRule();
    switch (kind) {
    case Kind::Text:
    case Kind::Decimal:
        return {.name = column, .type = ColumnType::Text, .fallback = fallback, .rule = rule};
    case Kind::Flag:
        return {.name = column, .type = ColumnType::Flag, .fallback = fallback, .rule = rule};
    case Kind::Whole:
        return {.name = column, .type = ColumnType::Whole, .fallback = fallback, .rule = rule};
    case Kind::Secret:
        return {.name = column, .type = ColumnType::Text, .secret = true};
    case Kind::Reference:
    case Kind::Joined:
        return {.name = column,
                .type = ColumnType::Reference,
                .target = target,
                .onRemoval = onRemoval,
                .rule = {.isSet = rule.isSet, .required = rule.required}};
    case Kind::Uses:
        break;
    }
    Q_UNREACHABLE();
}

} // namespace sysadmin::server
