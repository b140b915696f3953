#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 InAcquisitionsGroup = 68;
const QString Bibliographic = "B";

/// "LstCatDp": the profiles of a record type; the bibliographic ones unless another type is asked for.
Answer ListProfiles(Context& context, const wire::Fields& request) {
    const QString asked = wire::FirstValue(request, "RT");
    Answer answer;
    context.database.Each("SELECT id, code, name FROM duplicate_profiles WHERE record_type=? ORDER BY id",
                          {asked.isEmpty() ? Bibliographic : asked}, [&](const ResultRow& row) {
                              Put(answer.fields, "DID", row.value(0).toString());
                              Put(answer.fields, "DCd", row.value(1).toString());
                              Put(answer.fields, "DNm", row.value(2).toString());
                          });
    return answer;
}

} // namespace

void RegisterDuplicateProfiles(Registry& registry) {
    registry.AddSubject({
        .table = "duplicate_profiles",
        .area = Area::Cataloging,
        .fields = {SubjectField::Text("DCd", "code", CodeLength).Required().Unique(status::DuplicateCode),
                   SubjectField::Text("DNm", "name", NameLength).Required(),
                   SubjectField::Text("RT", "record_type", 1).Default(Bibliographic)},
        .key = "DID",
        .usedBy = {{"acquisitions_policy_groups", "duplicate_profile_id", InAcquisitionsGroup}},
    });
    registry.AddRead("LstCatDp", Area::AnyOperator, ListProfiles);
    registry.About("LstCatDp", {"duplicate_profiles"});
}

} // namespace sysadmin::server
