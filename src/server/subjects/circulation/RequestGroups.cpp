#include "server/Context.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/OneEach.h"

#include <QSet>

// From where requests may be filled, and which kinds of requests there are.

namespace sysadmin::server {

namespace {

/// A request names each location once.
qint16 CheckLocations(Context&, const wire::Fields& request, const Row&, Row&) {
    QSet<QString> named;
    for (const wire::Field& field : request) {
        if (field.tag != u"SI")
            continue;
        if (named.contains(field.value))
            return status::ColumnError;
        named.insert(field.value);
    }
    return status::Ok;
}

/// Which kinds of requests a cluster takes in which channel: OPAC, circulation client, web services.
const OneEach& Configuration() {
    using Field = SubjectField;
    static const OneEach configuration{
        .table = "request_configurations",
        .owner = "cluster_id",
        .ownerTable = "clusters",
        .keyTag = "CID",
        .fields = {Field::Flag("OTH", "opac_title_hold"), Field::Flag("OCH", "opac_copy_hold"),
                   Field::Flag("OTR", "opac_title_recall"), Field::Flag("OCR", "opac_copy_recall"),
                   Field::Flag("CTH", "circ_title_hold"), Field::Flag("CCH", "circ_copy_hold"),
                   Field::Flag("CTR", "circ_title_recall"), Field::Flag("CCR", "circ_copy_recall"),
                   Field::Flag("WTH", "web_title_hold"), Field::Flag("WCH", "web_copy_hold"),
                   Field::Flag("WTR", "web_title_recall"), Field::Flag("WCR", "web_copy_recall")}};
    return configuration;
}

Answer ReadConfiguration(Context& context, const wire::Fields& request) {
    const auto cluster = OwnerIn(context, Configuration(), request);
    if (!cluster)
        return {status::NotFound};
    Answer answer;
    PutOne(context, Configuration(), *cluster, answer.fields);
    return answer;
}

Answer UpdateConfiguration(Context& context, const wire::Fields& request) {
    const auto cluster = OwnerIn(context, Configuration(), request);
    if (!cluster)
        return {status::NotFound};
    Row row;
    if (const qint16 refused = ReadOne(context, Configuration(), *cluster, request, row))
        return {refused};
    StoreOne(context, Configuration(), *cluster, row);
    return {};
}

} // namespace

void RegisterRequestGroups(Registry& registry) {
    registry.AddSubject({
        .table = "request_groups",
        .area = Area::Circulation,
        .requests = {.list = "LstReq",
                     .get = "GetReq",
                     .add = "AddReq",
                     .update = "UpdReq",
                     .remove = "DelReq",
                     .available = "AvlReq"},
        .fields =
            {
                SubjectField::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                SubjectField::Text("N", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
            },
        .memberships = {{.table = "request_group_locations",
                         .ownerColumn = "group_id",
                         .memberTable = "locations",
                         .memberColumn = "location_id",
                         .availableMarker = "A",
                         .selectedMarker = "S"}},
        .addReply = {"ID", "C"},
        .checkPut = CheckLocations,
    });
    registry.AddTable(Configuration().StoredAs());
    registry.AddRead("GetRequestCfg", Area::Circulation, ReadConfiguration);
    registry.AddChange("UpdRequestCfg", Area::Circulation, UpdateConfiguration);
    for (const char* request : {"GetRequestCfg", "UpdRequestCfg"})
        registry.About(request, {Configuration().table}, {"CID"}, Configuration().owner);
}

} // namespace sysadmin::server
