#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

bool IsDelimiter(const QString& value) {
    return value == "." || value == ",";
}

} // namespace

void RegisterBaseCurrency(Registry& registry) {
    registry.AddSubject({
        .table = "base_currency",
        .area = Area::System,
        .requests = {.get = "GetBsCur", .add = "AddBsCur", .update = "UpdBsCur"},
        .fields =
            {
                SubjectField::Text("CtNm", "country", NameLength),
                SubjectField::Text("CrNm", "name", NameLength).Required(),
                SubjectField::Text("CrCd", "code", CurrencyCodeLength).Required(),
                SubjectField::Whole("Dec", "decimals", 0, 4).Required(),
                SubjectField::Text("Dlm", "delimiter", 1).Default(".").Checked(IsDelimiter),
            },
        .single = true,
    });
}

} // namespace sysadmin::server
