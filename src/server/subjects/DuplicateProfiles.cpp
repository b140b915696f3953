#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 InAcquisitionsGroup = 68;
constexpr qint16 InImportRule = 69;
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

/// How a profile treats a record that is there already: what whoever chooses the profile has to know of it.
Answer AnswerHandling(Context& context, const wire::Fields& request) {
    const auto profile =
        context.records.Find("duplicate_profiles", wire::FirstValue(request, "DID").toLongLong());
    if (!profile)
        return {status::NotFound};
    Answer answer;
    Put(answer.fields, "DH", profile->value("handling").toString());
    return answer;
}

bool IsHandling(const QString& value) {
    return value.size() == 1 && QString("ARDMB").contains(value);
}

} // namespace

void RegisterDuplicateProfiles(Registry& registry) {
    registry.AddSubject({
        .table = "duplicate_profiles",
        .area = Area::Cataloging,
        .requests = {.get = "GetCatDp"},
        .fields = {SubjectField::Text("DCd", "code", CodeLength).Required().Unique(status::DuplicateCode),
                   SubjectField::Text("DNm", "name", NameLength).Required(),
                   SubjectField::Text("RT", "record_type", 1).Default(Bibliographic),
                   SubjectField::Text("DH", "handling", 1).Checked(IsHandling).Default("A")},
        .key = "DID",
        .usedBy = {{"acquisitions_policy_groups", "duplicate_profile_id", InAcquisitionsGroup},
                   {"import_rules", "bib_profile_id", InImportRule},
                   {"import_rules", "authority_profile_id", InImportRule}},
    });
    registry.AddRead("LstCatDp", Area::AnyOperator, ListProfiles);
    registry.About("LstCatDp", {"duplicate_profiles"});
    registry.AddRead("GetDupHand", Area::AnyOperator, AnswerHandling);
}

} // namespace sysadmin::server
