#include "server/subjects/Registrations.h"

#include <QRegularExpression>

#include <algorithm>

namespace sysadmin::server {

namespace {

constexpr int AddressLength = 39;

bool IsGroupType(const QString& value) {
    return value.size() == 1 && QString("DIRP").contains(value);
}

bool IsAddress(const QString& text) {
    static const QRegularExpression form("^([0-9a-f]{4}:){7}[0-9a-f]{4}\\z");
    return form.match(text).hasMatch() && text.size() == AddressLength;
}

bool IsDomainName(const QString& text) {
    return text.contains('.') && text == text.trimmed();
}

bool AreApart(QList<Row> rows, const char* end) {
    std::sort(rows.begin(), rows.end(), [](const Row& one, const Row& other) {
        return Fold(one["least"].toString()) < Fold(other["least"].toString());
    });
    for (qsizetype i = 1; i < rows.size(); ++i)
        if (Fold(rows[i - 1][end].toString()) >= Fold(rows[i]["least"].toString()))
            return false;
    return true;
}

bool AreDifferent(const QList<Row>& members) {
    return AreApart(members, "least");
}

/// No two ranges share an address. Addresses have a fixed width, so comparing them as text orders them.
bool AreRangesApart(const QList<Row>& ranges) {
    return AreApart(ranges, "most") && std::all_of(ranges.begin(), ranges.end(), [](const Row& range) {
               return range["least"].toString() < range["most"].toString();
           });
}

/// The members of groups of a type. Only those of its own type belong to a group.
Children Members(const QString& type, const QList<SubjectField>& fields, bool (*check)(const QList<Row>&)) {
    return {.table = "access_group_members",
            .owner = "group_id",
            .fields = fields,
            .ordered = true,
            .where = {"type", type},
            .check = check};
}

QList<Children> MembersByType() {
    QList<Children> members{
        Members("D", {SubjectField::Text("DN", "least", DomainNameLength).Required().Checked(IsDomainName)},
                AreDifferent),
        Members("I", {SubjectField::Text("IP", "least", AddressLength).Required().Checked(IsAddress)},
                AreDifferent),
        Members("R",
                {SubjectField::Text("MI", "least", AddressLength).Required().Checked(IsAddress),
                 SubjectField::Text("XI", "most", AddressLength).Required().Checked(IsAddress)},
                AreRangesApart),
    };
    members.first().idTag = "DI";
    return members;
}

} // namespace

void RegisterAccessGroups(Registry& registry) {
    registry.AddSubject({
        .table = "access_groups",
        .area = Area::System,
        .requests = {.list = "LstAG",
                     .get = "GetAG",
                     .add = "AddAG",
                     .update = "UpdAG",
                     .remove = "DelAG",
                     .available = "AvlAG"},
        .fields =
            {
                SubjectField::Text("T", "type", 1).Required().Checked(IsGroupType).InList(),
                SubjectField::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                SubjectField::Text("N", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
            },
        .key = "I",
        .usedBy = {{"search_database_access_groups", "access_group_id", status::InUse},
                   {"sort_group_access_groups", "access_group_id", status::InUse}},
        .usages = {{"access rules", status::InUse}},
        .memberships = {{.table = "access_group_patron_groups",
                         .ownerColumn = "group_id",
                         .memberTable = "patron_groups",
                         .memberColumn = "patron_group_id",
                         .whole = true,
                         .where = {"type", "P"}}},
        .children = MembersByType(),
        .addReply = {"I", "C"},
    });
}

} // namespace sysadmin::server
