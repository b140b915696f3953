#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <QRegularExpression>

#include <algorithm>

namespace sysadmin::server {

namespace {

constexpr int LongestDomainName = 253;

/// Members that are texts. Addresses are in a form of fixed width, so comparing them as text orders them.
struct Member {
    QString least; ///< a domain name, an address, or the lowest address of a range
    QString most;  ///< the highest address of a range
};

bool IsGroupType(const QString& value) {
    return value.size() == 1 && QString("DIRP").contains(value);
}

bool IsAddress(const QString& text) {
    static const QRegularExpression form("^([0-9a-f]{4}:){7}[0-9a-f]{4}\\z");
    return form.match(text).hasMatch() && text.size() == 39;
}

bool IsDomainName(const QString& text) {
    return text.contains('.') && text.size() <= LongestDomainName && !text.contains(QChar(0)) &&
           text == text.trimmed();
}

/// The members that a request names for a group of the type; none when one is not in order.
std::optional<QList<Member>> ReadMembers(const wire::Fields& request, const QString& type) {
    QList<Member> members;
    bool inOrder = true;
    for (const wire::Field& field : request) {
        if (type == u"D" && field.tag == u"DN") {
            inOrder = inOrder && IsDomainName(field.value);
            members.append({field.value, {}});
        } else if (type == u"I" && field.tag == u"IP") {
            inOrder = inOrder && IsAddress(field.value);
            members.append({field.value, {}});
        } else if (type == u"R" && field.tag == u"MI") {
            members.append({field.value, {}});
        } else if (type == u"R" && field.tag == u"XI" && !members.isEmpty()) {
            members.last().most = field.value;
        }
    }
    if (type == u"R")
        inOrder = std::all_of(members.begin(), members.end(), [](const Member& range) {
            return IsAddress(range.least) && IsAddress(range.most) && range.least < range.most;
        });
    // Nothing is there twice, and no two ranges share an address.
    QList<Member> sorted = members;
    std::sort(sorted.begin(), sorted.end(),
              [](const Member& a, const Member& b) { return Fold(a.least) < Fold(b.least); });
    for (qsizetype i = 1; i < sorted.size(); ++i) {
        const QString end = type == u"R" ? sorted[i - 1].most : sorted[i - 1].least;
        inOrder = inOrder && Fold(end) < Fold(sorted[i].least);
    }
    return inOrder ? std::optional(members) : std::nullopt;
}

/// Only members of the group's own type belong to it: they replace whatever it had.
qint16 StoreMembers(Context& context, const wire::Fields& request, qint64 id, bool) {
    const QString type = context.records.Find("access_groups", id)->value("type").toString();
    const auto members = ReadMembers(request, type);
    if (!members)
        return status::ColumnError;
    if (type != u"P")
        context.records.RemoveWhere("access_group_patron_groups", "group_id", id);
    const auto present = context.database.FirstColumn(
        "SELECT id FROM access_group_members WHERE group_id=? ORDER BY id", {id});
    qsizetype place = 0;
    for (; place < members->size(); ++place) {
        const Row row{{"group_id", id}, {"least", (*members)[place].least}, {"most", (*members)[place].most}};
        if (place < present.size())
            context.records.Update("access_group_members", present[place].toLongLong(), row);
        else
            context.records.Insert("access_group_members", row);
    }
    for (; place < present.size(); ++place)
        context.records.Remove("access_group_members", present[place].toLongLong());
    return status::Ok;
}

void PutMembers(Context& context, qint64 id, wire::Fields& reply) {
    const QString type = context.records.Find("access_groups", id)->value("type").toString();
    context.database.Each("SELECT id, least, most FROM access_group_members WHERE group_id=? ORDER BY id",
                          {id}, [&](const ResultRow& row) {
                              const QString least = row.value(1).toString();
                              if (type == u"D") {
                                  Put(reply, "DI", row.value(0).toString());
                                  Put(reply, "DN", least);
                              } else if (type == u"I") {
                                  Put(reply, "IP", least);
                              } else if (type == u"R") {
                                  Put(reply, "MI", least);
                                  Put(reply, "XI", row.value(2).toString());
                              }
                          });
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
                Field::Text("T", "type", 1).Required().Checked(IsGroupType).InList(),
                Field::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("N", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
            },
        .key = "I",
        .usages = {{"access rules", status::InUse}},
        .memberships = {{.table = "access_group_patron_groups",
                         .ownerColumn = "group_id",
                         .memberTable = "patron_groups",
                         .memberColumn = "patron_group_id",
                         .whole = true}},
        .addReply = {"I", "C"},
        .afterPut = StoreMembers,
        .addToGet = PutMembers,
    });
    registry.AddTable({.name = "access_group_members",
                       .columns = {{.name = "group_id",
                                    .type = ColumnType::Reference,
                                    .target = "access_groups",
                                    .onRemoval = OnRemoval::RemoveToo},
                                   {.name = "least"},
                                   {.name = "most"}},
                       .owner = "group_id"});
}

} // namespace sysadmin::server
