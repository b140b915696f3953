#include "wire/RequestForms.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/Vouchers.h"

namespace sysadmin::server {

namespace forms = wire::requestforms;

namespace {

constexpr qint16 IsSystemDefined = 81;

/// The types that the server offers; what they are called.
const QList<QPair<QString, QString>>& FormTypes() {
    static const QList<QPair<QString, QString>> types{{"0", "Form Without Bibliographic Data"},
                                                      {"L", "Interlibrary Loan: Book"},
                                                      {"P", "Interlibrary Loan: Article"},
                                                      {"S", "Universal Borrowing: Call Slip"},
                                                      {"Z", "Universal Borrowing: Remote Catalogue"},
                                                      {"U", "Universal Borrowing"},
                                                      {"X", "VDX: Book"},
                                                      {"Y", "VDX: Article"},
                                                      {"C", "CLIO: General"},
                                                      {"E", "CLIO: Book"},
                                                      {"F", "CLIO: Article"},
                                                      {"A", "ARTEmail"}};
    return types;
}

bool IsNoneOrEmail(const QString& value) {
    return value.isEmpty() || forms::IsEmailAddress(value);
}

bool IsOutput(const QString& value) {
    return value == u"E" || value == u"F";
}

bool IsNoneOrOutsideField(const QString& value) {
    return value.isEmpty() || forms::OutsideFields().contains(value);
}

bool IsNoneOrChangeCode(const QString& value) {
    return value.isEmpty() || value == u"1" || value == u"2" || value == u"3";
}

/// Positions count from 1 in the order in which the fields are sent, and there is one field at least.
bool AreFieldsInOrder(const QList<Row>& rows) {
    for (qsizetype i = 0; i < rows.size(); ++i)
        if (rows[i]["position"].toLongLong() != i + 1)
            return false;
    return !rows.isEmpty();
}

Children FormFields() {
    return {.table = "request_form_fields",
            .owner = "form_id",
            .fields = {SubjectField::Whole("FS", "position", 1, forms::MostFields).Required(),
                       SubjectField::Text("CTAG", "outside_field", forms::LabelLength)
                           .Checked(IsNoneOrOutsideField),
                       SubjectField::Text("FL", "label", forms::LabelLength).Required(),
                       SubjectField::Text("CMAP", "mapping", forms::MappingLength),
                       SubjectField::Flag("FR", "required"),
                       SubjectField::Text("COC", "change_code", 1).Checked(IsNoneOrChangeCode)},
            .ordered = true,
            .most = forms::MostFields,
            .check = AreFieldsInOrder};
}

QList<Membership> Members() {
    Membership groups{.table = "request_form_patron_groups",
                      .ownerColumn = "form_id",
                      .memberTable = "patron_groups",
                      .memberColumn = "patron_group_id",
                      .availableMarker = "A",
                      .availableId = "API",
                      .availableName = "APN",
                      .selectedMarker = "S",
                      .selectedId = "SPI",
                      .selectedName = "SPN",
                      .whole = true};
    Membership databases{.table = "request_form_databases",
                         .ownerColumn = "form_id",
                         .memberTable = "search_databases",
                         .memberColumn = "database_id",
                         .key = "code",
                         .availableMarker = "A",
                         .availableId = "ADC",
                         .availableName = "ADN",
                         .selectedMarker = "S",
                         .selectedId = "SDC",
                         .selectedName = "SDN",
                         .whole = true};
    Membership borrowing = databases;
    borrowing.table = "request_form_ub_databases";
    borrowing.condition = "m.universal_borrowing='Y'";
    borrowing.availableId = "AUDC";
    borrowing.availableName = "AUDN";
    borrowing.selectedId = "SUDC";
    borrowing.selectedName = "SUDN";
    return {groups, databases, borrowing};
}

qint16 CheckForm(Context&, const wire::Fields&, const Row& before, Row& after) {
    const bool hasFixedCode = after["form_type"] == forms::WithoutBibliographicData;
    if (hasFixedCode && after["code"] != forms::WithoutBibliographicDataCode)
        return status::ColumnError;
    // The system finds its own forms by code and type.
    const bool isOwn = before["system_defined"] == "Y";
    if (isOwn && (before["code"] != after["code"] || before["form_type"] != after["form_type"]))
        return status::ColumnError;
    return IsVoucherRangeInOrder(after) ? status::Ok : status::ColumnError;
}

/// Fields that are exchanged say with which field of the outside system, and what the patron may do.
qint16 CheckFields(Context& context, const wire::Fields&, qint64 id, bool) {
    const QString type =
        context.database.FirstValue("SELECT form_type FROM request_forms WHERE id=?", {id}).toString();
    if (!forms::IsExchanged(type))
        return status::Ok;
    const bool isIncomplete = context.database
                                  .FirstRow("SELECT 1 FROM request_form_fields WHERE form_id=? AND "
                                            "(outside_field='' OR change_code='')",
                                            {id})
                                  .has_value();
    return isIncomplete ? status::ColumnError : status::Ok;
}

Answer ListForms(Context& context, const wire::Fields&) {
    Answer answer;
    context.database.Each("SELECT id, form_type, code, name, suppressed FROM request_forms ORDER BY id", {},
                          [&](const ResultRow& row) {
                              const QStringList tags{"I", "FT", "C", "N", "S"};
                              for (int i = 0; i < int(tags.size()); ++i)
                                  Put(answer.fields, tags[i], row.value(i).toString());
                              const bool borrows = forms::IsUniversalBorrowing(row.value(1).toString());
                              Put(answer.fields, "ub", borrows ? "Y" : "N");
                          });
    return answer;
}

/// The types of forms, and with which outside systems the library exchanges requests.
Answer ListTypes(Context& context, const wire::Fields&) {
    const auto systems =
        context.database.FirstRow("SELECT exchanges_vdx, exchanges_clio FROM interlibrary_systems");
    const auto exchanges = [&](int column) {
        return systems && systems->value(column).toString() == u"Y" ? "Y" : "N";
    };
    Answer answer;
    Put(answer.fields, "VDX", exchanges(0));
    Put(answer.fields, "CLIO", exchanges(1));
    for (const auto& [code, name] : FormTypes()) {
        Put(answer.fields, "FT", code);
        Put(answer.fields, "FTD", name);
    }
    return answer;
}

} // namespace

void RegisterRequestForms(Registry& registry) {
    registry.AddSubject({
        .table = "request_forms",
        .area = Area::System,
        .requests = {.get = "GetOFrm",
                     .add = "AddOFrm",
                     .update = "UpdOFrm",
                     .remove = "DelOFrm",
                     .available = "AvlOFrm"},
        .fields =
            QList<SubjectField>{
                SubjectField::Text("C", "code", forms::CodeLength).Required().Unique(status::DuplicateCode),
                SubjectField::Text("N", "name", forms::NameLength).Required().Unique(status::DuplicateName),
                SubjectField::Text("E", "email", forms::EmailLength).Checked(IsNoneOrEmail),
                SubjectField::Text("In", "instructions", forms::InstructionsLength),
                SubjectField::Flag("OS", "suppressed"),
                SubjectField::Text("FT", "form_type", 1).Required().Checked(forms::IsType),
                SubjectField::Text("OT", "output", 1).Checked(IsOutput).Default("E"),
            } +
            VoucherFields("P"),
        .key = "I",
        .columns = {{.name = "system_defined", .type = ColumnType::Flag, .fallback = "N"}},
        .memberships = Members(),
        .children = {FormFields()},
        .addReply = {"I"},
        .checkPut = CheckForm,
        .afterPut = CheckFields,
        .checkRemove =
            [](Context&, qint64, const Row& form) {
                return form["system_defined"] == "Y" ? IsSystemDefined : status::Ok;
            },
    });
    registry.AddRead("LstOFrm", Area::System, ListForms);
    registry.About("LstOFrm", {"request_forms"});
    // Comes with the installation.
    registry.AddTable({.name = "request_forms",
                       .rules = {{IsVoucherRangeInOrder, "The range of vouchers is not in order."}},
                       .storedRules = {MustStay("SELECT id FROM request_forms WHERE system_defined='Y'",
                                                "A form of the system's own is missing.")}});
    registry.AddTable({.name = "interlibrary_systems",
                       .columns = {{.name = "only_one", .fallback = "Y", .bookkeeping = true},
                                   {.name = "exchanges_vdx", .type = ColumnType::Flag, .fallback = "N"},
                                   {.name = "exchanges_clio", .type = ColumnType::Flag, .fallback = "N"}},
                       .uniqueSets = {{"only_one"}}});
    registry.AddRead("LstFormTypes", Area::System, ListTypes);
}

} // namespace sysadmin::server
