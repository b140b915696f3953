#include "server/subjects/SearchDatabases.h"
#include "server/Context.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "wire/Bib1.h"
#include "wire/SearchDatabases.h"

#include <algorithm>

namespace sysadmin::server {

namespace databases = wire::databases;
namespace bib1 = wire::bib1;

namespace {

constexpr qint16 RemoteUnreachable = 60;

bool IsDatabaseType(const QString& value) {
    return value == databases::SystemType || value == databases::TargetType;
}

template <bib1::Type type>
bool IsAttribute(const QString& value) {
    if (value.trimmed().isEmpty())
        return true;
    bool valid = false;
    const int number = value.toInt(&valid);
    return valid && bib1::IsValue(type, number);
}

template <bib1::Type type>
SubjectField Attribute(const QString& tag, const QString& column) {
    return SubjectField::Whole(tag, column, 1).Checked(IsAttribute<type>);
}

/// No search code stands there twice, and each truncates in one way at the most.
bool AreAttributesInOrder(const QList<Row>& rows) {
    QSet<QString> codes;
    for (const Row& row : rows) {
        int truncations = 0;
        for (const char* column : {"left_truncation", "both_truncation", "right_truncation"})
            truncations += row[column].toString() == u"Y" ? 1 : 0;
        const QString code = Fold(row["code"].toString());
        if (truncations > 1 || codes.contains(code))
            return false;
        codes.insert(code);
    }
    return true;
}

/// The row's pairs of address and port, as they are compared.
QSet<QString> PlacesOf(const Row& row) {
    QSet<QString> places;
    const bool target = row["type"] == databases::TargetType;
    for (const DatabaseService& service : DatabaseServices()) {
        const QString address = Fold(row[service.address].toString());
        const QVariant port = row[service.port];
        if (address.isEmpty() || port.isNull())
            continue;
        QString place = address + '\n' + port.toString();
        // A target's server may well hold several databases.
        if (target)
            place += '\n' + row["database_name"].toString();
        places.insert(place);
        if (target)
            break;
    }
    return places;
}

qint16 CheckDatabase(Context& context, const wire::Fields&, const Row& before, Row& after) {
    // Another server has another certificate.
    if (after["administration_address"] != before["administration_address"] ||
        after["administration_port"] != before["administration_port"])
        after["trusted_certificate"] = "";
    if (before["code"] == databases::LocalCode &&
        (after["code"] != before["code"] || after["type"] != before["type"]))
        return status::LocalDatabase;
    const auto* tried = dynamic_cast<const ReachTried*>(context.prepared);
    if (tried && !tried->outcome)
        return status::Continues;
    if (tried && tried->outcome != Outcome::Connected)
        return RemoteUnreachable;
    const QSet<QString> places = PlacesOf(after);
    if (places.isEmpty() || (!before.isEmpty() && PlacesOf(before) == places))
        return status::Ok;
    const auto others =
        context.database.FirstColumn("SELECT id FROM search_databases WHERE type=? AND code<>?",
                                     {after["type"].toString(), before["code"].toString()});
    const bool taken = std::any_of(others.begin(), others.end(), [&](const QVariant& id) {
        return PlacesOf(*context.records.Find("search_databases", id.toLongLong())).intersects(places);
    });
    return taken ? status::AddressInUse : status::Ok;
}

qint16 RefuseLocal(Context&, qint64, const Row& record) {
    return record["code"] == databases::LocalCode ? status::LocalDatabase : status::Ok;
}

void AddId(Context& context, qint64 id, ReplyFields& reply) {
    const QVariant type = context.database.FirstValue("SELECT type FROM search_databases WHERE id=?", {id});
    Put(reply, "DBI", QString::number(id));
    Put(reply, "T", type == databases::TargetType ? "Z39.50" : "Tessary");
}

/// Databases of one type that have an address in common: those behind the first one.
QList<qint64> DatabasesOfSamePlace(Database& database) {
    QStringList columns{"id", "type", "database_name"};
    for (const DatabaseService& service : DatabaseServices())
        columns << service.address << service.port;
    QSet<QString> taken;
    QList<qint64> ids;
    database.Each("SELECT " + columns.join(", ") + " FROM search_databases ORDER BY id", {},
                  [&](const ResultRow& result) {
                      Row row;
                      for (qsizetype i = 0; i < columns.size(); ++i)
                          row.insert(columns[i], result.value(int(i)));
                      QSet<QString> places;
                      for (const QString& place : PlacesOf(row))
                          places.insert(row["type"].toString() + '\n' + place);
                      if (taken.intersects(places))
                          ids << row["id"].toLongLong();
                      taken.unite(places);
                  });
    return ids;
}

QList<SubjectField> Services() {
    QList<SubjectField> fields;
    for (const DatabaseService& service : DatabaseServices())
        fields << SubjectField::Text(service.addressTag, service.address, databases::AddressLength)
               << SubjectField::Whole(service.portTag, service.port, 0, databases::MostPort);
    return fields;
}

Membership AccessGroups() {
    return {.table = "search_database_access_groups",
            .ownerColumn = "database_id",
            .memberTable = "access_groups",
            .memberColumn = "access_group_id",
            .whole = true};
}

Children Attributes() {
    return {.table = "search_database_attributes",
            .owner = "database_id",
            .fields = {SubjectField::Text("ASC", "code", databases::SearchCodeLength).Required(),
                       SubjectField::Text("PSC", "parent_code", databases::SearchCodeLength),
                       Attribute<bib1::Use>("A1", "use_attribute"),
                       Attribute<bib1::Relation>("A2", "relation_attribute"),
                       Attribute<bib1::Position>("A3", "position_attribute"),
                       Attribute<bib1::Structure>("A4", "structure_attribute"),
                       Attribute<bib1::Completeness>("A6", "completeness_attribute"),
                       SubjectField::Flag("AA", "joins_words"), SubjectField::Flag("LT", "left_truncation"),
                       SubjectField::Flag("BE", "both_truncation"),
                       SubjectField::Flag("RT", "right_truncation"),
                       SubjectField::Text("AD", "description", databases::NameLength)},
            .marker = "AS",
            .ordered = true,
            .check = AreAttributesInOrder};
}

Answer ListDatabaseChoices(Context& context, const wire::Fields&) {
    Answer answer;
    PutAvailable(context, AccessGroups(), std::nullopt, answer.fields);
    PutList(context, {"holdings_hooks", {{"DID", "id"}, {"DNm", "name"}}, {"name"}}, answer.fields);
    return answer;
}

Answer ListCharacterSets(Context&, const wire::Fields&) {
    Answer answer;
    int id = 0;
    for (const CharacterSet& set : CharacterSets()) {
        Put(answer.fields, "CSID", QString::number(++id));
        Put(answer.fields, "CSN", set.name);
    }
    return answer;
}

/// What another library's server told of its clusters and patron groups. A row keeps its id as long as the
/// other server keeps that record: mappings refer to it.
void AddCacheTables(Registry& registry) {
    const auto belongsTo = [](const QString& column, const QString& table) {
        return Column{.name = column,
                      .type = ColumnType::Reference,
                      .target = table,
                      .onRemoval = OnRemoval::RemoveToo};
    };
    const QList<Column> told{
        {.name = "remote_id", .type = ColumnType::Whole}, {.name = "code"}, {.name = "name"}};
    registry.AddTable({.name = "remote_clusters",
                       .columns = QList<Column>{belongsTo("database_id", "search_databases")} + told,
                       .uniqueSets = {{"database_id", "remote_id"}}});
    registry.AddTable({.name = "remote_patron_groups",
                       .columns = QList<Column>{belongsTo("database_id", "search_databases"),
                                                belongsTo("cluster_id", "remote_clusters")} +
                                  told,
                       .uniqueSets = {{"cluster_id", "remote_id"}}});
}

} // namespace

const QList<DatabaseService>& DatabaseServices() {
    static const QList<DatabaseService> services{
        {"ADRO", "POPAC", "opac_address", "opac_port"},
        {"ADRCI", "PCIRC", "circulation_address", "circulation_port"},
        {"ADRCA", "PCALL", "call_slip_address", "call_slip_port"},
        {"ADRS", "PSYS", "administration_address", "administration_port"},
        {"ADRT", "PTPDS", "tpds_address", "tpds_port"},
        {"ADRTXWS", "PTXWS", "txws_address", "txws_port"},
    };
    return services;
}

bool IsCharacterSet(const QString& value) {
    bool valid = false;
    const int id = value.toInt(&valid);
    return value.trimmed().isEmpty() || (valid && id >= 0 && id <= CharacterSets().size());
}

const QList<CharacterSet>& CharacterSets() {
    static const QList<CharacterSet> sets{
        {"MARC-8", "MARC-8"},
        {"UTF-8", "UTF-8"},
        {"Latin-1 (ISO 8859-1)", "ISO-8859-1"},
        {"Latin-2 (ISO 8859-2)", "ISO-8859-2"},
        {"ISO 5426", "ISO5426"},
        {"ISO 6937", "ISO-6937"},
        {"Windows-1252", "CP1252"},
    };
    return sets;
}

void MakeLocalDatabase(Records& records) {
    if (!records.IdOfText("search_databases", "code", databases::LocalCode))
        records.Insert("search_databases", {{"code", databases::LocalCode},
                                            {"name", "Local Database"},
                                            {"type", databases::SystemType},
                                            {"public_use", "Y"}});
}

void RegisterSearchDatabases(Registry& registry) {
    registry.AddTable(
        {.name = "search_databases",
         .storedRules = {{{}, DatabasesOfSamePlace, "Another database of the type has the same address."},
                         FindsNone("SELECT 0 WHERE NOT EXISTS (SELECT 1 FROM search_databases WHERE code='" +
                                       databases::LocalCode + "' AND type<>'" + databases::TargetType + "')",
                                   "The library's own database is missing.")}});
    registry.AddSubject({
        .table = "search_databases",
        .area = Area::System,
        .requests = {.list = "LstDB", .get = "GetDB", .add = "AddDB", .update = "UpdDB", .remove = "DelDB"},
        .fields =
            QList<SubjectField>{
                SubjectField::Text("C", "code", databases::CodeLength)
                    .Unique(status::DuplicateCode)
                    .ReadOnly()
                    .InList(),
                SubjectField::Text("NCd", "code", databases::CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .WriteOnly(),
                SubjectField::Text("Nm", "name", databases::NameLength).Required().InList(),
                SubjectField::Text("Pr", "type", 1).Required().Checked(IsDatabaseType).InList(),
                SubjectField::Flag("PU", "public_use"),
                SubjectField::Flag("DBU", "universal_borrowing"),
                SubjectField::Text("DBK", "key", databases::KeyLength),
                SubjectField::Text("DN", "database_name", databases::NameLength),
                SubjectField::Text("OI", "user_id", databases::UserLength),
                SubjectField::Secret("PW", "PC", "password", databases::PasswordLength),
                SubjectField::Whole("W", "weight", 0, databases::MostWeight),
                SubjectField::Whole("MH", "most_hits", 0, databases::MostHits),
                SubjectField::Whole("DCTO", "timeout", 0, databases::MostTimeout),
                SubjectField::Flag("OS", "opac_suppressed"),
                SubjectField::Flag("SS", "staff_suppressed"),
                SubjectField::Reference("DID", "hook_id", "holdings_hooks"),
                SubjectField::Joined("DNm", "hook_id", "holdings_hooks", "name"),
                SubjectField::Whole("CSID", "character_set").Checked(IsCharacterSet),
            } +
            Services(),
        .key = "C",
        .columns = {{.name = "trusted_certificate", .bookkeeping = true}},
        .memberships = {AccessGroups()},
        .children = {Attributes()},
        .addReply = {"C"},
        .addedIdTag = "DBI",
        .checkPut = CheckDatabase,
        .checkRemove = RefuseLocal,
        .addToGet = AddId,
    });
    AddCacheTables(registry);
    registry.AddRead("AvlDB", Area::System, ListDatabaseChoices);
    registry.AddRead("GETCHARSETS", Area::AnyOperator, ListCharacterSets);
}

} // namespace sysadmin::server
