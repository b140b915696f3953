#include "server/SampleWriter.h"
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
    static const QRegularExpression form("^([0-9a-f]{4}:){7}[0-9a-f]{4}$");
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

void FillSample(SampleWriter& sample) {
    struct Group {
        QString code;
        QString name;
        QString type;
        QList<Member> members;
    };
    const QString v4 = "0000:0000:0000:0000:0000:ffff:";
    const QString v6 = "2001:0db8:";
    const QList<Group> groups{
        {"CAMPUS",
         "Campus Networks",
         "R",
         {{v4 + "0a00:0000", v4 + "0a0f:ffff"},
          {v4 + "c000:0200", v4 + "c000:02ff"},
          {v6 + "0001:0000:0000:0000:0000:0000", v6 + "0001:ffff:ffff:ffff:ffff:ffff"}}},
        {"RESNET",
         "Residence Halls",
         "R",
         {{v4 + "0a20:0000", v4 + "0a3f:ffff"},
          {v6 + "0002:0000:0000:0000:0000:0000", v6 + "0002:00ff:ffff:ffff:ffff:ffff"}}},
        {"KIOSKS",
         "Catalogue Kiosks",
         "I",
         {{v4 + "c633:640a", {}},
          {v4 + "c633:640b", {}},
          {v4 + "c633:640c", {}},
          {v6 + "0003:0000:0000:0000:0000:000a", {}}}},
        {"PROXY", "Proxy Servers", "I", {{v4 + "cb00:7119", {}}, {v6 + "0003:0000:0000:0000:0000:0019", {}}}},
        {"PARTNERS",
         "Partner Libraries",
         "D",
         {{"library.example.edu", {}}, {"law.example.edu", {}}, {"hospital.example.org", {}}}},
        {"FACSTAFF", "Faculty and Staff", "P", {}},
    };
    for (const Group& group : groups) {
        const qint64 id =
            sample.Add("access_groups", {{"code", group.code}, {"name", group.name}, {"type", group.type}});
        for (const Member& member : group.members)
            sample.Add("access_group_members",
                       {{"group_id", id}, {"least", member.least}, {"most", member.most}});
        if (group.code == u"CAMPUS" || group.code == u"FACSTAFF")
            sample.Use("access_groups", "access rules", id, 2);
        if (group.type != u"P")
            continue;
        const auto patrons = sample.GetDatabase().FirstColumn(
            "SELECT id FROM patron_groups WHERE code IN ('faculty', 'staff', 'fellow') ORDER BY id");
        for (const QVariant& patron : patrons)
            sample.Add("access_group_patron_groups", {{"group_id", id}, {"patron_group_id", patron}});
    }
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
    registry.AddSample("access groups", FillSample);
}

} // namespace sysadmin::server
