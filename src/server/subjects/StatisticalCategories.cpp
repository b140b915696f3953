#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

bool IsCategoryKind(const QString& value) {
    return value == "I" || value == "P";
}

/// What items have cannot become a category of patrons.
qint16 CheckKind(Context& context, const wire::Fields&, const Row& before, Row& after) {
    if (before.isEmpty() || before["kind"] == after["kind"])
        return status::Ok;
    const auto used = context.database.FirstRow(
        "SELECT 1 FROM usage u JOIN statistical_categories c ON c.id=u.record_id WHERE "
        "u.table_name='statistical_categories' AND c.code=? AND u.used>0",
        {before["code"]});
    return used ? status::InUse : status::Ok;
}

} // namespace

void RegisterStatisticalCategories(Registry& registry) {
    registry.AddSubject({
        .table = "statistical_categories",
        .requests = {.list = "LstStCat",
                     .get = "GetStCat",
                     .add = "AddStCat",
                     .update = "UpdStCat",
                     .remove = "DelStCat"},
        .fields =
            {
                SubjectField::Text("T", "kind", 1).Default("I").Checked(IsCategoryKind).InList(),
                SubjectField::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Uses("U").OnlyInList(),
            },
        .listArea = Area::AnyOperator,
        .usages = {{"items"}, {"patrons"}},
        .addReply = {"ID", "Cd"},
        .order = {"kind", "code"},
        .checkPut = CheckKind,
    });
}

} // namespace sysadmin::server
