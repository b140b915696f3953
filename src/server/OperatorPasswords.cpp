#include "server/OperatorPasswords.h"

#include "server/Library.h"
#include "server/SignOn.h"
#include "server/store/Database.h"

#include <QSemaphoreReleaser>

#include <sodium.h>

namespace sysadmin::server {

namespace {

/// As many as the security options let anybody ask for.
constexpr int KeptPasswords = 24;

bool Is(const Secret& password, const SampleOperator& sample) {
    return QByteArrayView(password.Data(), password.Size()) == sample.password.toUtf8();
}

bool IsSamplePassword(const QString& operatorId, const Secret& password) {
    for (const SampleOperator& sample : SampleOperators())
        if (Fold(sample.id) == Fold(operatorId) && Is(password, sample))
            return true;
    return false;
}

bool FollowsRules(const Secret& password, const wire::PasswordRules& rules,
                  const wire::PasswordOwner& owner) {
    QString text = QString::fromUtf8(password.Data(), password.Size());
    const bool follows = wire::FindPasswordFaults(rules, text, owner).isEmpty();
    sodium_memzero(text.data(), size_t(text.size()) * sizeof(QChar));
    return follows;
}

/// The hashes of the passwords that the operator may not have again, the present one first.
QVariantList ForbiddenHashes(Database& database, qint64 operatorRow, const SecurityRules& rules) {
    if (rules.previousPasswords <= 0)
        return {};
    QVariantList hashes =
        database.FirstColumn("SELECT password_hash FROM operators WHERE id=?", {operatorRow});
    hashes +=
        database.FirstColumn("SELECT password_hash FROM password_history WHERE operator_row=? ORDER BY id "
                             "DESC LIMIT " +
                                 QString::number(rules.previousPasswords - 1),
                             {operatorRow});
    return hashes;
}

bool IsRepeated(NewPassword& password, const QVariantList& hashes) {
    return std::any_of(hashes.begin(), hashes.end(),
                       [&](const QVariant& hash) { return password.Fits(hash.toString()); });
}

} // namespace

NewPassword::NewPassword(Secret password, const Library& library)
    : m_plain(std::move(password))
    , m_library(library) {}

bool NewPassword::Fits(const QString& hash) {
    if (hash.isEmpty())
        return false;
    const auto known = m_fits.constFind(hash);
    if (known != m_fits.constEnd())
        return *known;
    m_library.HashingSlots().acquire();
    const QSemaphoreReleaser releaser(m_library.HashingSlots());
    return *m_fits.insert(hash, VerifyPassword(hash, m_plain));
}

const QString& NewPassword::Hash() {
    if (m_hash.isEmpty()) {
        m_library.HashingSlots().acquire();
        const QSemaphoreReleaser releaser(m_library.HashingSlots());
        m_hash = HashPassword(m_plain, m_library.GetHashCost());
    }
    return m_hash;
}

void PrepareCheck(NewPassword& password, Database& database, qint64 operatorRow) {
    IsRepeated(password, ForbiddenHashes(database, operatorRow, ReadSecurityRules(database)));
}

const QList<SampleOperator>& SampleOperators() {
    static const QList<SampleOperator> operators{
        {"SYSADMIN", "sample-admin-1"},
        {"VIEWER", "sample-viewer-1"},
        {"CIRC", "sample-circ-1"},
        {"GUEST", "sample-guest-1"},
    };
    return operators;
}

bool IsPublished(const Secret& password) {
    for (const SampleOperator& sample : SampleOperators())
        if (Is(password, sample))
            return true;
    return false;
}

qint16 CheckNewPassword(const Records& records, const Library& library, qint64 operatorRow,
                        NewPassword& password, const SecurityRules& rules, bool skipRules) {
    if (password.Plain().Size() == 0)
        return status::ColumnError;
    if (library.ServesOthers() && IsPublished(password.Plain()))
        return status::PublishedPassword;
    if (skipRules)
        return status::Ok;
    const auto row = records.Find("operators", operatorRow);
    if (!row)
        return status::NotFound;
    const QDateTime changed = TimeFromStore(row->value("password_changed_at").toString());
    // An expired password has to be changed however young it is.
    const bool expired = IsExpired(*row, rules, library.Now());
    if (rules.leastAge > 0 && !expired && changed.isValid() && changed.secsTo(library.Now()) < rules.leastAge)
        return status::MinimumPasswordAge;
    if (IsRepeated(password, ForbiddenHashes(records.GetDatabase(), operatorRow, rules)))
        return status::RepeatedPassword;
    const wire::PasswordOwner owner{row->value("operator_id").toString(), row->value("last_name").toString(),
                                    row->value("first_name").toString()};
    return FollowsRules(password.Plain(), ReadPasswordRules(records.GetDatabase()), owner)
               ? status::Ok
               : status::WeakPassword;
}

void SetPassword(Records& records, const Library& library, qint64 operatorRow, NewPassword& password) {
    const auto row = records.Find("operators", operatorRow);
    if (!row)
        return;
    Database& database = records.GetDatabase();
    if (const QString hash = row->value("password_hash").toString(); !hash.isEmpty()) {
        database.Run(
            "INSERT INTO password_history (operator_row, password_hash, replaced_at) VALUES (?, ?, ?)",
            {operatorRow, hash, StoredTime(library.Now())});
        database.Run("DELETE FROM password_history WHERE operator_row=? AND id NOT IN (SELECT id FROM "
                     "password_history WHERE operator_row=? ORDER BY id DESC LIMIT " +
                         QString::number(KeptPasswords) + ')',
                     {operatorRow, operatorRow});
    }
    records.Update("operators", operatorRow,
                   {{"password_hash", password.Hash()},
                    {"password_changed_at", StoredTime(library.Now())},
                    {"expired", "N"},
                    {"sample_password",
                     IsSamplePassword(row->value("operator_id").toString(), password.Plain()) ? "Y" : "N"},
                    {"published_password", IsPublished(password.Plain()) ? "Y" : "N"}});
}

} // namespace sysadmin::server
