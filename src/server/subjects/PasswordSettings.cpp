#include "server/SecurityOptions.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int AttemptsInBatch = 500;
constexpr int MostPasswordDays = 999;

Answer GetRulesText(Context& context, const wire::Fields&) {
    Answer answer;
    Put(answer.fields, "PDT", ReadSecurityRules(context.database).rulesText);
    return answer;
}

/// The log of invalid sign-on attempts, the latest first.
Answer ListAttempts(Context& context, const wire::Fields& request) {
    const QString name = "GetInvalidLogins";
    const bool goesOn = wire::FirstValue(request, "55") == "Y" && context.cursor.request == name;
    const qint64 before = goesOn ? context.cursor.after : std::numeric_limits<qint64>::max();
    context.cursor = {name, 0};
    Answer answer;
    int count = 0;
    context.database.Each("SELECT id, typed_id, operator_name, at, failed_count, locked_at, peer FROM "
                          "invalid_sign_ons WHERE id<? ORDER BY id DESC LIMIT " +
                              QString::number(AttemptsInBatch + 1),
                          {before}, [&](const ResultRow& row) {
                              if (++count > AttemptsInBatch) {
                                  answer.status = status::Continues;
                                  return;
                              }
                              context.cursor.after = row.value(0).toLongLong();
                              Put(answer.fields, "LI", row.value(1).toString());
                              Put(answer.fields, "ON", row.value(2).toString());
                              Put(answer.fields, "AT", ShownTime(row.value(3).toString()));
                              Put(answer.fields, "LC", row.value(4).toString());
                              Put(answer.fields, "LT", ShownTime(row.value(5).toString()));
                              Put(answer.fields, "WI", row.value(6).toString());
                          });
    return answer;
}

Answer ClearAttempts(Context& context, const wire::Fields&) {
    context.database.Run("DELETE FROM invalid_sign_ons");
    // So that the history of changes says who emptied the log.
    if (const auto options = context.records.IdWhere("security_options", "only_one", "Y"))
        context.records.Update("security_options", *options, {{"log_cleared_at", StoredTime(context.now)}});
    return {};
}

Answer GetExpiry(Context& context, const wire::Fields&) {
    Answer answer;
    Put(answer.fields, "ED", QString::number(ReadSecurityRules(context.database).mostAgeDays));
    return answer;
}

Answer UpdateExpiry(Context& context, const wire::Fields& request) {
    bool isNumber = false;
    const int days = wire::FirstValue(request, "ED").trimmed().toInt(&isNumber);
    if (!isNumber || days < 0 || days > MostPasswordDays)
        return {status::ColumnError};
    const auto options = context.records.IdWhere("security_options", "only_one", "Y");
    if (!options)
        return {status::NotFound};
    // What the maximum age bounds is lowered with it.
    Row row{{"most_age_days", days}};
    const SecurityRules rules = ReadSecurityRules(context.database);
    if (days > 0 && rules.reminderDays > days)
        row.insert("reminder_days", days);
    if (const qint64 seconds = days * SecondsOf("D1"); days > 0 && rules.leastAge > seconds) {
        const QString unit =
            context.records.Find("security_options", *options)->value("least_age").toString().left(1);
        row.insert("least_age", QString(unit + QString::number(seconds / SecondsOf(unit + '1'))));
    }
    context.records.Update("security_options", *options, row);
    return {};
}

} // namespace

void RegisterPasswordSettings(Registry& registry) {
    registry.AddTable(
        {.name = "security_options", .columns = {{.name = "log_cleared_at", .bookkeeping = true}}});
    registry.AddRead("GET_PWD_DISPLAY_TEXT", Area::AnyOperator, GetRulesText);
    // The reply to a list in batches moves the session's cursor.
    registry.AddRequest({.name = "GetInvalidLogins",
                         .area = Area::Security,
                         .access = Access::View,
                         .changes = true,
                         .handler = ListAttempts});
    registry.AddChange("ClearInvalidLogins", Area::Security, ClearAttempts);
    registry.AddRead("GetMscExpire", Area::Security, GetExpiry);
    registry.AddChange("UpdMscExpire", Area::Security, UpdateExpiry);
    // The same setting as one of the security options, read and changed by a screen of its own.
    for (const char* request : {"GetMscExpire", "UpdMscExpire"})
        registry.About(request, {"security_options"}, {}, {}, "expiry");
}

} // namespace sysadmin::server
