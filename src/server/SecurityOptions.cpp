#include "server/SecurityOptions.h"

#include "server/store/Database.h"

namespace sysadmin::server {

qint64 SecondsOf(const QString& time) {
    if (time.isEmpty())
        return 0;
    const qint64 number = QStringView(time).mid(1).toLongLong();
    switch (time[0].toUpper().unicode()) {
    case 'M':
        return number * 60;
    case 'H':
        return number * 3600;
    case 'D':
        return number * 86400;
    }
    return 0;
}

SecurityRules ReadSecurityRules(Database& database) {
    SecurityRules rules;
    const auto row = database.FirstRow(
        "SELECT previous_passwords, least_age, most_age_days, reminder_days, first_use_days, "
        "sign_on_attempts, "
        "locked_for, attempts_forgotten, log_attempts, warning_text, rules_text FROM security_options ORDER "
        "BY id");
    if (!row)
        return rules;
    const auto number = [&](int column) { return (*row)[column].toInt(); };
    const auto text = [&](int column) { return (*row)[column].toString(); };
    rules.previousPasswords = number(0);
    rules.leastAge = SecondsOf(text(1));
    rules.mostAgeDays = number(2);
    rules.reminderDays = number(3);
    rules.firstUseDays = number(4);
    rules.attempts = number(5);
    rules.lockedFor = SecondsOf(text(6));
    rules.attemptsForgotten = SecondsOf(text(7));
    rules.logAttempts = text(8) == "Y";
    rules.warningText = text(9);
    rules.rulesText = text(10);
    return rules;
}

wire::PasswordRules ReadPasswordRules(Database& database) {
    static const QList<QPair<QString, QString>> options{
        {"PLM", "least_length"},       {"PLX", "most_length"},        {"PCI", "may_contain_id"},
        {"PCN", "may_contain_name"},   {"PAL", "least_letters"},      {"PAG", "letters_in_group"},
        {"PUL", "least_uppercase"},    {"PUG", "uppercase_in_group"}, {"PLL", "least_lowercase"},
        {"PLG", "lowercase_in_group"}, {"PNL", "least_digits"},       {"PNG", "digits_in_group"},
        {"PSL", "least_special"},      {"PSG", "special_in_group"},   {"PSC", "special_characters"},
        {"PGR", "group_requirement"},
    };
    QStringList columns;
    for (const auto& option : options)
        columns << option.second;
    const auto row = database.FirstRow("SELECT " + columns.join(", ") + " FROM security_options ORDER BY id");
    if (!row)
        return {};
    wire::Fields fields;
    for (qsizetype i = 0; i < options.size(); ++i)
        fields.append({options[i].first, (*row)[i].toString()});
    return wire::PasswordRules::FromFields(fields);
}

} // namespace sysadmin::server
