#include "server/DateTexts.h"
#include "server/subjects/Registrations.h"

#include <QRegularExpression>

namespace sysadmin::server {

namespace {

constexpr int DateLength = 8;
constexpr int OffsetLength = 5;

/// A number of years, months or days.
bool IsOffset(const QString& value) {
    static const QRegularExpression form("^[0-9]{1,4}[YMD]\\z");
    return value.isEmpty() || form.match(value).hasMatch();
}

/// A date is exact or relative, not both.
bool HasDateOrOffset(const Row& dates) {
    for (const QString& date : {QString("expiration"), QString("purge")})
        if (!dates[date + "_date"].toString().isEmpty() && !dates[date + "_offset"].toString().isEmpty())
            return false;
    return true;
}

} // namespace

void RegisterPatronDefaultDates(Registry& registry) {
    registry.AddSubject({
        .table = "patron_default_dates",
        .area = Area::Circulation,
        .requests = {.get = "GetPatDefDates", .update = "UpdPatDefDates"},
        .fields =
            {
                SubjectField::Text("PatExpDate", "expiration_date", DateLength).Checked(IsDate),
                SubjectField::Text("PatExpOffset", "expiration_offset", OffsetLength).Checked(IsOffset),
                SubjectField::Text("PatPurgeDate", "purge_date", DateLength).Checked(IsDate),
                SubjectField::Text("PatPurgeOffset", "purge_offset", OffsetLength).Checked(IsOffset),
            },
        .single = true,
        .rules = {{HasDateOrOffset, "There is a date and an offset for the same; only one can be."}},
    });
}

} // namespace sysadmin::server
