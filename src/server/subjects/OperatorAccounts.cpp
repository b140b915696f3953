#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/SecurityHolders.h"
#include "server/SecurityOptions.h"
#include "server/Sessions.h"
#include "server/SignOn.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

/// The system's own administrator, who is never deleted.
const QString BuiltInOperator = "SYSADMIN";

QString Sent(const wire::Fields& request, const QString& tag) {
    return wire::FirstValue(request, tag).trimmed();
}

QString AsUsDate(const QString& isoDate) {
    const QDate date = QDate::fromString(isoDate, Qt::ISODate);
    return date.isValid() ? date.toString("MM/dd/yyyy") : QString();
}

/// An operator as a request names one.
struct Account {
    qint64 id = 0;
    Row row;
};

std::optional<Account> FindAccount(Context& context, const wire::Fields& request) {
    const auto id = context.records.IdOfText("operators", "operator_id", Sent(request, "OI"));
    if (!id)
        return std::nullopt;
    return Account{*id, *context.records.Find("operators", *id)};
}

Answer ListOperators(Context& context, const wire::Fields& request) {
    const QString sort = Sent(request, "Srt");
    const QString order = sort == "L"   ? "LOWER(last_name), LOWER(first_name), "
                          : sort == "F" ? "LOWER(first_name), LOWER(last_name), "
                                        : "";
    Answer answer;
    context.database.Each(
        QString("SELECT operator_id, last_name, first_name, middle_initial FROM operators ORDER BY ") +
            order + FoldedName("operator_id"),
        {}, [&](const ResultRow& row) {
            Put(answer.fields, "OI", row.value(0).toString());
            Put(answer.fields, "LNm", row.value(1).toString());
            Put(answer.fields, "FNm", row.value(2).toString());
            Put(answer.fields, "MI", row.value(3).toString());
        });
    return answer;
}

/// What each kind of rights profile is for.
QString ModuleOf(const QString& profileTable) {
    static const QHash<QString, QString> modules{
        {"master_profiles", "System Administration"}, {"cataloging_profiles", "Cataloging"},
        {"circulation_profiles", "Circulation"},      {"acq_serials_profiles", "Acquisitions/Serials"},
        {"reporting_profiles", "Analyzer"},           {"data_change_profiles", "Global Data Change"},
    };
    return modules.value(profileTable);
}

/// The names of all rights profiles of the operator, from every table by which operators belong to profiles.
QStringList ProfilesOf(Context& context, qint64 operatorRow) {
    QStringList names;
    for (const Table& table : context.library.GetRegistry().GetTables()) {
        const Column* profile = table.Find("profile_id");
        if (!profile || !table.Find("operator_row"))
            continue;
        const QString module = ModuleOf(profile->target);
        const auto ofTable =
            context.database.FirstColumn("SELECT p.name FROM " + table.name + " m JOIN " + profile->target +
                                             " p ON p.id=m.profile_id WHERE m.operator_row=? ORDER BY p.name",
                                         {operatorRow});
        for (const QVariant& name : ofTable)
            names << (module.isEmpty() ? name.toString() : module + ": " + name.toString());
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

Answer GetOperator(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    const SecurityRules rules = ReadSecurityRules(context.database);
    const Row& row = account->row;
    Answer answer;
    ReplyFields& reply = answer.fields;
    Put(reply, "FNm", TextOf(row, "first_name"));
    Put(reply, "LNm", TextOf(row, "last_name"));
    Put(reply, "MI", TextOf(row, "middle_initial"));
    Put(reply, "CrDt", AsUsDate(TextOf(row, "created_on")));
    Put(reply, "MdDt", AsUsDate(TextOf(row, "modified_on")));
    Put(reply, "MdOpr", TextOf(row, "modified_by"));
    Put(reply, "Nexp", TextOf(row, "never_expires"));
    Put(reply, "Exp", IsExpired(row, rules, context.now) ? "Y" : "N");
    Put(reply, "Lock", IsLocked(row, rules, context.now) ? "Y" : "N");
    Put(reply, "Rchg", TextOf(row, "restrict_change"));
    for (const QString& name : ProfilesOf(context, account->id))
        Put(reply, "Prof", name);
    return answer;
}

/// Reads what an add or update says of the operator, apart from id and password. Fields that an update does
/// not hold stay as they are.
qint16 ReadAccount(const wire::Fields& request, Row& row) {
    struct TextColumn {
        QString tag;
        QString column;
        int limit;
    };
    static const QList<TextColumn> texts{{"LNm", "last_name", OperatorNameLength},
                                         {"FNm", "first_name", OperatorNameLength},
                                         {"MI", "middle_initial", 1}};
    static const QList<QPair<QString, QString>> flags{{"Nexp", "never_expires"}, {"Rchg", "restrict_change"}};
    for (const wire::Field& field : request) {
        for (const TextColumn& text : texts)
            if (field.tag == text.tag) {
                // What came from elsewhere may be longer: unchanged it may stay.
                const bool isNew = row.value(text.column).toString() != field.value;
                if (isNew && (field.value.size() > text.limit || field.value.contains(QChar(0))))
                    return status::ColumnError;
                row.insert(text.column, field.value);
            }
        for (const auto& [tag, column] : flags)
            if (field.tag == tag) {
                if (field.value != "Y" && field.value != "N")
                    return status::ColumnError;
                row.insert(column, field.value);
            }
    }
    return TextOf(row, "last_name").trimmed().isEmpty() ? status::ColumnError : status::Ok;
}

void Stamp(const Context& context, Row& row) {
    row.insert("modified_on", context.now.date().toString(Qt::ISODate));
    row.insert("modified_by", context.requester.id);
}

/// Opens the request's password; `set` when the operator is to get it.
template <bool set>
std::shared_ptr<Prepared> PreparePassword(Database& database, const Library& library,
                                          const Requester& requester, const wire::Fields& request) {
    auto plain = OpenSealed(wire::FirstValue(request, "PW"), library.GetSealingKeys(),
                            wire::PasswordPurpose::Set, requester.nonce);
    if (!plain)
        return nullptr;
    auto password = std::make_shared<NewPassword>(std::move(*plain), library);
    const auto id = Records(database, library.GetRegistry().GetTables())
                        .IdOfText("operators", "operator_id", Sent(request, "OI"));
    if (id && Sent(request, "SPV") != "Y")
        PrepareCheck(*password, database, *id);
    if (set)
        password->Hash();
    return password;
}

/// Checks the request's password and, when it is to be `set`, gives it to the operator.
qint16 TakePassword(Context& context, const wire::Fields& request, qint64 operatorRow, bool set) {
    auto* password = dynamic_cast<NewPassword*>(context.prepared);
    if (!password)
        return status::ColumnError;
    const SecurityRules rules = ReadSecurityRules(context.database);
    if (const qint16 refused = CheckNewPassword(context.records, context.library, operatorRow, *password,
                                                rules, Sent(request, "SPV") == "Y"))
        return refused;
    if (!set)
        return status::Ok;
    SetPassword(context.records, context.library, operatorRow, *password);
    const bool isReset = operatorRow != context.requester.row;
    context.records.Update("operators", operatorRow,
                           {{"reset_at", isReset ? StoredTime(context.now) : QString("")}});
    return status::Ok;
}

/// Ends the sessions of an operator whose password has expired and who may not change it: the other sessions
/// of an expired password go on as soon as it is changed.
void EndStranded(Context& context, qint64 operatorRow) {
    const auto row = context.records.Find("operators", operatorRow);
    if (row && TextOf(*row, "expired") == "Y" && TextOf(*row, "restrict_change") == "Y")
        Sessions(context.database).EndAllOf(operatorRow);
}

/// Refuses what would leave nobody who can change security settings.
qint16 RefuseLastHolder(Context& context, qint64 withoutOperator = 0) {
    return SecurityHolderCanSignOn(context.database, ReadSecurityRules(context.database), context.now,
                                   withoutOperator)
               ? status::Ok
               : status::LastSecurityRight;
}

Answer AddOperator(Context& context, const wire::Fields& request) {
    const QString id = Sent(request, "OI");
    if (id.isEmpty() || id.size() > OperatorIdLength || id.contains(QChar(0)))
        return {status::ColumnError};
    if (context.records.IdOfText("operators", "operator_id", id))
        return {status::DuplicateId};
    Row row{{"operator_id", id}, {"created_on", context.now.date().toString(Qt::ISODate)}};
    if (const qint16 refused = ReadAccount(request, row))
        return {refused};
    Stamp(context, row);
    const qint64 added = context.records.Insert("operators", row);
    if (const qint16 refused = TakePassword(context, request, added, true))
        return {refused};
    if (Sent(request, "Exp") == "Y")
        context.records.Update("operators", added, {{"expired", "Y"}});
    return {};
}

Answer UpdateOperator(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    // The id is what other records know an operator by: it stays.
    if (const QString before = Sent(request, "PID");
        !before.isEmpty() && Fold(before) != Fold(TextOf(account->row, "operator_id")))
        return {status::ColumnError};
    const bool hasPassword = !wire::FirstValue(request, "PW").isEmpty();
    if (hasPassword && !context.rights.Has("ChgPwd"))
        return {status::NotAuthorised};

    Row row = account->row;
    if (const qint16 refused = ReadAccount(request, row))
        return {refused};
    Stamp(context, row);
    const bool wasExpired = IsExpired(account->row, ReadSecurityRules(context.database), context.now);
    const QString expires = Sent(request, "Exp");
    // Without a new password an expiry stays, and one by age is not made one by an administrator's word.
    if (!hasPassword && !wasExpired && !expires.isEmpty())
        row.insert("expired", expires == "Y" ? "Y" : "N");
    context.records.Update("operators", account->id, row);
    if (hasPassword) {
        if (const qint16 refused = TakePassword(context, request, account->id, true))
            return {refused};
        context.records.Update("operators", account->id, {{"expired", expires == "Y" ? "Y" : "N"}});
        // Whoever knew the password before is out.
        Sessions(context.database).EndOthersOf(account->id, context.requester.session);
    }
    EndStranded(context, account->id);
    return {RefuseLastHolder(context)};
}

Answer ExpireOperator(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    if (TextOf(account->row, "never_expires") == "Y")
        return {status::ColumnError};
    Row row{{"expired", "Y"}};
    Stamp(context, row);
    context.records.Update("operators", account->id, row);
    EndStranded(context, account->id);
    return {RefuseLastHolder(context)};
}

Answer RemoveOperator(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    if (Fold(TextOf(account->row, "operator_id")) == Fold(BuiltInOperator))
        return {status::NotAuthorised};
    if (const qint16 refused = RefuseLastHolder(context, account->id))
        return {refused};
    Sessions(context.database).EndAllOf(account->id);
    context.records.Remove("operators", account->id);
    return {};
}

Answer CheckPasswordUse(Context& context, const wire::Fields& request) {
    if (!context.rights.Has("ChgPwd"))
        return {status::NotAuthorised};
    const auto account = FindAccount(context, request);
    return {account ? TakePassword(context, request, account->id, false) : status::NotFound};
}

Answer GetLockout(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    const bool locked = IsLocked(account->row, ReadSecurityRules(context.database), context.now);
    Answer answer;
    Put(answer.fields, "LC", TextOf(account->row, "failed_count"));
    Put(answer.fields, "LT", ShownTime(TextOf(account->row, "last_failure_at")));
    Put(answer.fields, "IL", locked ? ShownTime(TextOf(account->row, "locked_at")) : QString());
    return answer;
}

Answer ClearLockout(Context& context, const wire::Fields& request) {
    const auto account = FindAccount(context, request);
    if (!account)
        return {status::NotFound};
    Row row{{"failed_count", 0}, {"last_failure_at", ""}, {"locked_at", ""}};
    Stamp(context, row);
    context.records.Update("operators", account->id, row);
    return {};
}

} // namespace

void RegisterOperatorAccounts(Registry& registry) {
    registry.AddRead("LstOpr", Area::Security, ListOperators);
    registry.AddRead("GetOpr", Area::Security, GetOperator);
    registry.AddChange("AddOpr", Area::Security, AddOperator);
    registry.AddChange("UpdOpr", Area::Security, UpdateOperator);
    registry.AddChange("DelOpr", Area::Security, RemoveOperator);
    registry.AddChange("ExpOpr", Area::Security, ExpireOperator);
    registry.AddRequest(
        {.name = "PwdUsg", .area = Area::Security, .access = Access::Edit, .handler = CheckPasswordUse});
    for (const char* request : {"AddOpr", "UpdOpr"})
        registry.Prepare(request, PreparePassword<true>);
    registry.Prepare("PwdUsg", PreparePassword<false>);
    registry.AddRead("GetLockoutStatus", Area::Security, GetLockout);
    registry.AddChange("ClearLockoutStatus", Area::Security, ClearLockout);
    registry.About("LstOpr", {"operators"});
    for (const char* request : {"GetOpr", "UpdOpr", "DelOpr"})
        registry.About(request, {"operators"}, {"OI"}, "operator_id");
}

} // namespace sysadmin::server
