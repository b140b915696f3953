#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/Counts.h"

namespace sysadmin::server {

namespace {

/// The fields of the registration form, by the names that the web service gives them. The last two are the
/// identifier, of which there is the one that the configuration chooses.
const QStringList& RegistrationFields() {
    static const QStringList codes{"title",        "firstName",    "middleName", "lastName", "primaryPhone",
                                   "otherPhone",   "address1",     "address2",   "address3", "address4",
                                   "address5",     "city",         "state",      "country",  "zipCode",
                                   "emailAddress", "SMSNumber",    "department", "major",    "birthDate",
                                   "SSN",          "institutionId"};
    return codes;
}

bool IsIdentifierType(const QString& value) {
    return value == "SSN" || value == "institutionId";
}

Answer ReadSelfRegistration(Context& context, const wire::Fields& request) {
    Database& database = context.database;
    const auto stored = database.FirstRow(
        "SELECT enabled, default_group_id, identifier_type, purge_days FROM self_registration");
    const auto column = [&](int index) { return stored ? stored->value(index).toString() : QString(); };
    Answer answer;
    Put(answer.fields, "P", column(3));
    Put(answer.fields, "G", column(1));
    // The groups of the cluster, and the default one even when it is another cluster's.
    const QString cluster = wire::FirstValue(request, "CID");
    const bool all = cluster.isEmpty();
    database.Each(QString("SELECT id, name FROM patron_groups") + (all ? "" : " WHERE cluster_id=? OR id=?") +
                      " ORDER BY id",
                  all ? QVariantList() : QVariantList{cluster.toLongLong(), column(1).toLongLong()},
                  [&](const ResultRow& row) {
                      Put(answer.fields, "AI", row.value(0).toString());
                      Put(answer.fields, "AN", row.value(1).toString());
                  });
    Put(answer.fields, "IDC", column(2));
    database.Each("SELECT code, visible, required FROM registration_fields ORDER BY id", {},
                  [&](const ResultRow& row) {
                      Put(answer.fields, "FC", row.value(0).toString());
                      Put(answer.fields, "FV", row.value(1).toString());
                      Put(answer.fields, "FR", row.value(2).toString());
                  });
    Put(answer.fields, "SRE", stored ? column(0) : QString("N"));
    return answer;
}

/// Keeps the fields of the registration form that a request carries; without any the kept ones stay.
qint16 StoreRegistrationFields(Context& context, const wire::Fields& request) {
    QStringList codes;
    QStringList flags; // visible and required of each
    for (const wire::Field& field : request) {
        if (field.tag == "FC") {
            if (!RegistrationFields().contains(field.value) || codes.contains(field.value))
                return status::ColumnError;
            codes << field.value;
        } else if (field.tag == "FV" || field.tag == "FR") {
            if (field.value != "Y" && field.value != "N")
                return status::ColumnError;
            flags << field.value;
        }
    }
    if (flags.size() != 2 * codes.size())
        return status::ColumnError;
    for (qsizetype i = 0; i < flags.size(); i += 2)
        if (flags[i] == "N" && flags[i + 1] == "Y")
            return status::ColumnError; // what a patron does not get to see cannot be asked of them
    if (codes.isEmpty())
        return status::Ok;
    for (const QVariant& kept : context.database.FirstColumn("SELECT code FROM registration_fields"))
        if (!codes.contains(kept.toString()))
            context.records.RemoveWhere("registration_fields", "code", kept);
    for (qsizetype i = 0; i < codes.size(); ++i) {
        const Row row{{"code", codes[i]}, {"visible", flags[2 * i]}, {"required", flags[2 * i + 1]}};
        if (const auto id = context.records.IdWhere("registration_fields", "code", codes[i]))
            context.records.Update("registration_fields", *id, row);
        else
            context.records.Insert("registration_fields", row);
    }
    return status::Ok;
}

} // namespace

void RegisterWebServices(Registry& registry) {
    registry.AddSubject({
        .table = "web_service_configuration",
        .area = Area::System,
        .requests = {.get = "GetZebConfig", .update = "UpdZebConfig"},
        .fields =
            {
                SubjectField::Flag("US", "change_sms"),
                SubjectField::Flag("UP", "change_pin"),
                SubjectField::Text("DP", "default_pin", PinLength),
            },
        .columns = {{.name = "default_pin", .secret = true}},
        .single = true,
    });
    registry.AddSubject({
        .table = "self_registration",
        .area = Area::System,
        .requests = {.update = "UpdWSSelfReg"},
        .fields =
            {
                SubjectField::Flag("SRE", "enabled"),
                SubjectField::Whole("P", "purge_days", 0, wire::MostCount),
                SubjectField::Reference("G", "default_group_id", "patron_groups", OnRemoval::Clear)
                    .Required(),
                SubjectField::Text("IDC", "identifier_type", NameLength).Required().Checked(IsIdentifierType),
            },
        .single = true,
        .afterPut = [](Context& context, const wire::Fields& request, qint64,
                       bool) { return StoreRegistrationFields(context, request); },
    });
    registry.AddTable({.name = "registration_fields",
                       .columns = {{.name = "code"},
                                   {.name = "visible", .type = ColumnType::Flag, .fallback = "N"},
                                   {.name = "required", .type = ColumnType::Flag, .fallback = "N"}},
                       .uniqueSets = {{"code"}},
                       .ordered = true,
                       .partOf = "self_registration"});
    registry.AddRead("GetWSSelfReg", Area::System, ReadSelfRegistration);
    registry.About("GetWSSelfReg", {"self_registration"});
    // The markers in the texts belong to the web service.
    registry.AddSubject({
        .table = "login_summary",
        .area = Area::System,
        .requests = {.get = "GetWSLoginSum", .update = "UpdWSLoginSum"},
        .fields =
            {
                SubjectField::Flag("LSE", "enabled"),
                SubjectField::Flag("OA", "overdue"),
                SubjectField::Flag("FA", "fines"),
                SubjectField::Flag("BA", "blocks"),
                SubjectField::Flag("EA", "expiration"),
                SubjectField::Whole("ED", "expiration_days", 0, wire::MostCount).Default("30"),
                SubjectField::Text("OAT", "overdue_text", AlertLength)
                    .Default("You have overdue materials at \\\\l."),
                SubjectField::Text("FAT", "fines_text", AlertLength)
                    .Default("You have outstanding fines/fees at \\\\l."),
                SubjectField::Text("BAT", "blocks_text", AlertLength)
                    .Default("You have circulation blocks at \\\\l."),
                SubjectField::Text("EAT", "expiration_text", AlertLength)
                    .Default("Your account will expire on \\\\d, \\\\n days from today."),
            },
        .single = true,
    });
}

} // namespace sysadmin::server
