#include "server/SecurityOptions.h"

#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <QRegularExpression>

namespace sysadmin::server {

namespace {

bool IsDuration(const QString& value) {
    static const QRegularExpression form("^[MHD]\\d{1,6}\\z");
    return value.isEmpty() || form.match(value).hasMatch();
}

/// Two options of which one bounds the other.
struct RuleBound {
    QString one;
    QString other;
    bool (*isBroken)(const Row& options);
    QString otherwise;
};

qint64 Days(const Row& options, const char* column) {
    return options.value(column).toLongLong();
}

const QList<RuleBound>& Bounds() {
    // 0 days of age: passwords never expire.
    static const QList<RuleBound> bounds{
        {"least_length", "most_length",
         [](const Row& options) { return Days(options, "least_length") > Days(options, "most_length"); },
         "The least length is more than the most."},
        {"reminder_days", "most_age_days",
         [](const Row& options) {
             const qint64 most = Days(options, "most_age_days");
             return most > 0 && Days(options, "reminder_days") > most;
         },
         "The reminder comes before the password is given."},
        {"least_age", "most_age_days",
         [](const Row& options) {
             constexpr qint64 SecondsInDay = 86400;
             const qint64 most = Days(options, "most_age_days");
             return most > 0 && SecondsOf(options.value("least_age").toString()) > most * SecondsInDay;
         },
         "The least age is more than the most."}};
    return bounds;
}

/// A change that breaks a bound is refused. One that was broken before keeps nobody from changing something
/// else.
qint16 CheckBounds(Context&, const wire::Fields&, const Row& before, Row& after) {
    for (const RuleBound& bound : Bounds())
        if (bound.isBroken(after) && (before.value(bound.one) != after.value(bound.one) ||
                                      before.value(bound.other) != after.value(bound.other)))
            return status::ColumnError;
    return status::Ok;
}

/// The same for an import.
QList<StoredRule> StoredBounds() {
    QList<StoredRule> rules;
    for (const RuleBound& bound : Bounds())
        rules.append(
            {{},
             [&bound](Database& database) {
                 QList<qint64> ids;
                 database.Each(
                     "SELECT id, " + bound.one + ", " + bound.other + " FROM security_options", {},
                     [&](const ResultRow& row) {
                         if (bound.isBroken({{bound.one, row.value(1)}, {bound.other, row.value(2)}}))
                             ids << row.value(0).toLongLong();
                     });
                 return ids;
             },
             bound.otherwise});
    return rules;
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
                SubjectField::Text("PAM", "least_age", 7).Default("H0").Checked(IsDuration),
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
                SubjectField::Text("LKD", "locked_for", 7).Default("H24").Checked(IsDuration),
                SubjectField::Text("LKR", "attempts_forgotten", 7).Default("M10").Checked(IsDuration),
                SubjectField::Text("PDT", "rules_text", NoteLength),
                SubjectField::Text("SWT", "warning_text", NoteLength),
                SubjectField::Flag("LAT", "log_attempts", "Y"),
            },
        .single = true,
        .checkPut = CheckBounds,
    });
    registry.AddTable({.name = "security_options", .storedRules = StoredBounds()});
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
