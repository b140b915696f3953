#include "server/Subject.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

Field Make(Field::Kind kind, const QString& tag, const QString& column) {
    Field field;
    field.kind = kind;
    field.tag = tag;
    field.column = column;
    return field;
}

} // namespace

Field Field::Text(const QString& tag, const QString& column, int limit) {
    Field field = Make(Kind::Text, tag, column);
    field.limit = limit;
    return field;
}

Field Field::Flag(const QString& tag, const QString& column, const QString& fallback) {
    Field field = Make(Kind::Flag, tag, column);
    field.fallback = fallback;
    return field;
}

Field Field::Whole(const QString& tag, const QString& column, qint64 least, qint64 most) {
    Field field = Make(Kind::Whole, tag, column);
    field.least = least;
    field.most = most;
    return field;
}

Field Field::Decimal(const QString& tag, const QString& column) {
    Field field = Make(Kind::Decimal, tag, column);
    field.limit = 32;
    return field;
}

Field Field::Reference(const QString& tag, const QString& column, const QString& target,
                       OnRemoval onRemoval) {
    Field field = Make(Kind::Reference, tag, column);
    field.target = target;
    field.onRemoval = onRemoval;
    return field;
}

Field Field::Joined(const QString& tag, const QString& through, const QString& target,
                    const QString& column) {
    Field field = Make(Kind::Joined, tag, through);
    field.target = target;
    field.targetColumn = column;
    field.inPut = false;
    return field;
}

Field Field::Required() && {
    required = true;
    return std::move(*this);
}

Field Field::Unique(qint16 status, const QString& within) && {
    duplicateStatus = status;
    uniqueWithin = within;
    return std::move(*this);
}

Field Field::InList() && {
    inList = true;
    return std::move(*this);
}

Field Field::OnlyInList() && {
    inList = true;
    inGet = false;
    inPut = false;
    return std::move(*this);
}

Field Field::ReadOnly() && {
    inPut = false;
    return std::move(*this);
}

Field Field::WriteOnly() && {
    inGet = false;
    return std::move(*this);
}

Field Field::Default(const QString& value) && {
    fallback = value;
    return std::move(*this);
}

Field Field::Checked(bool (*theCheck)(const QString&)) && {
    check = theCheck;
    return std::move(*this);
}

Field Field::Carrying(const QString& column) && {
    targetColumn = column;
    return std::move(*this);
}

bool RequestRights::IsHeld(const Rights& rights) const {
    const bool any =
        std::any_of(anyOf.begin(), anyOf.end(), [&](const QString& tag) { return rights.Has(tag); });
    return (any || (orView && rights.MayView(*orView))) && (unless.isEmpty() || !rights.Has(unless));
}

Column Field::StoredAs() const {
    switch (kind) {
    case Kind::Text:
    case Kind::Decimal:
        return {.name = column, .type = ColumnType::Text, .fallback = fallback};
    case Kind::Flag:
        return {.name = column, .type = ColumnType::Flag, .fallback = fallback};
    case Kind::Whole:
        return {.name = column, .type = ColumnType::Whole, .fallback = fallback};
    case Kind::Reference:
    case Kind::Joined:
        return {.name = column, .type = ColumnType::Reference, .target = target, .onRemoval = onRemoval};
    }
    Q_UNREACHABLE();
}

} // namespace sysadmin::server
