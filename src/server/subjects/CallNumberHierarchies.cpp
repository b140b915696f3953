#include "callslips/CallNumberOrder.h"
#include "server/store/Database.h"
#include "server/subjects/DefaultMark.h"
#include "server/subjects/Registrations.h"
#include "wire/CallNumbers.h"
#include "wire/DuplicateDetection.h"
#include "wire/MarcMark.h"

// Hierarchies: the places in a bibliographic record, the best one first, from which a new holdings record
// takes its call number.

namespace sysadmin::server {

namespace callnumbers = wire::callnumbers;
namespace duplicates = wire::duplicates;

namespace {

constexpr qint16 InPolicyGroup = 70;
constexpr qint16 InImportRules = 71; ///< where the default one may take its place
constexpr qint16 NoReplacement = 73;
const QString Hierarchies = "call_number_hierarchies";
const QString ImportMappings = "import_mappings";

/// No place twice, and each with what its field can have.
bool ArePlacesRight(const QList<Row>& rows) {
    QSet<QStringList> seen;
    for (const Row& row : rows) {
        QStringList place;
        for (const char* column : {"field", "indicator1", "indicator2", "subfields"})
            place.append(row[column].toString());
        if (seen.contains(place) || !callnumbers::GoTogether(place.first(), place.last()))
            return false;
        seen.insert(place);
    }
    return true;
}

/// The best place first.
Children HierarchyPlaces() {
    const auto indicator = [](const QString& tag, const QString& column) {
        return SubjectField::Text(tag, column, 1).Required().Checked(wire::IsMarcMark);
    };
    return {
        .table = "call_number_places",
        .owner = "hierarchy_id",
        .fields =
            {SubjectField::Text("HF", "field", 3).Required().Checked(duplicates::IsField),
             indicator("HI1", "indicator1"), indicator("HI2", "indicator2"),
             SubjectField::Text("HS", "subfields", callnumbers::MostSubfields)
                 .Checked(callnumbers::IsSubfields),
             SubjectField::Text("HT", "call_number_type", 1).Required().Checked(callslips::IsCallNumberType)},
        .ordered = true,
        .most = callnumbers::MostPlaces,
        .check = ArePlacesRight};
}

qint16 CheckHierarchyRemoval(Context& context, qint64 id, const Row& hierarchy) {
    if (const qint16 refused = CheckDefaultRemoval(context, Hierarchies, hierarchy))
        return refused;
    if (context.records.IdWhere("cataloging_policy_groups", "hierarchy_id", id))
        return InPolicyGroup;
    if (!context.records.IdWhere(ImportMappings, "hierarchy_id", id))
        return status::Ok;
    const auto other = context.records.IdWhere(Hierarchies, "is_default", "Y");
    return other && *other != id ? InImportRules : NoReplacement;
}

/// Whether the default hierarchy has to take its place in import rules before it can be deleted.
void AddUse(Context& context, qint64 id, ReplyFields& reply) {
    const Row hierarchy = *context.records.Find(Hierarchies, id);
    Put(reply, "RP", CheckHierarchyRemoval(context, id, hierarchy) == InImportRules ? "Y" : "N");
}

/// "RplCNH": import rules that name the hierarchy name the default one from now on. Refused where it could
/// not be deleted after that.
Answer ReplaceInImportRules(Context& context, const wire::Fields& request) {
    const auto id = context.records.IdWhere(Hierarchies, "id", wire::FirstValue(request, "ID").toLongLong());
    if (!id)
        return {status::NotFound};
    const qint16 refused = CheckHierarchyRemoval(context, *id, *context.records.Find(Hierarchies, *id));
    if (refused != InImportRules)
        return {refused};
    const qint64 standIn = *context.records.IdWhere(Hierarchies, "is_default", "Y");
    for (const QVariant& mapping :
         context.database.FirstColumn("SELECT id FROM " + ImportMappings + " WHERE hierarchy_id=?", {*id}))
        context.records.Update(ImportMappings, mapping.toLongLong(), {{"hierarchy_id", standIn}});
    return {};
}

} // namespace

void RegisterCallNumberHierarchies(Registry& registry) {
    registry.AddSubject({
        .table = Hierarchies,
        .area = Area::Cataloging,
        .requests =
            {.list = "LstCNH", .get = "GetCNH", .add = "AddCNH", .update = "UpdCNH", .remove = "DelCNH"},
        .fields =
            {SubjectField::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
             SubjectField::Flag("DF", "is_default").InList()},
        .listArea = Area::AnyOperator,
        .usedBy = {{"cataloging_policy_groups", "hierarchy_id", InPolicyGroup},
                   {ImportMappings, "hierarchy_id", InImportRules}},
        .children = {HierarchyPlaces()},
        .addReply = {"ID", "Nm"},
        .checkPut = [](Context& context, const wire::Fields&, const Row& before,
                       Row& after) { return KeepDefaultMark(context, Hierarchies, before, after); },
        .afterPut =
            [](Context& context, const wire::Fields&, qint64 id, bool) {
                MoveDefaultMark(context, Hierarchies, id);
                return status::Ok;
            },
        .checkRemove = CheckHierarchyRemoval,
        .addToGet = AddUse,
    });
    registry.AddChange("RplCNH", Area::Cataloging, ReplaceInImportRules);
    registry.About("RplCNH", {Hierarchies}, {"ID"});
}

} // namespace sysadmin::server
