#include "server/SecurityOptions.h"

#include "server/subjects/Registrations.h"

#include <QRegularExpression>

namespace sysadmin::server {

namespace {

bool IsTime(const QString& value) {
    static const QRegularExpression form("^[MHD]\\d{1,6}\\z");
    return value.isEmpty() || form.match(value).hasMatch();
}

/// The pairs of options of which one bounds the other: a change that breaks such a bound is refused. One that
/// was broken before keeps nobody from changing something else.
qint16 CheckBounds(Context&, const wire::Fields&, const Row& before, Row& after) {
    constexpr qint64 SecondsInDay = 86400;
    const auto touched = [&](const QString& one, const QString& other) {
        return before.value(one) != after.value(one) || before.value(other) != after.value(other);
    };
    const auto number = [&](const QString& column) { return after.value(column).toLongLong(); };
    const qint64 mostAge = number("most_age_days"); // 0: passwords never expire
    const bool lengths = number("least_length") > number("most_length");
    const bool reminder = mostAge > 0 && number("reminder_days") > mostAge;
    const bool age = mostAge > 0 && SecondsOf(after.value("least_age").toString()) > mostAge * SecondsInDay;
    const bool isBroken = (lengths && touched("least_length", "most_length")) ||
                          (reminder && touched("reminder_days", "most_age_days")) ||
                          (age && touched("least_age", "most_age_days"));
    return isBroken ? status::ColumnError : status::Ok;
}

SubjectField Number(const QString& tag, const QString& column, qint64 most, const QString& fallback) {
    return SubjectField::Whole(tag, column, 0, most).Default(fallback);
}

} // namespace

void RegisterSecurityOptions(Registry& registry) {
    // The defaults hold in a new library, with the sample data or without.
    registry.AddSubject({
        .table = "security_options",
        .area = Area::Security,
        .requests = {.get = "GetSecOptions", .update = "UpdSecOptions"},
        .fields =
            {
                Number("PMC", "previous_passwords", 24, "3"),
                SubjectField::Text("PAM", "least_age", 7).Default("H0").Checked(IsTime),
                Number("PAX", "most_age_days", 999, "0"),
                Number("ERD", "reminder_days", 999, "0"),
                SubjectField::Whole("PLM", "least_length", 8, 128).Required().Default("8"),
                SubjectField::Whole("PLX", "most_length", 1, 128).Required().Default("25"),
                SubjectField::Flag("PCI", "may_contain_id"),
                SubjectField::Flag("PCN", "may_contain_name"),
                Number("PAL", "least_letters", 128, "2"),
                SubjectField::Flag("PAG", "letters_in_group"),
                Number("PUL", "least_uppercase", 128, "0"),
                SubjectField::Flag("PUG", "uppercase_in_group"),
                Number("PLL", "least_lowercase", 128, "0"),
                SubjectField::Flag("PLG", "lowercase_in_group"),
                Number("PNL", "least_digits", 128, "1"),
                SubjectField::Flag("PNG", "digits_in_group"),
                Number("PSL", "least_special", 128, "1"),
                SubjectField::Flag("PSG", "special_in_group"),
                Number("PGR", "group_requirement", 5, "0"),
                SubjectField::Text("PSC", "special_characters", NameLength).Default("!@#$%^&*?~\":;|=-.,"),
                Number("PDD", "first_use_days", 999, "0"),
                Number("LGA", "sign_on_attempts", 99, "5"),
                SubjectField::Text("LKD", "locked_for", 7).Default("H24").Checked(IsTime),
                SubjectField::Text("LKR", "attempts_forgotten", 7).Default("M10").Checked(IsTime),
                SubjectField::Text("PDT", "rules_text", NoteLength),
                SubjectField::Text("SWT", "warning_text", NoteLength),
                SubjectField::Flag("LAT", "log_attempts", "Y"),
            },
        .single = true,
        .checkPut = CheckBounds,
    });
    registry.AddTable({.name = "invalid_sign_ons",
                       .columns = {{.name = "typed_id"},
                                   {.name = "operator_name"},
                                   {.name = "at"},
                                   {.name = "failed_count", .type = ColumnType::Whole},
                                   {.name = "locked_at"},
                                   {.name = "peer"}},
                       .content = Content::Record});
}

} // namespace sysadmin::server
