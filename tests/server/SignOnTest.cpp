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
    QString OfOperator(const QString& id, const QString& column) {
        return m_server.Value("SELECT " + column + " FROM operators WHERE operator_id=?", {id});
    }
    qint16 ChangePassword(TestClient& client, const QString& old, const QString& password) {
        return client
            .Ask("ChgOwnPwd",
                 {{"OPW", client.Seal(old, wire::PasswordPurpose::Confirm)}, {"PW", client.Seal(password)}})
            ->status;
    }
    /// Guesses from addresses of their own, which do not have to wait.
    void Guess(const QString& id, int times) {
        for (int i = 0; i < times; ++i)
            EXPECT_EQ(m_server.Connect(QString("203.0.113.%1").arg(++m_guesses))->SignOn(id, "guess"),
                      status::InvalidSignOn);
    }

    TestServer m_server;
    int m_guesses = 0;
};

TEST_F(SignOnTest, HelloTellsWhatToTryOnThisMachineOnly) {
    const auto hello = m_server.Connect()->Ask("Hello");
    EXPECT_EQ(QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1()).size(), 32);
    EXPECT_TRUE(wire::FirstValue(hello->fields, "HINT").contains("sample-admin-1"));
    EXPECT_FALSE(wire::FirstValue(m_server.Connect("127.0.0.1")->Ask("Hello")->fields, "HINT").isEmpty());
    EXPECT_TRUE(wire::FirstValue(m_server.Connect("192.0.2.7")->Ask("Hello")->fields, "HINT").isEmpty());
    for (const QString colour : {"red", "", "none"}) { // nothing said: it stays
        MarkLibrary(*m_server.GetLibrary().Connect(), colour == u"red" ? "Test library" : QString(), colour);
        const wire::Fields told = m_server.Connect()->Ask("Hello")->fields;
        EXPECT_EQ(wire::FirstValue(told, "CLR"), colour == u"none" ? "" : "red");
        EXPECT_EQ(wire::FirstValue(told, "LIB"), "Test library");
    }
}

TEST_F(SignOnTest, WrongIdAndWrongPasswordLookAlike) {
    const auto client = m_server.Connect();
    const auto seal = [&](const QString& text) { return client->Seal(text, wire::PasswordPurpose::SignOn); };
    const auto ask = [&](const wire::Fields& fields) {
        m_server.Advance(SignOnThrottle::LongestLocalWait);
        return client->Ask("SignOn", fields);
    };
    const auto attempt = [&](const QString& id, const QString& sealed) {
        return ask({{"OI", id}, {"PW", sealed}});
    };
    const auto wrongPassword = attempt("VIEWER", seal("nonsense"));
    EXPECT_EQ(wrongPassword->status, status::InvalidSignOn);
    EXPECT_TRUE(wrongPassword->fields.isEmpty());
    EXPECT_EQ(attempt("NOBODY", seal("nonsense")), wrongPassword);
    EXPECT_EQ(ask({{"PW", seal("nonsense")}}), wrongPassword) << "no id at all";
    EXPECT_EQ(attempt(QString("VIEWER") + QChar(0), seal("sample-viewer-1")), wrongPassword);
    EXPECT_EQ(attempt(QChar(0xfeff) + QString("VIEWER"), seal("sample-viewer-1")), wrongPassword);
    EXPECT_EQ(attempt("VIEWER", "not sealed at all"), wrongPassword);
    EXPECT_EQ(attempt("VIEWER", seal("")), wrongPassword);
    EXPECT_EQ(attempt("", ""), wrongPassword);
    const auto right = attempt("viewer", seal("sample-viewer-1"));
    EXPECT_EQ(right->status, status::Ok);
    EXPECT_EQ(wire::FirstValue(right->fields, "OI"), "VIEWER");
    EXPECT_EQ(wire::FirstValue(right->fields, "ONM"), "Ada Okafor");
    EXPECT_EQ(wire::FirstValue(right->fields, "CHG"), "N");
    // A right one forgives the wrong ones before it.
    EXPECT_EQ(OfOperator("VIEWER", "failed_count"), "0");
    // Attempts are logged, whoever they claim to be.
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM invalid_sign_ons"), "8");
    EXPECT_EQ(
        m_server.Value("SELECT operator_name FROM invalid_sign_ons WHERE typed_id='VIEWER' ORDER BY id"),
        "Ada Okafor");
    SetOption("log_attempts", "N");
    Guess("VIEWER", 1);
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM invalid_sign_ons"), "8");
}

TEST_F(SignOnTest, AStrangersGuessesCostTheStranger) {
    SetOption("sign_on_attempts", 0);
    SetOption("log_attempts", "Y");
    const auto working = m_server.Connect("198.51.100.7");
    ASSERT_EQ(working->SignOn("CIRC", "sample-circ-1"), status::Ok);
    // An hour of a guess every second, from the addresses of one network.
    int looked = 0;
    qint64 longest = 0;
    for (int second = 0; second < 3600; ++second) {
        const auto stranger = m_server.Connect(QString("2001:db8::%1").arg(second % 100 + 1));
        const auto reply = stranger->TrySignOn("CIRC", "guess");
        ASSERT_EQ(reply->status, status::InvalidSignOn);
        const qint64 wait = wire::FirstValue(reply->fields, "WAIT").toLongLong();
        looked += wait == 0 ? 1 : 0;
        longest = qMax(longest, wait);
        m_server.Advance(1);
    }
    EXPECT_LE(looked, 17);
    EXPECT_GE(looked, SignOnThrottle::FreeTries);
    EXPECT_LE(longest, SignOnThrottle::LongestWait);
    EXPECT_GT(longest, SignOnThrottle::LongestWait / 2);
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM invalid_sign_ons"), QString::number(looked));
    // The right password does not help there, and everybody else signs on as ever.
    EXPECT_FALSE(ValuesOf(m_server.Connect("2001:db8::7")->TrySignOn("CIRC", "sample-circ-1")->fields, "WAIT")
                     .isEmpty());
    EXPECT_EQ(m_server.Connect("198.51.100.7")->SignOn("CIRC", "sample-circ-1"), status::Ok);
    EXPECT_EQ(m_server.Connect("2001:db8:0:1::7")->SignOn("CIRC", "sample-circ-1"), status::Ok);
    EXPECT_EQ(m_server.Connect("local")->SignOn("CIRC", "sample-circ-1"), status::Ok);
    EXPECT_EQ(working->Send("LstLoc").status, status::Ok);

    // An account of one's own does not wipe out what one tries with others.
    const QString desk = "192.0.2.9";
    for (int i = 0; i < 5; ++i) {
        m_server.Connect(desk)->SignOn("CIRC", "guess");
        m_server.Connect(desk)->SignOn("VIEWER", "sample-viewer-1");
    }
    EXPECT_NE(m_server.Connect(desk)->SignOn("VIEWER", "sample-viewer-1"), status::Ok);
    // Who mistypes three times and then does not is at once as before.
    for (int round = 0; round < 4; ++round) {
        for (int i = 0; i < SignOnThrottle::FreeTries - 1; ++i)
            EXPECT_EQ(m_server.Connect("192.0.2.10")->SignOn("VIEWER", "oops"), status::InvalidSignOn);
        EXPECT_EQ(m_server.Connect("192.0.2.10")->SignOn("VIEWER", "sample-viewer-1"), status::Ok);
    }
    // The old password of a running session is not guessed faster.
    int refused = 0;
    for (int i = 0; i < 50; ++i)
        refused += ChangePassword(*working, "guess", "Second-pass-2") == status::InvalidSignOn ? 1 : 0;
    EXPECT_EQ(refused, 50);
    EXPECT_EQ(OfOperator("CIRC", "failed_count"), QString::number(2 * SignOnThrottle::FreeTries));
}

TEST_F(SignOnTest, ASealedPasswordFitsOneSessionAndOnePurpose) {
    const auto mine = m_server.Connect("198.51.100.7");
    const QString sealed = mine->Seal("sample-viewer-1", wire::PasswordPurpose::SignOn);
    const wire::Fields recorded{{"OI", "VIEWER"}, {"PW", sealed}};
    const auto other = m_server.Connect("198.51.100.8");
    EXPECT_EQ(other->Ask("SignOn", recorded)->status, status::InvalidSignOn) << "without a greeting";
    other->Ask("Hello");
    EXPECT_EQ(other->Ask("SignOn", recorded)->status, status::InvalidSignOn);
    EXPECT_EQ(mine->Ask("SignOn", recorded)->status, status::Ok);
    EXPECT_EQ(mine->Ask("SignOff")->status, status::Ok);
    EXPECT_EQ(mine->Ask("SignOn", recorded)->status, status::InvalidSignOn) << "once only";
    mine->Ask("Hello");
    EXPECT_EQ(mine->Ask("SignOn", recorded)->status, status::InvalidSignOn);

    // In a request: not for another session, but for the same one over whatever connection.
    TestClient& client = m_server.Client();
    const QString token = client.Token();
    const auto update = [&](const QString& sealedPassword) {
        return wire::Fields{{"OI", "GUEST"}, {"LNm", "Guest"}, {"PW", sealedPassword}, {"SPV", "Y"}};
    };
    const wire::Fields request = update(client.Seal("Lantern-42"));
    const auto second = m_server.Connect();
    ASSERT_EQ(second->SignOn("SYSADMIN", "sample-admin-1"), status::Ok);
    EXPECT_EQ(second->Send("UpdOpr", request).status, status::ColumnError);
    EXPECT_EQ(
        second->Send("UpdOpr", update(second->Seal("Lantern-42", wire::PasswordPurpose::Confirm))).status,
        status::ColumnError);
    const auto again = m_server.Connect();
    ASSERT_EQ(again->Resume(token, 0), status::Ok);
    EXPECT_EQ(again->SendNumbered(1, "UpdOpr", request)->status, status::Ok) << "it was lost on its way";
    EXPECT_EQ(TrySignOn("GUEST", "Lantern-42"), status::Ok);
    m_server.GetDatabase().Run("UPDATE operators SET password_changed_at='?' WHERE operator_id=?", {"GUEST"});
    const auto third = m_server.Connect();
    ASSERT_EQ(third->Resume(token, 1), status::Ok);
    EXPECT_EQ(third->SendNumbered(1, "UpdOpr", request)->status, status::Ok) << "the kept reply";
    EXPECT_EQ(OfOperator("GUEST", "password_changed_at"), "?");
}

TEST(SamplePasswordTest, IsKnownByItsHash) {
    // On this machine alone they may be used, but a server for others does not start while one is.
    TestServer own;
    own.GetDatabase().Run("UPDATE operators SET sample_password='N', published_password='N'");
    EXPECT_FALSE(HasSamplePassword(own.GetDatabase()));
    EXPECT_EQ(
        own.StatusOf(
            "UpdOpr",
            {{"OI", "VIEWER"}, {"LNm", "Okafor"}, {"PW", own.Client().Seal("sample-circ-1")}, {"SPV", "Y"}}),
        status::Ok);
    EXPECT_TRUE(HasSamplePassword(own.GetDatabase()));
    EXPECT_TRUE(wire::FirstValue(own.Connect()->Ask("Hello")->fields, "HINT").isEmpty()) << "not this one's";
}

TEST_F(SignOnTest, SlowGuessesAreForgottenUnlessTheyMayBeManyAnyway) {
    for (int i = 0; i < 20; ++i) {
        TrySignOn("CIRC", "guess");
        m_server.Advance(11 * 60);
    }
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);
    SetOption("sign_on_attempts", 0);
    Guess("CIRC", 20);
    EXPECT_EQ(TrySignOn("CIRC", "sample-circ-1"), status::Ok);
    // One connection does not get to guess for ever.
    const auto client = m_server.Connect();
    const QString guess = client->Seal("guess", wire::PasswordPurpose::SignOn);
    int answered = 0;
    while (answered < 50 && client->Ask("SignOn", {{"OI", "CIRC"}, {"PW", guess}}))
        ++answered;
    EXPECT_LT(answered, 50);
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
    m_server.GetDatabase().Run("UPDATE operators SET sample_password='N', published_password='N'");
    EXPECT_FALSE(HasSamplePassword(m_server.GetDatabase()));
    EXPECT_TRUE(wire::FirstValue(m_server.Connect()->Ask("Hello")->fields, "HINT").isEmpty());
}

} // namespace
} // namespace sysadmin::testing
