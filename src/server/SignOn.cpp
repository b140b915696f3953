#include "server/SignOn.h"

#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/SecurityHolders.h"
#include "server/SecurityOptions.h"
#include "server/Sessions.h"
#include "server/SignOnThrottle.h"
#include "server/store/Database.h"

#include <QSemaphoreReleaser>

namespace sysadmin::server {

namespace {

bool Verify(const Library& library, const QString& hash, const std::optional<Secret>& password) {
    library.HashingSlots().acquire();
    const QSemaphoreReleaser releaser(library.HashingSlots());
    // What cannot be opened costs the same work as a wrong password.
    const Secret none = Secret::FromText("-");
    const bool right = VerifyPassword(hash, password ? *password : none);
    return right && password;
}

struct Expiry {
    bool mustChange = false;
    std::optional<qint64> reminderDays; ///< until the password expires, when a reminder is due
};

Expiry ExpiryOf(const Row& row, const SecurityRules& rules, const QDateTime& now) {
    Expiry expiry;
    expiry.mustChange = TextOf(row, "expired") == "Y";
    const QDateTime changed = TimeFromStore(TextOf(row, "password_changed_at"));
    if (expiry.mustChange || TextOf(row, "never_expires") == "Y" || rules.mostAgeDays <= 0 ||
        !changed.isValid())
        return expiry;
    const qint64 left = now.daysTo(changed.addDays(rules.mostAgeDays));
    if (changed.addDays(rules.mostAgeDays) <= now)
        expiry.mustChange = true;
    else if (left <= rules.reminderDays)
        expiry.reminderDays = left;
    return expiry;
}

bool IsDisabled(const Row& row, const SecurityRules& rules, const QDateTime& now) {
    const QDateTime reset = TimeFromStore(TextOf(row, "reset_at"));
    if (rules.firstUseDays > 0 && reset.isValid() && reset.addDays(rules.firstUseDays) < now)
        return true;
    // Somebody whose password has expired and who may not change it has no way in.
    return TextOf(row, "restrict_change") == "Y" && ExpiryOf(row, rules, now).mustChange;
}

/// How long a lock that has no end of its own keeps the last one out who could end it.
constexpr qint64 LastHolderLockedFor = 3600;

/// Whether a locked or disabled operator is let in all the same: nobody else could change the security
/// settings any more, so the library would be shut. On the server's own machine that counts at once: a
/// stranger who locks every administrator keeps nobody from ending it there.
bool MustBeLetIn(Database& database, const Row& row, const SecurityRules& rules, const QString& peer,
                 const QDateTime& now) {
    const qint64 id = row.value("id").toLongLong();
    if (!Rights::Of(database, id).MayEdit(Area::Security))
        return false;
    if (IsLocalPeer(peer) && !SecurityHolderCanSignOn(database, rules, now, id, HolderMay::Now))
        return true;
    if (SecurityHolderCanSignOn(database, rules, now, id))
        return false;
    const QDateTime locked = TimeFromStore(TextOf(row, "locked_at"));
    return !locked.isValid() ||
           locked.addSecs(rules.lockedFor > 0 ? rules.lockedFor : LastHolderLockedFor) <= now;
}

/// Keeps an attempt for the log of invalid sign-ons.
void LogAttempt(Database& database, const QString& typedId, const std::optional<Row>& row,
                const QString& peer, const QDateTime& now) {
    constexpr int LongestKept = 64;
    const QString name =
        row ? QString(TextOf(*row, "first_name") + ' ' + TextOf(*row, "last_name")).trimmed() : "";
    const qint64 id = database.RunInsert(
        "INSERT INTO invalid_sign_ons (typed_id, operator_name, at, failed_count, locked_at, peer) "
        "VALUES (?, ?, ?, ?, ?, ?)",
        {StorablePart(typedId.left(LongestKept)), name, StoredTime(now),
         row ? row->value("failed_count").toLongLong() : 0, row ? TextOf(*row, "locked_at") : "", peer});
    // Whoever floods the log does not fill the disk with it.
    constexpr qint64 MostKept = 10000;
    database.Run("DELETE FROM invalid_sign_ons WHERE id<=?", {id - MostKept});
}

} // namespace

bool IsLocked(const Row& row, const SecurityRules& rules, const QDateTime& now) {
    const QDateTime locked = TimeFromStore(TextOf(row, "locked_at"));
    return locked.isValid() && (rules.lockedFor == 0 || locked.addSecs(rules.lockedFor) > now);
}

bool IsExpired(const Row& row, const SecurityRules& rules, const QDateTime& now) {
    return ExpiryOf(row, rules, now).mustChange;
}

bool CanSignOn(const Row& row, const SecurityRules& rules, const QDateTime& now) {
    const bool lockedForGood = rules.lockedFor == 0 && IsLocked(row, rules, now);
    return !lockedForGood && !IsDisabled(row, rules, now) && !TextOf(row, "password_hash").isEmpty();
}

void CountWrongPassword(Database& database, qint64 operatorRow, const SecurityRules& rules,
                        const QDateTime& now) {
    const auto row = database.FirstRow(
        "SELECT failed_count, last_failure_at, locked_at FROM operators WHERE id=?", {operatorRow});
    if (!row)
        return;
    const QDateTime last = TimeFromStore((*row)[1].toString());
    const bool forgotten =
        rules.attemptsForgotten > 0 && last.isValid() && last.addSecs(rules.attemptsForgotten) <= now;
    const bool wasLocked = !(*row)[2].toString().isEmpty();
    const bool locked = IsLocked({{"locked_at", (*row)[2]}}, rules, now);
    const qint64 count = forgotten || (wasLocked && !locked) ? 1 : (*row)[0].toLongLong() + 1;
    QString lockedAt = locked ? (*row)[2].toString() : QString("");
    // A lock without an end is only renewed where it would let the last holder of the security right in by
    // now.
    const bool renewed =
        locked && rules.lockedFor == 0 &&
        MustBeLetIn(database, {{"id", operatorRow}, {"locked_at", lockedAt}}, rules, "elsewhere", now);
    if (renewed || (!locked && rules.attempts > 0 && count >= rules.attempts))
        lockedAt = StoredTime(now);
    database.Run("UPDATE operators SET failed_count=?, last_failure_at=?, locked_at=? WHERE id=?",
                 {count, StoredTime(now), lockedAt, operatorRow});
}

SignOnResult SignOn(Database& database, const Library& library, const wire::Fields& request,
                    const QString& peer, const QString& nonce) {
    const QString typedId = wire::FirstValue(request, "OI");
    const QDateTime now = library.Now();
    SignOnThrottle& throttle = library.Throttle();
    SignOnResult result;
    if (const qint64 wait = throttle.WaitFor(peer, typedId, now); wait > 0) {
        result.answer.status = status::InvalidSignOn;
        Put(result.answer.fields, "WAIT", QString::number(wait));
        return result;
    }
    const auto password = OpenSealed(wire::FirstValue(request, "PW"), library.GetSealingKeys(),
                                     wire::PasswordPurpose::SignOn, nonce);
    const auto find = [&] {
        const Records records(database, library.GetRegistry().GetTables());
        const auto id = records.IdOfText("operators", "operator_id", typedId);
        auto row = id ? records.Find("operators", *id) : std::nullopt;
        if (row)
            row->insert("id", *id);
        return row;
    };

    // The slow part runs outside the transaction: it would hold up everybody else.
    const auto looked = find();
    const QString hash = looked && !TextOf(*looked, "password_hash").isEmpty()
                             ? TextOf(*looked, "password_hash")
                             : library.DummyHash();
    const bool right = Verify(library, hash, password) && looked;

    RunInTransaction(database, [&] {
        result = {};
        const SecurityRules rules = ReadSecurityRules(database);
        const auto row = find();
        const bool unchanged = row && TextOf(*row, "password_hash") == hash;
        const auto isShutOut = [&] {
            const bool isPublished = library.ServesOthers() && !IsLocalPeer(peer) && IsPublished(*password);
            return isPublished || ((IsLocked(*row, rules, now) || IsDisabled(*row, rules, now)) &&
                                   !MustBeLetIn(database, *row, rules, peer, now));
        };
        if (!right || !unchanged || isShutOut()) {
            if (row && !(right && unchanged))
                CountWrongPassword(database, row->value("id").toLongLong(), rules, now);
            else // writes as much for an operator that does not exist: the answer takes as long
                WriteSetting(database, "last_unknown_sign_on", StoredTime(now));
            if (rules.logAttempts)
                LogAttempt(database, typedId, find(), peer, now);
            result.answer.status = status::InvalidSignOn;
            return;
        }
        Expiry expiry = ExpiryOf(*row, rules, now);
        if (TextOf(*row, "restrict_change") == "Y")
            expiry.mustChange = false; // is in nevertheless, and may not
        const QString token = RandomToken();
        const qint64 operatorRow = row->value("id").toLongLong();
        result.sessionRow = Sessions(database).Start(token, nonce, operatorRow, peer, expiry.mustChange, now,
                                                     library.MostSessions());
        database.Run(
            "UPDATE operators SET failed_count=0, locked_at='', reset_at='', last_sign_on_at=? WHERE id=?",
            {StoredTime(now), operatorRow});
        ReplyFields& reply = result.answer.fields;
        Put(reply, "SID", token);
        result.operatorId = TextOf(*row, "operator_id");
        Put(reply, "OI", result.operatorId);
        Put(reply, "ONM", QString(TextOf(*row, "first_name") + ' ' + TextOf(*row, "last_name")).trimmed());
        Put(reply, "CHG", expiry.mustChange ? "Y" : "N");
        if (expiry.mustChange)
            Put(reply, "PDT", rules.rulesText); // until it is changed no request could ask for it
        if (expiry.reminderDays)
            Put(reply, "WARN", QString::number(*expiry.reminderDays));
    });
    if (result.sessionRow != 0)
        throttle.Succeeded(peer, typedId);
    else
        throttle.Failed(peer, typedId, now);
    return result;
}

qint16 ChangeOwnPassword(Database& database, const Library& library, const Requester& requester,
                         const wire::Fields& request) {
    // Whoever sits down at a desk that its operator has left gets to guess no faster than elsewhere.
    SignOnThrottle& throttle = library.Throttle();
    if (throttle.WaitFor(requester.peer, requester.id, library.Now()) > 0)
        return status::InvalidSignOn;
    const auto open = [&](const char* tag, wire::PasswordPurpose purpose) {
        return OpenSealed(wire::FirstValue(request, tag), library.GetSealingKeys(), purpose, requester.nonce);
    };
    const auto old = open("OPW", wire::PasswordPurpose::Confirm);
    std::optional<NewPassword> password;
    if (auto sent = open("PW", wire::PasswordPurpose::Set))
        password.emplace(std::move(*sent), library);
    const QString hash =
        database.FirstValue("SELECT password_hash FROM operators WHERE id=?", {requester.row}).toString();
    const bool right = Verify(library, hash.isEmpty() ? library.DummyHash() : hash, old);
    // The slow part, as at sign-on: it would hold up everybody else.
    if (right && password) {
        PrepareCheck(*password, database, requester.row);
        password->Hash();
    }
    qint16 refused = status::Ok;
    RunInTransaction(database, [&] {
        const SecurityRules rules = ReadSecurityRules(database);
        Records records(database, library.GetRegistry().GetTables(),
                        Author{requester.id, requester.peer, "ChgOwnPwd", StoredTime(library.Now())});
        const auto row = records.Find("operators", requester.row);
        if (!row || !right || TextOf(*row, "password_hash") != hash) {
            CountWrongPassword(database, requester.row, rules, library.Now());
            refused = status::InvalidSignOn;
            return;
        }
        refused = TextOf(*row, "restrict_change") == "Y" ? status::NotAuthorised
                  : password ? CheckNewPassword(records, library, requester.row, *password, rules)
                             : status::ColumnError;
        if (refused != status::Ok)
            return;
        SetPassword(records, library, requester.row, *password);
        records.Update(
            "operators", requester.row,
            {{"modified_on", library.Now().date().toString(Qt::ISODate)}, {"modified_by", requester.id}});
        records.Finish();
        Sessions sessions(database);
        sessions.PasswordChanged(requester.session);
        sessions.EndOthersOf(requester.row, requester.session);
    });
    if (refused == status::InvalidSignOn)
        throttle.Failed(requester.peer, requester.id, library.Now());
    else
        throttle.Succeeded(requester.peer, requester.id);
    return refused;
}

} // namespace sysadmin::server
