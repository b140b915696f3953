#include "server/Library.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

/// The fields of a cluster. Rights of their own, and not an area's, say who may change clusters: that is why
/// the requests are written out.
const Subject& Clusters() {
    static const Subject clusters{
        .table = "clusters",
        .fields =
            {
                Field::Text("CCD", "code", CodeLength).Required().Unique(status::DuplicateCode),
                Field::Text("CNM", "name", NameLength).Required().Unique(status::DuplicateName),
                Field::Reference("CPLID", "pickup_location_id", "locations", OnRemoval::Clear),
                Field::Flag("BLT", "blocks_local"),
            },
        .key = "CID",
    };
    return clusters;
}

bool IsAboutRequester(const Context& context, const wire::Fields& request, const QString& tag) {
    return Fold(wire::FirstValue(request, tag)) == Fold(context.requester.id);
}

bool MayChange(const Context& context, const QString& right) {
    return context.rights.Has(right) && !context.rights.Has("CluViewOnly");
}

/// Whoever maintains or looks after clusters sees them all, also those that no location belongs to yet.
bool SeesAll(const Context& context) {
    for (const char* right : {"CluCreate", "CluEdit", "CluDelete", "CluViewOnly"})
        if (context.rights.Has(right))
            return true;
    return false;
}

std::optional<qint64> FindCluster(Context& context, const wire::Fields& request) {
    bool isNumber = false;
    const qint64 id = wire::FirstValue(request, "CID").toLongLong(&isNumber);
    return isNumber ? context.records.IdWhere("clusters", "id", id) : std::nullopt;
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
    for (const char* right : {"CluViewOnly", "CluCreate", "CluEdit", "CluDelete"})
        Put(answer.fields, right, context.rights.Has(right) ? "Y" : "N");
    return answer;
}

Answer List(Context& context, const wire::Fields& request) {
    if (!IsAboutRequester(context, request, "OI"))
        return {status::NotAuthorised};
    const auto exists = [&](const QString& table) {
        const bool isThere = context.library.GetRegistry().GetTables().contains(table);
        return isThere ? "CASE WHEN EXISTS (SELECT 1 FROM " + table +
                             " x WHERE x.cluster_id=c.id) THEN 'Y' ELSE 'N' END"
                       : QString("'N'");
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
    if (answer.fields.isEmpty())
        answer.status = status::NoClusterLocation;
    return answer;
}

Answer Get(Context& context, const wire::Fields& request) {
    if (!SeesAll(context) && !context.rights.MayView(Area::Circulation))
        return {status::NotAuthorised};
    const auto id = FindCluster(context, request);
    if (!id)
        return {status::NotFound};
    const Row cluster = *context.records.Find("clusters", *id);
    Answer answer;
    Put(answer.fields, "CCD", cluster["code"].toString());
    Put(answer.fields, "CNM", cluster["name"].toString());
    Put(answer.fields, "CPL", cluster["pickup_location_id"].toString());
    Put(answer.fields, "BLT", cluster["blocks_local"].toString());
    context.database.Each(LocationsWhere("is_desk"), {*id}, [&](const ResultRow& row) {
        Put(answer.fields, "CPGID", row.value(1).toString());
        Put(answer.fields, "CLOCID", row.value(2).toString());
        Put(answer.fields, "CLOCNM", row.value(3).toString());
        Put(answer.fields, "COPCDF", row.value(4).toString());
    });
    context.database.Each(LocationsWhere("is_pickup"), {*id}, [&](const ResultRow& row) {
        Put(answer.fields, "CPLID", row.value(2).toString());
        Put(answer.fields, "CPLNm", row.value(3).toString());
    });
    return answer;
}

/// Reads and checks the record's own fields.
qint16 ReadCluster(Context& context, const wire::Fields& request, qint64 id, Row& row) {
    const QVariant formerPickup = row.value("pickup_location_id");
    if (const qint16 refused = ReadFields(context, Clusters(), request, id == 0, row))
        return refused;
    for (const Field& field : Clusters().fields)
        if (field.duplicateStatus != 0 && context.records.IsTaken("clusters", {.column = field.column},
                                                                  row[field.column].toString(), {}, id))
            return field.duplicateStatus;
    const QVariant pickup = row.value("pickup_location_id");
    if (pickup.isNull() || pickup == formerPickup)
        return status::Ok;
    bool isPickup = false;
    context.database.Each(LocationsWhere("is_pickup"), {id}, [&](const ResultRow& place) {
        isPickup = isPickup || place.value(2).toLongLong() == pickup.toLongLong();
    });
    return isPickup ? status::Ok : status::NotFound;
}

/// Moves the mark of the public catalogue's desk. A cluster has one at the most.
qint16 MarkDesk(Context& context, const wire::Fields& request, qint64 cluster) {
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
    return status::Ok;
}

Answer Add(Context& context, const wire::Fields& request) {
    if (!MayChange(context, "CluCreate"))
        return {status::NotAuthorised};
    Row row;
    if (const qint16 refused = ReadCluster(context, request, 0, row))
        return {refused};
    const qint64 id = context.records.Insert("clusters", row);
    if (const qint16 refused = MarkDesk(context, request, id))
        return {refused};
    Answer answer;
    Put(answer.fields, "CID", QString::number(id));
    Put(answer.fields, "CCD", row["code"].toString());
    return answer;
}

Answer Update(Context& context, const wire::Fields& request) {
    if (!MayChange(context, "CluEdit"))
        return {status::NotAuthorised};
    const auto id = FindCluster(context, request);
    if (!id)
        return {status::NotFound};
    Row row = *context.records.Find("clusters", *id);
    if (const qint16 refused = ReadCluster(context, request, *id, row))
        return {refused};
    context.records.Update("clusters", *id, row);
    return {MarkDesk(context, request, *id)};
}

Answer Remove(Context& context, const wire::Fields& request) {
    if (!MayChange(context, "CluDelete"))
        return {status::NotAuthorised};
    const auto id = FindCluster(context, request);
    if (!id)
        return {status::NotFound};
    for (const Table& table : context.library.GetRegistry().GetTables())
        for (const Column& column : table.columns)
            if (column.target == u"clusters" && column.onRemoval == OnRemoval::Refuse &&
                context.records.Count(table.name, column.name, *id) > 0)
                return {status::InUse};
    context.records.Remove("clusters", *id);
    return {};
}

} // namespace

void RegisterClusters(Registry& registry) {
    Table table{.name = "clusters", .columns = {}};
    for (const Field& field : Clusters().fields) {
        table.columns << field.StoredAs();
        if (field.duplicateStatus != 0)
            table.uniqueTexts << UniqueText{.column = field.column};
    }
    registry.AddTable(table);
    registry.AddRead("GetClusterSecurity", Area::AnyOperator, ReadSecurity);
    registry.AddRead("GetClusterList", Area::AnyOperator, List);
    registry.AddRead("GetCluster", Area::AnyOperator, Get);
    registry.AddChange("AddCluster", Area::AnyOperator, Add);
    registry.AddChange("UpdCluster", Area::AnyOperator, Update);
    registry.AddChange("DelCluster", Area::AnyOperator, Remove);
}

} // namespace sysadmin::server
