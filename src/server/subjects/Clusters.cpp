#include "server/Library.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

bool IsAboutRequester(const Context& context, const wire::Fields& request, const QString& tag) {
    return Fold(wire::FirstValue(request, tag)) == Fold(context.requester.id);
}

/// The rights over clusters, which are not an area's.
const QStringList& ClusterRights() {
    static const QStringList rights{"CluViewOnly", "CluCreate", "CluEdit", "CluDelete"};
    return rights;
}

/// Whoever maintains or looks after clusters sees them all, also those that no location belongs to yet.
bool SeesAll(const Context& context) {
    return std::any_of(ClusterRights().begin(), ClusterRights().end(),
                       [&](const QString& right) { return context.rights.Has(right); });
}

/// The circulation policy groups' locations of a cluster that have a flag.
QString LocationsWhere(const QString& flag) {
    return "SELECT p.id, g.id, l.id, l.name, p.is_opac_desk FROM circulation_policy_locations p "
           "JOIN circulation_policy_groups g ON g.id=p.group_id JOIN locations l ON l.id=p.location_id "
           "WHERE g.cluster_id=? AND p." +
           flag + "='Y' ORDER BY g.name, l.name, l.id";
}

Answer ReadSecurity(Context& context, const wire::Fields& request) {
    if (!IsAboutRequester(context, request, "SOI"))
        return {status::NotAuthorised};
    Answer answer;
    for (const QString& right : ClusterRights())
        Put(answer.fields, right, context.rights.Has(right) ? "Y" : "N");
    return answer;
}

Answer List(Context& context, const wire::Fields& request) {
    if (!IsAboutRequester(context, request, "OI"))
        return {status::NotAuthorised};
    const auto exists = [](const QString& table) {
        return QString("CASE WHEN EXISTS (SELECT 1 FROM " + table +
                       " x WHERE x.cluster_id=c.id) THEN 'Y' ELSE 'N' END");
    };
    const QStringList columns{"c.id",
                              "c.code",
                              "c.name",
                              "c.pickup_location_id",
                              exists("circulation_policy_groups"),
                              exists("patron_groups"),
                              exists("calendars")};
    const QStringList tags{"CID", "CCD", "CNM", "CPL", "PolExstClu", "PatExstClu", "CalExstClu"};
    QString sql = "SELECT " + columns.join(", ") + " FROM clusters c";
    QVariantList values;
    if (!SeesAll(context)) {
        sql += " WHERE c.id IN (SELECT g.cluster_id FROM circulation_policy_groups g "
               "JOIN circulation_policy_locations p ON p.group_id=g.id "
               "JOIN master_profile_locations m ON m.location_id=p.location_id "
               "JOIN master_profile_operators o ON o.profile_id=m.profile_id WHERE o.operator_row=?)";
        values << context.requester.row;
    }
    Answer answer;
    context.database.Each(sql + " ORDER BY c.id", values, [&](const ResultRow& row) {
        for (qsizetype i = 0; i < tags.size(); ++i)
            Put(answer.fields, tags[i], row.value(int(i)).toString());
    });
    if (answer.fields.IsEmpty())
        answer.status = status::NoClusterLocation;
    return answer;
}

void AddLocations(Context& context, qint64 id, ReplyFields& reply) {
    context.database.Each(LocationsWhere("is_desk"), {id}, [&](const ResultRow& row) {
        Put(reply, "CPGID", row.value(1).toString());
        Put(reply, "CLOCID", row.value(2).toString());
        Put(reply, "CLOCNM", row.value(3).toString());
        Put(reply, "COPCDF", row.value(4).toString());
    });
    context.database.Each(LocationsWhere("is_pickup"), {id}, [&](const ResultRow& row) {
        Put(reply, "CPLID", row.value(2).toString());
        Put(reply, "CPLNm", row.value(3).toString());
    });
}

/// Only a pickup location of its own can be a cluster's; one that was chosen earlier may stay.
qint16 CheckPickup(Context& context, const wire::Fields&, const Row& before, Row& after) {
    const QVariant pickup = after.value("pickup_location_id");
    if (pickup.isNull() || pickup == before.value("pickup_location_id"))
        return status::Ok;
    const auto id = context.records.IdOfText("clusters", "code", before.value("code").toString());
    bool isPickup = false;
    context.database.Each(LocationsWhere("is_pickup"), {id.value_or(0)}, [&](const ResultRow& place) {
        isPickup = isPickup || place.value(2).toLongLong() == pickup.toLongLong();
    });
    return isPickup ? status::Ok : status::NotFound;
}

/// Moves the mark of the public catalogue's desk. A cluster has one at the most.
qint16 MarkDesk(Context& context, const wire::Fields& request, qint64 cluster, bool) {
    QHash<QPair<QString, QString>, QString> said; // group and location to mark
    QPair<QString, QString> entry;
    int marked = 0;
    for (const wire::Field& field : request) {
        if (field.tag == u"CPGID")
            entry.first = field.value;
        else if (field.tag == u"CLOCID")
            entry.second = field.value;
        else if (field.tag == u"COPCDF") {
            if (field.value != u"Y" && field.value != u"N")
                return status::ColumnError;
            said[entry] = field.value;
            marked += field.value == u"Y" ? 1 : 0;
        }
    }
    if (marked > 1)
        return status::ColumnError;
    QList<QPair<qint64, QString>> changes;
    qsizetype known = 0;
    context.database.Each(LocationsWhere("is_desk"), {cluster}, [&](const ResultRow& row) {
        const auto mark = said.constFind({row.value(1).toString(), row.value(2).toString()});
        known += mark != said.constEnd() ? 1 : 0;
        if (mark != said.constEnd())
            changes.append({row.value(0).toLongLong(), *mark});
        else if (marked > 0)
            changes.append({row.value(0).toLongLong(), "N"});
    });
    if (known != said.size())
        return status::NotFound;
    for (const auto& [place, mark] : changes)
        context.records.Update("circulation_policy_locations", place, {{"is_opac_desk", mark}});
    if (!changes.isEmpty())
        context.records.Touch("clusters", cluster);
    return status::Ok;
}

} // namespace

void RegisterClusters(Registry& registry) {
    const auto change = [](const QString& right) {
        return RequestRights{.anyOf = {right}, .unless = "CluViewOnly"};
    };
    registry.AddSubject({
        .table = "clusters",
        .area = Area::Circulation,
        .requests =
            {.get = "GetCluster", .add = "AddCluster", .update = "UpdCluster", .remove = "DelCluster"},
        .fields =
            {
                SubjectField::Text("CCD", "code", CodeLength).Required().Unique(status::DuplicateCode),
                SubjectField::Text("CNM", "name", NameLength).Required().Unique(status::DuplicateName),
                SubjectField::Reference("CPLID", "pickup_location_id", "locations", OnRemoval::Clear)
                    .WriteOnly(),
                SubjectField::Reference("CPL", "pickup_location_id", "locations", OnRemoval::Clear)
                    .ReadOnly(),
                SubjectField::Flag("BLT", "blocks_local"),
            },
        .key = "CID",
        .rights = {{"GetCluster", {.anyOf = ClusterRights(), .orView = Area::Circulation}},
                   {"AddCluster", change("CluCreate")},
                   {"UpdCluster", change("CluEdit")},
                   {"DelCluster", change("CluDelete")}},
        .usedBy = {{"circulation_policy_groups", "cluster_id", status::InUse},
                   {"patron_groups", "cluster_id", status::InUse},
                   {"calendars", "cluster_id", status::InUse}},
        .addReply = {"CID", "CCD"},
        .checkPut = CheckPickup,
        .afterPut = MarkDesk,
        .addToGet = AddLocations,
    });
    const QString places = "circulation_policy_locations";
    registry.AddTable({.name = "clusters",
                       .storedRules = {FindsNone(
                           "SELECT c.id FROM clusters c WHERE c.pickup_location_id IS NOT NULL AND NOT "
                           "EXISTS (SELECT 1 FROM circulation_policy_locations p JOIN "
                           "circulation_policy_groups g ON g.id=p.group_id WHERE g.cluster_id=c.id AND "
                           "p.location_id=c.pickup_location_id AND p.is_pickup='Y')",
                           "The pickup location is no pickup location of the cluster.", {places})}});
    registry.AddTable(
        {.name = places,
         .storedRules = {FindsNone(
             "SELECT p.id FROM circulation_policy_locations p "
             "JOIN circulation_policy_groups g ON g.id=p.group_id WHERE p.is_opac_desk='Y' AND "
             "EXISTS (SELECT 1 FROM circulation_policy_locations o JOIN circulation_policy_groups h "
             "ON h.id=o.group_id WHERE h.cluster_id=g.cluster_id AND o.is_opac_desk='Y' AND o.id<p.id)",
             "The cluster would have two desks of the public catalogue.", {"circulation_policy_groups"})}});
    registry.AddRead("GetClusterSecurity", Area::AnyOperator, ReadSecurity);
    registry.AddRead("GetClusterList", Area::AnyOperator, List);
    registry.About("GetClusterList", {"clusters"});
}

} // namespace sysadmin::server
