#include "server/OperatorPasswords.h"
#include "support/TestServer.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

class SignOnTest : public ::testing::Test {
protected:
    qint16 TrySignOn(const QString& id, const QString& password) {
        return m_server.Connect()->SignOn(id, password);
    }
    void SetOption(const QString& column, const QVariant& value) {
        m_server.GetDatabase().Run("UPDATE security_options SET " + column + "=?", {value});
    }
    void SetOperator(const QString& id, const QString& column, const QVariant& value) {
        m_server.GetDatabase().Run("UPDATE operators SET " + column + "=? WHERE operator_id=?", {value, id});
    }
    QString OfOperator(const QString& id, const QString& column) {
        return m_server.Value("SELECT " + column + " FROM operators WHERE operator_id=?", {id});
    }
    qint16 ChangePassword(TestClient& client, const QString& old, const QString& password) {
        return client.Ask("ChgOwnPwd", {{"OPW", client.Seal(old)}, {"PW", client.Seal(password)}})->status;
    }

    TestServer m_server;
};

TEST_F(SignOnTest, HelloTellsWhatToTryOnThisMachineOnly) {
    const auto hello = m_server.Connect()->Ask("Hello");
    EXPECT_EQ(QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1()).size(), 32);
    EXPECT_EQ(wire::FirstValue(hello->fields, "LIB"), "Sample Library");
    EXPECT_TRUE(wire::FirstValue(hello->fields, "HINT").contains("sample-admin-1"));
    EXPECT_FALSE(wire::FirstValue(m_server.Connect("127.0.0.1")->Ask("Hello")->fields, "HINT").isEmpty());
    EXPECT_TRUE(wire::FirstValue(m_server.Connect("192.0.2.7")->Ask("Hello")->fields, "HINT").isEmpty());
    SetOption("warning_text", "Authorised use only");
    EXPECT_EQ(wire::FirstValue(m_server.Connect()->Ask("Hello")->fields, "SWT"), "Authorised use only");
}

TEST_F(SignOnTest, WrongIdAndWrongPasswordLookAlike) {
    const auto client = m_server.Connect();
    const auto attempt = [&](const QString& id, const QString& sealed) {
        return client->Ask("SignOn", {{"OI", id}, {"PW", sealed}});
    };
    const auto wrongPassword = attempt("VIEWER", client->Seal("nonsense"));
    EXPECT_EQ(wrongPassword->status, status::InvalidSignOn);
    EXPECT_TRUE(wrongPassword->fields.isEmpty());
    EXPECT_EQ(attempt("NOBODY", client->Seal("nonsense")), wrongPassword);
    EXPECT_EQ(attempt("VIEWER", "not sealed at all"), wrongPassword);
    EXPECT_EQ(attempt("VIEWER", client->Seal("")), wrongPassword);
    EXPECT_EQ(attempt("", ""), wrongPassword);
    const auto right = attempt("viewer", client->Seal("sample-viewer-1"));
    EXPECT_EQ(right->status, status::Ok);
    EXPECT_EQ(wire::FirstValue(right->fields, "OI"), "VIEWER");
    EXPECT_EQ(wire::FirstValue(right->fields, "ONM"), "Ada Okafor");
    EXPECT_EQ(wire::FirstValue(right->fields, "CHG"), "N");
    // A right one forgives the wrong ones before it.
    EXPECT_EQ(OfOperator("VIEWER", "failed_count"), "0");
    // Attempts are logged, whoever they claim to be.
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM invalid_sign_ons"), "5");
    EXPECT_EQ(
        m_server.Value("SELECT operator_name FROM invalid_sign_ons WHERE typed_id='VIEWER' ORDER BY id"),
        "Ada Okafor");
    SetOption("log_attempts", "N");
    TrySignOn("VIEWER", "nonsense");
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM invalid_sign_ons"), "5");
}

TEST_F(SignOnTest, GuessingLocks) {
    const auto working = m_server.Connect();
    ASSERT_EQ(working->SignOn("CIRC", "sample-circ-1"), status::Ok);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(TrySignOn("CIRC", "guess"), status::InvalidSignOn);
    EXPECT_EQ(working->Send("LstLoc").status, status::Ok);
    EXPECT_EQ(TrySignOn("CIRC", "guess"), status::InvalidSignOn);
    EXPECT_NE(OfOperator("CIRC", "locked_at"), "");
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::InvalidSignOn);
    EXPECT_EQ(working->Send("LstLoc").status, status::CommunicationsFailure) << "the session is over";
    EXPECT_EQ(TrySignOn("VIEWER", "sample-viewer-1"), status::Ok);

    // The lock ends by itself after its time, and the count begins anew.
    m_server.Advance(23 * 3600);
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::InvalidSignOn);
    m_server.Advance(2 * 3600);
    EXPECT_EQ(TrySignOn("CIRC", "guess"), status::InvalidSignOn);
    EXPECT_EQ(OfOperator("CIRC", "locked_at"), "");
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);

    // Without a time the lock stays until somebody takes it away.
    SetOption("locked_for", "H0");
    for (int i = 0; i < 5; ++i)
        TrySignOn("CIRC", "guess");
    m_server.Advance(400 * 86400);
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::InvalidSignOn);
    SetOperator("CIRC", "locked_at", "");
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);
}

TEST_F(SignOnTest, SlowGuessesAreForgottenUnlessTheyMayBeManyAnyway) {
    for (int i = 0; i < 20; ++i) {
        TrySignOn("CIRC", "guess");
        m_server.Advance(11 * 60);
    }
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);
    SetOption("sign_on_attempts", 0);
    for (int i = 0; i < 20; ++i)
        TrySignOn("CIRC", "guess");
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);
    // One connection does not get to guess for ever.
    const auto client = m_server.Connect();
    const QString guess = client->Seal("guess");
    int answered = 0;
    while (answered < 50 && client->Ask("SignOn", {{"OI", "CIRC"}, {"PW", guess}}))
        ++answered;
    EXPECT_LT(answered, 50);
}

TEST_F(SignOnTest, ExpiredPasswordsMustBeChangedFirst) {
    SetOperator("CIRC", "expired", "Y");
    m_server.SignOnAs("CIRC");
    TestClient& client = m_server.Client();
    EXPECT_EQ(client.Send("SAInit", {{"OI", "CIRC"}}).status, status::NotAuthorised);
    EXPECT_EQ(ChangePassword(client, "sample-circ-1", "Better-pass-2"), status::Ok);
    EXPECT_EQ(client.Send("SAInit", {{"OI", "CIRC"}}).status, status::Ok);
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::InvalidSignOn);
    EXPECT_EQ(TrySignOn("CIRC", "Better-pass-2"), status::Ok);
    EXPECT_EQ(OfOperator("CIRC", "expired"), "N");

    // By age, with a reminder before.
    SetOption("most_age_days", 90);
    SetOption("reminder_days", 14);
    SetOperator("CIRC", "never_expires", "N");
    const auto reply = [&] {
        const auto again = m_server.Connect();
        return *again->Ask("SignOn", {{"OI", "CIRC"}, {"PW", again->Seal("Better-pass-2")}});
    };
    m_server.Advance(70 * 86400);
    EXPECT_EQ(ValuesOf(reply().fields, "WARN"), QStringList());
    m_server.Advance(10 * 86400);
    EXPECT_EQ(ValuesOf(reply().fields, "WARN"), QStringList{"10"});
    m_server.Advance(10 * 86400);
    EXPECT_EQ(wire::FirstValue(reply().fields, "CHG"), "Y");
    SetOperator("CIRC", "never_expires", "Y");
    EXPECT_EQ(wire::FirstValue(reply().fields, "CHG"), "N");
    // Who may not change an expired password is not let in.
    SetOperator("CIRC", "never_expires", "N");
    SetOperator("CIRC", "restrict_change", "Y");
    EXPECT_EQ(reply().status, status::InvalidSignOn);
    EXPECT_EQ(OfOperator("CIRC", "failed_count"), "0");
}

TEST_F(SignOnTest, PasswordsThatWereResetMustBeUsedSoon) {
    SetOption("first_use_days", 3);
    SetOperator("VIEWER", "reset_at", StoredTime(m_server.Now()));
    m_server.Advance(4 * 86400);
    EXPECT_EQ(TrySignOn("VIEWER", "sample-viewer-1"), status::InvalidSignOn);
    SetOperator("VIEWER", "reset_at", StoredTime(m_server.Now()));
    EXPECT_EQ(TrySignOn("VIEWER", "sample-viewer-1"), status::Ok);
    m_server.Advance(4 * 86400);
    EXPECT_EQ(TrySignOn("VIEWER", "sample-viewer-1"), status::Ok) << "it was used in time";
}

TEST_F(SignOnTest, ChangingOnesOwnPassword) {
    m_server.SignOnAs("VIEWER");
    TestClient& client = m_server.Client();
    EXPECT_EQ(ChangePassword(client, "wrong", "Second-pass-2"), status::InvalidSignOn);
    EXPECT_EQ(ChangePassword(client, "sample-viewer-1", ""), status::ColumnError);
    EXPECT_EQ(client.Ask("ChgOwnPwd", {{"OPW", client.Seal("sample-viewer-1")}, {"PW", "plain"}})->status,
              status::ColumnError);
    EXPECT_EQ(ChangePassword(client, "sample-viewer-1", "sample-viewer-1"), status::RepeatedPassword);
    EXPECT_EQ(ChangePassword(client, "sample-viewer-1", "Second-pass-2"), status::Ok);
    EXPECT_EQ(ChangePassword(client, "Second-pass-2", "Third-pass-3"), status::Ok);
    EXPECT_EQ(ChangePassword(client, "Third-pass-3", "Second-pass-2"), status::RepeatedPassword);
    EXPECT_EQ(ChangePassword(client, "Third-pass-3", "Fourth-pass-4"), status::Ok);
    EXPECT_EQ(ChangePassword(client, "Fourth-pass-4", "Second-pass-2"), status::RepeatedPassword);
    EXPECT_EQ(ChangePassword(client, "Fourth-pass-4", "Fifth-pass-5"), status::Ok);
    EXPECT_EQ(ChangePassword(client, "Fifth-pass-5", "Second-pass-2"), status::Ok) << "three others since";
    SetOption("least_age", "D1");
    EXPECT_EQ(ChangePassword(client, "Second-pass-2", "Sixth-pass-6"), status::MinimumPasswordAge);
    m_server.Advance(86400);
    EXPECT_EQ(client.Ask("Resume", {{"SID", client.Token()}})->status, status::InvalidSignOn);
    ASSERT_EQ(client.SignOn("VIEWER", "Second-pass-2"), status::Ok);
    SetOperator("VIEWER", "restrict_change", "Y");
    EXPECT_EQ(ChangePassword(client, "Second-pass-2", "Sixth-pass-6"), status::NotAuthorised);
}

TEST_F(SignOnTest, PasswordsAreNowhereInThePlain) {
    m_server.SignOnAs("GUEST");
    ASSERT_EQ(ChangePassword(m_server.Client(), "sample-guest-1", "Hidden-treasure-9"), status::Ok);
    EXPECT_EQ(OfOperator("GUEST", "sample_password"), "N");
    EXPECT_TRUE(OfOperator("GUEST", "password_hash").startsWith("$argon2id$"));
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM history_records WHERE fields LIKE '%argon2%'"), "0");
    EXPECT_NE(m_server.Value("SELECT COUNT(*) FROM history_requests WHERE request='ChgOwnPwd'"), "0");
    for (const char* name : {"/library.sqlite", "/library.sqlite-wal"}) {
        QFile file(m_server.Directory() + name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        EXPECT_FALSE(bytes.contains("Hidden-treasure-9") || bytes.contains("sample-guest-1")) << name;
        EXPECT_FALSE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther)) << name;
    }
    // When the last published password is gone there is nothing to hint at.
    m_server.GetDatabase().Run("UPDATE operators SET sample_password='N'");
    EXPECT_FALSE(HasSamplePassword(m_server.GetDatabase()));
    EXPECT_TRUE(wire::FirstValue(m_server.Connect()->Ask("Hello")->fields, "HINT").isEmpty());
}

} // namespace
} // namespace sysadmin::testing
