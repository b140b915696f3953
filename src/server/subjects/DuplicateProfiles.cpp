#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"
#include "server/subjects/StoredRules.h"
#include "wire/DuplicateDetection.h"
#include "wire/MarcMark.h"

#include <algorithm>

namespace sysadmin::server {

namespace duplicates = wire::duplicates;

namespace {

constexpr qint16 InCatalogingPolicy = 67;
constexpr qint16 InAcquisitionsPolicy = 68;
constexpr qint16 InImportRule = 69;
const QString Profiles = "duplicate_profiles";

/// The record type that a request asks for; bibliographic unless it says another.
QString AskedType(const wire::Fields& request) {
    const QString asked = wire::FirstValue(request, "RT");
    return asked.isEmpty() ? duplicates::Bibliographic : asked;
}

/// "LstCatDp": the profiles of a record type.
Answer ListProfiles(Context& context, const wire::Fields& request) {
    Answer answer;
    context.database.Each("SELECT id, code, name FROM duplicate_profiles WHERE record_type=? ORDER BY id",
                          {AskedType(request)}, [&](const ResultRow& row) {
                              Put(answer.fields, "DID", row.value(0).toString());
                              Put(answer.fields, "DCd", row.value(1).toString());
                              Put(answer.fields, "DNm", row.value(2).toString());
                          });
    return answer;
}

/// How a profile treats a record that is there already: what whoever chooses the profile has to know of it.
Answer AnswerHandling(Context& context, const wire::Fields& request) {
    const auto profile = context.records.Find(Profiles, wire::FirstValue(request, "DID").toLongLong());
    if (!profile)
        return {status::NotFound};
    Answer answer;
    Put(answer.fields, "DH", profile->value("handling").toString());
    return answer;
}

/// The indexes by which records can be compared: those that take one text from a place in the record.
Answer ListMatchIndexes(Context& context, const wire::Fields& request) {
    if (!duplicates::IsRecordType(AskedType(request)))
        return {status::ColumnError};
    Answer answer;
    PutList(context, {"heading_indexes", {{"DAC", "code"}, {"DAN", "name"}, {"Ix", "definition"}}, {"code"}},
            answer.fields);
    return answer;
}

/// The indexes of a profile, with the names that they have now.
void AddIndexes(Context& context, qint64 id, ReplyFields& reply) {
    const char* query = "SELECT p.code, i.name, p.field_override, p.subfield_override, p.weight, p.sequence "
                        "FROM duplicate_profile_indexes p LEFT JOIN heading_indexes i ON i.code=p.code "
                        "WHERE p.profile_id=? ORDER BY p.id";
    const QStringList tags{"DSC", "DSN", "DFO", "DSO", "DFW", "DS#"};
    context.database.Each(query, {id}, [&](const ResultRow& row) {
        for (int i = 0; i < tags.size(); ++i)
            Put(reply, tags[i], row.value(i).toString());
    });
}

qint16 CheckDuplicateProfile(Context&, const wire::Fields&, const Row& before, Row& after) {
    if (!before.isEmpty() && before["record_type"] != after["record_type"])
        return status::ColumnError;
    return status::Ok;
}

bool AreThresholdsInOrder(const Row& profile) {
    const QVariant warn = profile["warn_score"];
    const QVariant replace = profile["replace_score"];
    return warn.isNull() || replace.isNull() || warn.toLongLong() <= replace.toLongLong();
}

/// Each index is there, or stands for the record's own identifier.
qint16 CheckIndexes(Context& context, const wire::Fields&, qint64 id, bool) {
    const QString type = context.records.Find(Profiles, id)->value("record_type").toString();
    const auto codes =
        context.database.FirstColumn("SELECT code FROM duplicate_profile_indexes WHERE profile_id=?", {id});
    const bool areThere = std::all_of(codes.begin(), codes.end(), [&](const QVariant& code) {
        return code == duplicates::RecordIdCode(type) ||
               context.records.IdOfText("heading_indexes", "code", code.toString());
    });
    return areThere ? status::Ok : status::ColumnError;
}

/// No index twice, numbered from 1.
bool AreIndexesInOrder(const QList<Row>& rows) {
    QSet<QString> seen;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString code = Fold(rows[i]["code"].toString());
        if (seen.contains(code) || rows[i]["sequence"].toLongLong() != i + 1)
            return false;
        seen.insert(code);
    }
    return true;
}

bool IsNoneOrField(const QString& value) {
    return value.isEmpty() || duplicates::IsField(value);
}

bool IsNoneOrMark(const QString& value) {
    return value.isEmpty() || (wire::IsMarcMark(value) && value != duplicates::Any);
}

Children Indexes() {
    return {.table = "duplicate_profile_indexes",
            .owner = "profile_id",
            .fields = {SubjectField::Text("DSC", "code", wire::indexes::CodeLength).Required().WriteOnly(),
                       SubjectField::Text("DFO", "field_override", 3).Checked(IsNoneOrField).WriteOnly(),
                       SubjectField::Text("DSO", "subfield_override", 1).Checked(IsNoneOrMark).WriteOnly(),
                       SubjectField::Whole("DFW", "weight", 0, duplicates::MostWeight).Required().WriteOnly(),
                       SubjectField::Whole("DS#", "sequence", 1).Required().WriteOnly()},
            .ordered = true,
            .check = AreIndexesInOrder};
}

/// Kinds of records from the best one down.
Children Qualities() {
    const auto agency = [](const QString& tag, const QString& column) {
        return SubjectField::Text(tag, column, duplicates::AgencyLength).Required();
    };
    return {.table = "duplicate_profile_qualities",
            .owner = "profile_id",
            .fields = {SubjectField::Text("DRT", "type_of_record", 1).Required().Checked(wire::IsMarcMark),
                       SubjectField::Text("EN", "encoding_level", 1).Required().Checked(wire::IsMarcMark),
                       agency("NU", "original_agency"), agency("MA", "modifying_agency"),
                       agency("QHDC", "description_conventions")},
            .ordered = true};
}

Children MergeFields() {
    return {.table = "duplicate_profile_merge_fields",
            .owner = "profile_id",
            .fields = {SubjectField::Text("MF", "field", 3).Required().Checked(duplicates::IsField),
                       SubjectField::Text("MI1", "indicator1", 1).Required().Checked(wire::IsMarcMark),
                       SubjectField::Text("MI2", "indicator2", 1).Required().Checked(wire::IsMarcMark),
                       SubjectField::Text("MN", "institution", duplicates::AgencyLength)},
            .ordered = true};
}

} // namespace

void RegisterDuplicateProfiles(Registry& registry) {
    registry.AddSubject({
        .table = Profiles,
        .area = Area::Cataloging,
        .requests = {.get = "GetCatDp", .add = "AddCatDp", .update = "UpdCatDp", .remove = "DelCatDp"},
        .fields =
            {SubjectField::Text("DCd", "code", duplicates::CodeLength)
                 .Unique(status::DuplicateCode)
                 .ReadOnly(),
             SubjectField::Text("NCd", "code", duplicates::CodeLength)
                 .Required()
                 .Unique(status::DuplicateCode)
                 .Checked(duplicates::IsProfileCode)
                 .WriteOnly(),
             SubjectField::Text("DNm", "name", duplicates::NameLength).ReadOnly(),
             SubjectField::Text("NNm", "name", duplicates::NameLength).Required().WriteOnly(),
             SubjectField::Text("RT", "record_type", 1)
                 .Default(duplicates::Bibliographic)
                 .Checked(duplicates::IsRecordType),
             SubjectField::Text("DH", "handling", 1)
                 .Default(duplicates::handling::AddUnconditional)
                 .Checked(duplicates::IsHandling),
             SubjectField::Text("DC", "cancellation", 1).Default("N").Checked(duplicates::IsCancellation),
             SubjectField::Whole("W", "warn_score", 0, duplicates::MostScore),
             SubjectField::Whole("R", "replace_score", 0, duplicates::MostScore),
             SubjectField::Flag("DDUM", "discards_unmatched")},
        .key = "DID",
        .usedBy = {{"cataloging_policy_groups", "bib_profile_id", InCatalogingPolicy},
                   {"cataloging_policy_groups", "authority_profile_id", InCatalogingPolicy},
                   {"acquisitions_policy_groups", "duplicate_profile_id", InAcquisitionsPolicy},
                   {"import_rules", "bib_profile_id", InImportRule},
                   {"import_rules", "authority_profile_id", InImportRule}},
        .children = {Indexes(), Qualities(), MergeFields()},
        .addReply = {"DID"},
        .rules = {{AreThresholdsInOrder, "The threshold for a warning is above the one for a replacement."}},
        .checkPut = CheckDuplicateProfile,
        .afterPut = CheckIndexes,
        .addToGet = AddIndexes,
    });
    registry.AddTable({.name = "duplicate_profile_indexes",
                       .storedRules = {FindsNone(
                           "SELECT p.id FROM duplicate_profile_indexes p JOIN duplicate_profiles d ON "
                           "d.id=p.profile_id WHERE "
                           "p.code<>CASE WHEN d.record_type='" +
                               duplicates::Bibliographic + "' THEN '" +
                               duplicates::RecordIdCode(duplicates::Bibliographic) + "' ELSE '" +
                               duplicates::RecordIdCode("A") +
                               "' END AND NOT EXISTS (SELECT 1 FROM heading_indexes h WHERE h.code=p.code)",
                           "There is no heading index with this code.", {Profiles, "heading_indexes"})}});
    registry.AddRead("LstCatDp", Area::AnyOperator, ListProfiles);
    registry.About("LstCatDp", {Profiles});
    registry.AddRead("AvlCatDp", Area::Cataloging, ListMatchIndexes);
    registry.AddRead("GetDupHand", Area::AnyOperator, AnswerHandling);
}

} // namespace sysadmin::server
