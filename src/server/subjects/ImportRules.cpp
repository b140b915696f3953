#include "server/SubjectReads.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchDatabases.h"
#include "server/subjects/StoredRules.h"
#include "wire/BulkImport.h"

namespace sysadmin::server {

namespace import = wire::bulkimport;

namespace {

using SettingKind = import::Setting::Kind;

constexpr qint16 InvalidVendor = 58;
const QString SettingsTable = "import_rule_settings";

template <SettingKind kind>
bool IsValueOf(const QString& value) {
    return import::IsValue(kind, value);
}

/// How a setting is stored: a text as such, the choice of a record as a reference to it.
SubjectField FieldOf(const import::Setting& setting) {
    const auto text = [&](bool (*check)(const QString&)) {
        return SubjectField::Text(setting.tag, "value", import::ValueLength).Checked(check);
    };
    const auto reference = [&](const QString& column, const QString& table) {
        return SubjectField::Reference(setting.tag, column, table);
    };
    switch (setting.kind) {
    case SettingKind::Field:
        return text(IsValueOf<SettingKind::Field>);
    case SettingKind::Subfield:
        return text(IsValueOf<SettingKind::Subfield>);
    case SettingKind::Indicator:
        return text(IsValueOf<SettingKind::Indicator>);
    case SettingKind::Flag:
        return text(IsValueOf<SettingKind::Flag>);
    case SettingKind::Count:
        return text(IsValueOf<SettingKind::Count>);
    case SettingKind::Amount:
        return text(IsValueOf<SettingKind::Amount>);
    case SettingKind::CopyMethod:
        return text(IsValueOf<SettingKind::CopyMethod>);
    case SettingKind::Vendor:
        return reference("vendor_id", "vendors");
    case SettingKind::VendorAccount:
        return reference("vendor_account_id", "vendor_accounts");
    case SettingKind::Location:
        return reference("location_id", "locations");
    case SettingKind::OrderType:
        return reference("po_type_id", "po_types");
    case SettingKind::LineItemType:
        return reference("line_item_type_id", "line_item_types");
    case SettingKind::Ledger:
        return reference("ledger_id", "ledgers");
    case SettingKind::FiscalPeriod:
        return reference("fiscal_period_id", "fiscal_periods");
    default:
        return text(IsValueOf<SettingKind::Text>);
    }
}

/// A setting with the column that keeps it.
struct StoredSetting {
    import::Setting setting;
    SubjectField field;
};

/// All that are stored. The vendor's code is not: it is what the vendor has.
const QList<StoredSetting>& StoredSettings() {
    static const QList<StoredSetting> settings = [] {
        QList<StoredSetting> all;
        for (const import::Setting& setting : import::Settings())
            if (setting.kind != SettingKind::VendorCode)
                all.append({setting, FieldOf(setting)});
        return all;
    }();
    return settings;
}

/// Whether a stored row is a setting with a value that it may have.
bool IsPossibleSetting(const Row& row) {
    const auto& all = StoredSettings();
    const auto stored = std::find_if(all.begin(), all.end(), [&](const StoredSetting& candidate) {
        return import::PartName(candidate.setting.part) == row["part"].toString() &&
               candidate.setting.name == row["name"].toString();
    });
    if (stored == all.end())
        return false;
    const Column column = stored->field.StoredAs();
    return column.rule.WrongWith(column.type, row[column.name].toString()).isEmpty();
}

Table SettingsTableOf() {
    Table table{.name = SettingsTable,
                .columns = {{.name = "rule_id",
                             .type = ColumnType::Reference,
                             .target = "import_rules",
                             .onRemoval = OnRemoval::RemoveToo},
                            {.name = "part"},
                            {.name = "name"}},
                .uniqueSets = {{"rule_id", "part", "name"}},
                .owner = "rule_id"};
    for (const StoredSetting& stored : StoredSettings())
        if (!table.Find(stored.field.column)) {
            table.columns.append(stored.field.StoredAs());
            table.columns.last().rule = {}; // settings that share a column have rules of their own
        }
    table.rules = {{IsPossibleSetting, "There is no such setting, or it cannot hold this value."}};
    return table;
}

/// The rows of the settings, with their ids, by part and name.
QHash<QString, Row> SettingsOf(Context& context, qint64 rule) {
    QHash<QString, Row> rows;
    for (const QVariant& id :
         context.database.FirstColumn("SELECT id FROM " + SettingsTable + " WHERE rule_id=?", {rule})) {
        Row row = *context.records.Find(SettingsTable, id.toLongLong());
        row.insert("id", id);
        rows.insert(row["part"].toString() + '/' + row["name"].toString(), row);
    }
    return rows;
}

QString KeyOf(const import::Setting& setting) {
    return import::PartName(setting.part) + '/' + setting.name;
}

QString CodeOfVendor(Context& context, const QVariant& id) {
    return context.database.FirstValue("SELECT code FROM vendors WHERE id=?", {id}).toString();
}

void AddSettings(Context& context, qint64 rule, ReplyFields& reply) {
    const QHash<QString, Row> rows = SettingsOf(context, rule);
    QVariant vendor;
    QHash<QString, QVariant> values;
    for (const StoredSetting& stored : StoredSettings()) {
        values.insert(stored.setting.tag, rows.value(KeyOf(stored.setting)).value(stored.field.column));
        if (stored.setting.kind == SettingKind::Vendor)
            vendor = values.value(stored.setting.tag);
    }
    for (const import::Setting& setting : import::Settings())
        Put(reply, setting.tag,
            setting.kind == SettingKind::VendorCode ? CodeOfVendor(context, vendor)
                                                    : values.value(setting.tag).toString());
}

/// A vendor may be named by its code alone; where both are said they name the same one.
qint16 SettleVendor(Context& context, const QString& code, QVariant& vendor) {
    if (code.trimmed().isEmpty())
        return status::Ok;
    const auto named = context.records.IdOfText("vendors", "code", code);
    if (!named || (!vendor.isNull() && vendor.toLongLong() != *named))
        return InvalidVendor;
    vendor = *named;
    return status::Ok;
}

/// What cannot be told from one value alone. `row` is about to be stored, `before` is empty for a new one.
qint16 CheckSetting(Context& context, const StoredSetting& stored, const Row& before, const QVariant& value,
                    const QVariant& vendor) {
    if (value == before.value(stored.field.column))
        return status::Ok;
    if (stored.setting.kind == SettingKind::FundCode && !context.records.IdWhere("funds", "code", value))
        return status::InvalidFund;
    if (stored.setting.kind == SettingKind::Currency &&
        !context.records.IdOfText("currencies", "code", value.toString()))
        return status::ColumnError;
    if (stored.setting.kind != SettingKind::VendorAccount)
        return status::Ok;
    const auto account = context.records.Find("vendor_accounts", value.toLongLong());
    return account && account->value("vendor_id") == vendor ? status::Ok : status::ColumnError;
}

/// Stores the settings that the request carries; an empty one is not kept.
qint16 StoreSettings(Context& context, const wire::Fields& request, qint64 rule, bool) {
    const QHash<QString, Row> rows = SettingsOf(context, rule);
    QVariant vendor;
    for (const StoredSetting& stored : StoredSettings()) {
        const Row before = rows.value(KeyOf(stored.setting));
        std::optional<QString> sent = Sent(request, stored.setting.tag);
        const auto code = stored.setting.kind == SettingKind::Vendor ? Sent(request, "OVCODE") : std::nullopt;
        if (code && !sent)
            sent = QString();
        QVariant value = before.value(stored.field.column);
        if (sent) {
            Row row;
            if (const qint16 refused = ReadFields(context, {stored.field}, request, true, row))
                return refused;
            value = row.value(stored.field.column);
        }
        if (stored.setting.kind == SettingKind::Vendor) {
            if (const qint16 refused = SettleVendor(context, code.value_or(QString()), value))
                return refused;
            vendor = value;
        }
        if (!sent)
            continue;
        if (value.isNull() || value.toString().trimmed().isEmpty()) {
            if (!before.isEmpty())
                context.records.Remove(SettingsTable, before["id"].toLongLong());
            continue;
        }
        if (const qint16 refused = CheckSetting(context, stored, before, value, vendor))
            return refused;
        if (before.isEmpty())
            context.records.Insert(SettingsTable, {{"rule_id", rule},
                                                   {"part", import::PartName(stored.setting.part)},
                                                   {"name", stored.setting.name},
                                                   {stored.field.column, value}});
        else if (before[stored.field.column] != value)
            context.records.Update(SettingsTable, before["id"].toLongLong(), {{stored.field.column, value}});
    }
    return status::Ok;
}

/// The columns of the flags of the load mode, in the order of their tags.
const QStringList& LoadColumns() {
    static const QStringList columns{"loads_items",         "loads_orders",
                                     "loads_holdings",      "loads_several_holdings",
                                     "loads_several_items", "updates_holdings"};
    return columns;
}

/// The mode that the row's flags say; -1 for none.
int ModeOf(const Row& row) {
    QStringList flags;
    for (int i = 0; i < LoadColumns().size(); ++i)
        if (row[LoadColumns()[i]].toString() == u"Y")
            flags.append(import::LoadFlags()[i]);
    return import::ModeOf(flags);
}

void AddModeAndSettings(Context& context, qint64 id, ReplyFields& reply) {
    const int mode = ModeOf(*context.records.Find("import_rules", id));
    const bool hasMode = mode >= 0;
    Put(reply, "OSHOW", hasMode && import::LoadModes()[mode].createsOrders ? "-1" : "0");
    Put(reply, "VSHOW", hasMode && import::LoadModes()[mode].updates ? "-1" : "0");
    AddSettings(context, id, reply);
}

qint16 CheckImportRule(Context& context, const wire::Fields&, const Row&, Row& after) {
    if (ModeOf(after) < 0)
        return status::ColumnError;
    const QList<QPair<QString, QString>> profiles{{"bib_profile_id", "B"}, {"authority_profile_id", "A"}};
    for (const auto& [column, type] : profiles)
        if (!after[column].isNull() &&
            context.records.Find("duplicate_profiles", after[column].toLongLong())->value("record_type") !=
                type)
            return status::ColumnError;
    return status::Ok;
}

SubjectField PlaceField(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 3).Checked(import::IsField);
}
SubjectField PlaceSubfield(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 1).Checked(import::IsSubfield);
}
SubjectField PlaceIndicator(const QString& tag, const QString& column) {
    return SubjectField::Text(tag, column, 1).Checked(import::IsIndicator);
}

/// Fields of a record that are looked at in this order.
Children PlaceList(const QString& table, const QString& tag) {
    return {.table = table,
            .owner = "rule_id",
            .fields = {PlaceIndicator(tag + "I1", "indicator1"), PlaceIndicator(tag + "I2", "indicator2"),
                       PlaceField(tag + "F", "field").Required(),
                       PlaceSubfield(tag + "SF", "subfield").Required()},
            .ordered = true,
            .most = import::MostFields};
}

/// No two rows are of the same MARC item and location.
bool AreMappingsDifferent(const QList<Row>& rows) {
    QSet<QString> seen;
    for (const Row& row : rows) {
        const QString key = Fold(row["marc_item"].toString()) + '\n' + Fold(row["marc_location"].toString());
        if (seen.contains(key))
            return false;
        seen.insert(key);
    }
    return true;
}

Children RuleMappings() {
    return {.table = "import_mappings",
            .owner = "rule_id",
            .fields = {SubjectField::Text("DMI", "marc_item", import::ValueLength).Required(),
                       SubjectField::Reference("DMId", "item_type_id", "item_types").Required(),
                       SubjectField::Text("DLI", "marc_location", import::ValueLength).Required(),
                       SubjectField::Reference("DML", "location_id", "locations").Required(),
                       SubjectField::Reference("DMH", "hierarchy_id", "call_number_hierarchies")},
            .ordered = true,
            .most = import::MostMappings,
            .check = AreMappingsDifferent};
}

QList<SubjectField> ImportRuleFields() {
    QList<SubjectField> fields{
        SubjectField::Text("BIC", "code", import::CodeLength)
            .Unique(status::DuplicateCode)
            .ReadOnly()
            .InList(),
        SubjectField::Text("NCd", "code", import::CodeLength)
            .Required()
            .Unique(status::DuplicateCode)
            .WriteOnly(),
        SubjectField::Text("BIN", "name", import::NameLength)
            .Unique(status::DuplicateName)
            .ReadOnly()
            .InList(),
        SubjectField::Text("NNm", "name", import::NameLength)
            .Required()
            .Unique(status::DuplicateName)
            .WriteOnly(),
        SubjectField::Reference("SI", "bib_profile_id", "duplicate_profiles"),
        SubjectField::Reference("AI", "authority_profile_id", "duplicate_profiles"),
        SubjectField::Reference("SLI", "owning_library_id", "owning_libraries"),
        SubjectField::Whole("CSID", "character_set").Checked(IsCharacterSet),
        SubjectField::Flag("DOS", "opac_suppressed"),
        SubjectField::Flag("RIOS", "keeps_opac_suppression"),
        SubjectField::Flag("DCR", "cataloging_review"),
        SubjectField::Flag("CCIS_BIN", "at_bindery"),
        SubjectField::Flag("CCIS_CIRC_REV", "circulation_review"),
        SubjectField::Flag("CCIS_DMG", "damaged"),
        SubjectField::Flag("CCIS_IP", "in_process"),
        SubjectField::Flag("CCIS_LLA", "lost"),
        SubjectField::Flag("CCIS_MIS", "missing"),
        SubjectField::Flag("CCIS_WD", "withdrawn"),
    };
    for (const auto& [tag, column] :
         {std::pair<QString, QString>{"IR_MM", "magnetic_media"}, {"IR_S", "sensitize"}})
        fields << PlaceField(tag + "F", column + "_field") << PlaceSubfield(tag + "S", column + "_subfield")
               << PlaceIndicator(tag + "I1", column + "_indicator1")
               << PlaceIndicator(tag + "I2", column + "_indicator2")
               << SubjectField::Text(tag + "M", column + "_value", import::ValueLength);
    for (int i = 0; i < LoadColumns().size(); ++i)
        fields << SubjectField::Flag(import::LoadFlags()[i], LoadColumns()[i]);
    return fields << SubjectField::Flag("U4DB", "uses_existing_bibs")
                  << SubjectField::Flag("C852", "copies_852") << SubjectField::Flag("C856", "copies_856")
                  << SubjectField::Flag("IR_ONE_PER_BIB", "one_order_per_bib")
                  << SubjectField::Flag("IR_AUTO_APPR", "approves_orders");
}

/// What the rules choose from: profiles of each kind, owning libraries, call number hierarchies.
Answer ListImportChoices(Context& context, const wire::Fields&) {
    Answer answer;
    const auto put = [&](const QString& sql, const QString& idTag, const QString& nameTag) {
        context.database.Each(sql, {}, [&](const ResultRow& row) {
            Put(answer.fields, idTag, row.value(0).toString());
            Put(answer.fields, nameTag, row.value(1).toString());
        });
    };
    put("SELECT id, name FROM duplicate_profiles WHERE record_type='B' ORDER BY name", "BuI", "BuN");
    put("SELECT id, name FROM duplicate_profiles WHERE record_type='A' ORDER BY name", "AuI", "AuN");
    put("SELECT id, name FROM owning_libraries ORDER BY name", "DCI", "DCN");
    put("SELECT id, name FROM call_number_hierarchies ORDER BY name", "D1", "D2");
    return answer;
}

} // namespace

void RegisterImportRules(Registry& registry) {
    registry.AddSubject({
        .table = "import_rules",
        .area = Area::Cataloging,
        .requests =
            {.list = "LstImp", .get = "GetImp", .add = "AddImp", .update = "UpdImp", .remove = "DelImp"},
        .fields = ImportRuleFields(),
        .key = "BII",
        .children = {PlaceList("import_item_type_fields", "DI"), PlaceList("import_barcode_fields", "DB"),
                     RuleMappings()},
        .addReply = {"BII"},
        .checkPut = CheckImportRule,
        .afterPut = StoreSettings,
        .addToGet = AddModeAndSettings,
    });
    registry.AddTable(SettingsTableOf());
    registry.AddTable(
        {.name = "import_rules",
         .rules = {{[](const Row& rule) { return ModeOf(rule) >= 0; }, "The load mode is not one there is."}},
         .storedRules = {
             FindsNone("SELECT r.id FROM import_rules r WHERE EXISTS (SELECT 1 FROM "
                       "duplicate_profiles d WHERE (d.id=r.bib_profile_id AND d.record_type<>'B') "
                       "OR (d.id=r.authority_profile_id AND d.record_type<>'A'))",
                       "A duplicate profile is of the wrong type.", {"duplicate_profiles"})}});
    registry.AddRead("AvlImp", Area::AnyOperator, ListImportChoices);
    registry.AddList("AvlLocations", Area::AnyOperator,
                     {{"locations", {{"D5", "id"}, {"D6", "code"}}, {"code"}}});
    registry.AddList("GetItemTypes", Area::AnyOperator,
                     {{"item_types", {{"D3", "id"}, {"D4", "code"}}, {"code"}}});
}

} // namespace sysadmin::server
