#include "server/Context.h"
#include "support/TestServer.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// The password that these tests give to operators; it follows the rules in force.
const QString Good = "Lantern-42";

class OperatorAccountsTest : public ::testing::Test {
protected:
    wire::Fields Account(const QString& id, const QString& password = Good) {
        wire::Fields fields{
            {"OI", id},   {"FNm", "Zoë"}, {"LNm", "Berg"}, {"MI", "A"},  {"MdDt", "01/01/1999"},
            {"SPV", "N"}, {"Nexp", "N"},  {"Rchg", "N"},   {"CrDt", ""}, {"Exp", "N"}};
        if (!password.isNull())
            fields.append({"PW", m_server.Client().Seal(password)});
        return fields;
    }
    qint16 Add(const QString& id, const QString& password = Good) {
        return m_server.StatusOf("AddOpr", Account(id, password));
    }
    /// A save without a password, some fields of it replaced.
    qint16 Update(const QString& id, const wire::Fields& changed) {
        wire::Fields fields = Account(id, {});
        fields.removeIf(
            [&](const wire::Field& field) { return !wire::FirstValue(changed, field.tag).isEmpty(); });
        return m_server.StatusOf("UpdOpr", fields + changed);
    }
    QString Get(const QString& id, const QString& tag) {
        return wire::FirstValue(m_server.Send("GetOpr", {{"OI", id}}).fields, tag);
    }
    qint16 SignOn(const QString& id, const QString& password) {
        return m_server.Connect()->SignOn(id, password);
    }
    void SetOption(const QString& column, const QVariant& value) {
        m_server.GetDatabase().Run("UPDATE security_options SET " + column + "=?", {value});
    }
    void SetOperator(const QString& id, const QString& column, const QVariant& value) {
        m_server.GetDatabase().Run("UPDATE operators SET " + column + "=? WHERE operator_id=?", {value, id});
    }
    /// Each time from another address: none of them has to wait.
    void Guess(const QString& id, int times) {
        for (int i = 0; i < times; ++i)
            EXPECT_EQ(m_server.Connect(QString("203.0.113.%1").arg(++m_guesses))->SignOn(id, "guess"),
                      status::InvalidSignOn);
    }
    /// Makes another operator who may change the security settings.
    void AddAdministrator(const QString& id) {
        ASSERT_EQ(Add(id), status::Ok);
        ASSERT_EQ(
            m_server.StatusOf(
                "AddMPrf",
                {{"SOI", id}, {"OSt", "1"}, {"Sec", "Y"}, {"ChgPwd", "Y"}, {"Nm", "Security of " + id}}),
            status::Ok);
    }

    TestServer m_server;
    int m_guesses = 0;
};

TEST_F(OperatorAccountsTest, ListComesInTheWantedOrder) {
    ASSERT_EQ(Add("zed"), status::Ok);
    const auto ids = [&](const QString& sort) {
        return ValuesOf(m_server.Send("LstOpr", {{"Srt", sort}}).fields, "OI");
    };
    EXPECT_EQ(ids("I").first(), "ACQ1");
    EXPECT_EQ(ids("I").last(), "zed");
    EXPECT_EQ(ids("L").first(), "SYSADMIN") << "Administrator";
    EXPECT_EQ(ids("F").last(), "zed") << "Zoë";
    EXPECT_EQ(ids("?"), ids("I"));
    const wire::Fields list = m_server.Send("LstOpr", {{"Srt", "L"}}).fields;
    EXPECT_EQ(InRecord(list, "OI", "zed", "FNm"), "Zoë");
    EXPECT_EQ(InRecord(list, "OI", "zed", "MI"), "A");
}

TEST_F(OperatorAccountsTest, NewOperatorSignsOnAndIsStored) {
    EXPECT_EQ(Add("zoe"), status::Ok);
    EXPECT_EQ(Add(" ZOE "), status::DuplicateId);
    EXPECT_EQ(SignOn("zoe", Good), status::Ok);
    m_server.Restart();
    m_server.SignOnAs("SYSADMIN");
    EXPECT_EQ(Get("Zoe", "LNm"), "Berg");
    EXPECT_EQ(Get("zoe", "CrDt"), "03/02/2026") << "the server's own date, whatever a client says";
    EXPECT_EQ(Get("zoe", "MdDt"), "03/02/2026");
    EXPECT_EQ(Get("zoe", "MdOpr"), "SYSADMIN");
    EXPECT_EQ(Get("zoe", "Exp"), "N");
    EXPECT_EQ(m_server.StatusOf("GetOpr", {{"OI", "nobody"}}), status::NotFound);
}

TEST_F(OperatorAccountsTest, WhatCannotBeStoredIsRefusedWhole) {
    for (const auto& [tag, value] : QList<QPair<QString, QString>>{{"OI", ""},
                                                                   {"OI", QString(21, 'x')},
                                                                   {"LNm", " "},
                                                                   {"FNm", QString(31, 'x')},
                                                                   {"MI", "AB"},
                                                                   {"Nexp", "maybe"},
                                                                   {"PW", "plain"},
                                                                   {"PW", ""}}) {
        wire::Fields fields = Account("bad");
        for (wire::Field& field : fields)
            if (field.tag == tag)
                field.value = value;
        EXPECT_EQ(m_server.StatusOf("AddOpr", fields), status::ColumnError) << tag.toStdString();
    }
    EXPECT_EQ(Add("bad", "abc"), status::WeakPassword);
    EXPECT_EQ(Add("badge", "my-BADGE-1"), status::WeakPassword) << "holds the id";
    EXPECT_EQ(Add("bad", "my-berg-1"), status::WeakPassword) << "holds the name";
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM operators WHERE operator_id LIKE 'bad%'"), "0");
    wire::Fields skipped = Account("bad", "abc");
    for (wire::Field& field : skipped)
        if (field.tag == "SPV")
            field.value = "Y";
    EXPECT_EQ(m_server.StatusOf("AddOpr", skipped), status::Ok);
    EXPECT_EQ(Update("bad", {{"PID", "zoe"}}), status::ColumnError) << "an id does not change";
    EXPECT_EQ(Update("nobody", {}), status::NotFound);
}

TEST_F(OperatorAccountsTest, RightsAreKept) {
    const QString sealed = m_server.Client().Seal(Good);
    for (const char* id : {"VIEWER", "CIRC", "GUEST"}) {
        SCOPED_TRACE(id);
        m_server.SignOnAs(id);
        const qint16 reads = QString(id) == "VIEWER" ? status::Ok : status::NotAuthorised;
        EXPECT_EQ(m_server.StatusOf("LstOpr", {{"Srt", "I"}}), reads);
        EXPECT_EQ(m_server.StatusOf("GetOpr", {{"OI", "CIRC2"}}), reads);
        EXPECT_EQ(m_server.StatusOf("GetLockoutStatus", {{"OI", "CIRC2"}}), reads);
        EXPECT_EQ(m_server.StatusOf("GetInvalidLogins"), reads);
        EXPECT_EQ(m_server.StatusOf("GetMscExpire"), reads);
        EXPECT_EQ(m_server.StatusOf("GET_PWD_DISPLAY_TEXT"), status::Ok);
        for (const char* change : {"AddOpr", "UpdOpr", "DelOpr", "ExpOpr", "PwdUsg", "ClearLockoutStatus"})
            EXPECT_EQ(m_server.StatusOf(change, {{"OI", "CIRC2"}, {"LNm", "x"}, {"PW", sealed}}),
                      status::NotAuthorised)
                << change;
        EXPECT_EQ(m_server.StatusOf("ClearInvalidLogins"), status::NotAuthorised);
        EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", "1"}}), status::NotAuthorised);
    }
    // Another operator's password takes a right of its own.
    m_server.GetDatabase().Run("UPDATE master_profiles SET change_password='N'");
    m_server.SignOnAs("SYSADMIN");
    EXPECT_EQ(Update("CIRC2", {{"PW", sealed}}), status::NotAuthorised);
    EXPECT_EQ(m_server.StatusOf("PwdUsg", {{"OI", "CIRC2"}, {"PW", sealed}}), status::NotAuthorised);
    EXPECT_EQ(Update("CIRC2", {{"FNm", "Sam"}}), status::Ok);
}

TEST_F(OperatorAccountsTest, PasswordsOfTheSameOperatorDoNotRepeat) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    const auto use = [&](const QString& password, const QString& skip = "N") {
        return m_server.StatusOf(
            "PwdUsg", {{"OI", "zoe"}, {"PW", m_server.Client().Seal(password)}, {"SPV", skip}, {"AS", "Y"}});
    };
    const auto change = [&](const QString& password) {
        return Update("zoe", {{"PW", m_server.Client().Seal(password)}});
    };
    EXPECT_EQ(use(Good), status::RepeatedPassword);
    EXPECT_EQ(use("Lantern-43"), status::Ok);
    EXPECT_EQ(use("feeble"), status::WeakPassword);
    EXPECT_EQ(use("feeble", "Y"), status::Ok);
    EXPECT_EQ(change("Lantern-43"), status::Ok);
    EXPECT_EQ(change(Good), status::RepeatedPassword);
    EXPECT_EQ(SignOn("zoe", "Lantern-43"), status::Ok) << "what was refused changed nothing";
    SetOption("previous_passwords", 1);
    EXPECT_EQ(change("Lantern-43"), status::RepeatedPassword);
    EXPECT_EQ(change(Good), status::Ok);
    SetOption("least_age", "H2");
    EXPECT_EQ(use("Lantern-44"), status::MinimumPasswordAge);
    EXPECT_EQ(change("Lantern-44"), status::MinimumPasswordAge);
    EXPECT_EQ(use("Lantern-44", "Y"), status::Ok);
    m_server.Advance(2 * 3600);
    EXPECT_EQ(change("Lantern-44"), status::Ok);
    EXPECT_EQ(
        m_server.Value("SELECT COUNT(*) FROM history_records WHERE fields LIKE '%argon2%' OR fields LIKE "
                       "'%Lantern%'"),
        "0");
}

TEST_F(OperatorAccountsTest, NewPasswordByAnAdministratorThrowsTheOldSessionsOut) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    const auto zoe = m_server.Connect();
    ASSERT_EQ(zoe->SignOn("zoe", Good), status::Ok);
    EXPECT_EQ(Update("zoe", {{"FNm", "Zora"}}), status::Ok);
    EXPECT_EQ(zoe->Send("LstLoc").status, status::Ok);
    EXPECT_EQ(Update("zoe", {{"PW", m_server.Client().Seal("Lantern-43")}}), status::Ok);
    EXPECT_EQ(zoe->Send("LstLoc").status, status::CommunicationsFailure);
    // One's own password leaves this session alone and ends one's others.
    const auto other = m_server.Connect();
    ASSERT_EQ(other->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    EXPECT_EQ(Update("SYSADMIN", {{"PW", m_server.Client().Seal("Lantern-45")}}), status::Ok);
    EXPECT_EQ(m_server.StatusOf("LstLoc"), status::Ok);
    EXPECT_EQ(other->Send("LstLoc").status, status::CommunicationsFailure);
    // It has to be used in time.
    SetOption("first_use_days", 3);
    m_server.Advance(4 * 86400);
    EXPECT_EQ(SignOn("zoe", "Lantern-43"), status::InvalidSignOn);
}

TEST_F(OperatorAccountsTest, ExpiryEndsWithANewPasswordOnly) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    EXPECT_EQ(m_server.StatusOf("ExpOpr", {{"OI", "zoe"}, {"MdOpr", "FORGED"}}), status::Ok);
    EXPECT_EQ(Get("zoe", "Exp"), "Y");
    EXPECT_EQ(Get("zoe", "MdOpr"), "SYSADMIN");
    EXPECT_EQ(Update("zoe", {{"Exp", "N"}}), status::Ok);
    EXPECT_EQ(Get("zoe", "Exp"), "Y");
    EXPECT_EQ(Update("zoe", {{"PW", m_server.Client().Seal("Lantern-43")}, {"Exp", "N"}}), status::Ok);
    EXPECT_EQ(Get("zoe", "Exp"), "N");
    EXPECT_EQ(Update("zoe", {{"PW", m_server.Client().Seal("Lantern-44")}, {"Exp", "Y"}}), status::Ok);
    EXPECT_EQ(Get("zoe", "Exp"), "Y");
    const auto reply = m_server.Connect()->TrySignOn("zoe", "Lantern-44");
    EXPECT_EQ(wire::FirstValue(reply->fields, "CHG"), "Y");
    EXPECT_EQ(m_server.StatusOf("ExpOpr", {{"OI", "REPORTS"}}), status::ColumnError) << "never expires";

    // By age: shown as expired, and a save of something else makes no lasting expiry of it.
    ASSERT_EQ(Add("yan"), status::Ok);
    EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", "30"}}), status::Ok);
    m_server.Advance(31 * 86400);
    m_server.SignOnAs("SYSADMIN");
    EXPECT_EQ(Get("yan", "Exp"), "Y");
    EXPECT_EQ(Update("yan", {{"Exp", "Y"}, {"Nexp", "Y"}}), status::Ok);
    EXPECT_EQ(Get("yan", "Exp"), "N");
}

TEST_F(OperatorAccountsTest, ExpiryStopsRunningSessions) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    const auto first = m_server.Connect();
    const auto second = m_server.Connect();
    for (TestClient* client : {first.get(), second.get()}) {
        ASSERT_EQ(client->SignOn("zoe", Good), status::Ok);
        EXPECT_EQ(client->Send("LstLoc").status, status::Ok);
    }
    EXPECT_EQ(m_server.StatusOf("ExpOpr", {{"OI", "zoe"}}), status::Ok);
    EXPECT_EQ(first->Send("LstLoc").status, status::NotAuthorised);
    EXPECT_EQ(first
                  ->Ask("ChgOwnPwd", {{"OPW", first->Seal(Good, wire::PasswordPurpose::Confirm)},
                                      {"PW", first->Seal("Lantern-43")}})
                  ->status,
              status::Ok);
    EXPECT_EQ(first->Send("LstLoc").status, status::Ok);
    EXPECT_EQ(second->Send("LstLoc").status, status::CommunicationsFailure) << "it knew the old one";
    // Who may not change it has no way on.
    EXPECT_EQ(Update("zoe", {{"Rchg", "Y"}}), status::Ok);
    EXPECT_EQ(first->Send("LstLoc").status, status::Ok);
    EXPECT_EQ(m_server.StatusOf("ExpOpr", {{"OI", "zoe"}}), status::Ok);
    EXPECT_EQ(first->Send("LstLoc").status, status::CommunicationsFailure);
}

TEST_F(OperatorAccountsTest, LockedOperatorIsUnlocked) {
    EXPECT_EQ(Get("CIRC", "Lock"), "N");
    Guess("CIRC", 5);
    EXPECT_EQ(Get("CIRC", "Lock"), "Y");
    const wire::Fields lockout = m_server.Send("GetLockoutStatus", {{"OI", "CIRC"}}).fields;
    EXPECT_EQ(wire::FirstValue(lockout, "LC"), "5");
    EXPECT_EQ(wire::FirstValue(lockout, "IL"), ShownTime(StoredTime(m_server.Now())));
    EXPECT_EQ(wire::FirstValue(lockout, "LT"), wire::FirstValue(lockout, "IL"));
    EXPECT_EQ(SignOn("CIRC", SamplePassword("CIRC")), status::InvalidSignOn);
    EXPECT_EQ(m_server.StatusOf("ClearLockoutStatus", {{"OI", "CIRC"}}), status::Ok);
    EXPECT_EQ(Get("CIRC", "Lock"), "N");
    EXPECT_EQ(wire::FirstValue(m_server.Send("GetLockoutStatus", {{"OI", "CIRC"}}).fields, "LC"), "0");
    EXPECT_EQ(SignOn("CIRC", SamplePassword("CIRC")), status::Ok);
    EXPECT_EQ(m_server.StatusOf("ClearLockoutStatus", {{"OI", "nobody"}}), status::NotFound);
    EXPECT_EQ(m_server.StatusOf("GetLockoutStatus", {{"OI", "nobody"}}), status::NotFound);
}

TEST_F(OperatorAccountsTest, ProfilesOfEveryModuleAreNamed) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    EXPECT_TRUE(ValuesOf(m_server.Send("GetOpr", {{"OI", "zoe"}}).fields, "Prof").isEmpty());
    for (const char* add : {"AddMPrf", "AddCaPrf", "AddCrPrf", "AddASPrf", "AddRPrf", "AddGDCPrf"})
        ASSERT_EQ(m_server.StatusOf(add, {{"SOI", "zoe"}, {"OSt", "1"}, {"Nm", "Desk"}}), status::Ok) << add;
    EXPECT_EQ(ValuesOf(m_server.Send("GetOpr", {{"OI", "zoe"}}).fields, "Prof"),
              (QStringList{"Acquisitions/Serials: Desk", "Analyzer: Desk", "Cataloging: Desk",
                           "Circulation: Desk", "Global Data Change: Desk", "System Administration: Desk"}));
}

TEST_F(OperatorAccountsTest, DeletedOperatorIsGoneAtOnce) {
    ASSERT_EQ(Add("zoe"), status::Ok);
    const auto zoe = m_server.Connect();
    ASSERT_EQ(zoe->SignOn("zoe", Good), status::Ok);
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", "zoe"}}), status::Ok);
    EXPECT_EQ(zoe->Send("LstLoc").status, status::CommunicationsFailure);
    EXPECT_EQ(SignOn("zoe", Good), status::InvalidSignOn);
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", "zoe"}}), status::NotFound);
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", "CIRC"}}), status::Ok) << "leaves its profile, too";
    EXPECT_EQ(m_server.Value("SELECT COUNT(*) FROM master_profile_operators"), "2");
}

TEST_F(OperatorAccountsTest, BuiltInAdministratorIsNeverDeleted) {
    AddAdministrator("zoe");
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", " sysadmin "}}), status::NotAuthorised);
    EXPECT_EQ(SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
}

TEST_F(OperatorAccountsTest, SomebodyKeepsTheSecurityRight) {
    AddAdministrator("zoe");
    auto& client = m_server.Client();
    ASSERT_EQ(client.SignOn("zoe", Good), status::Ok);
    // While SYSADMIN is there zoe may go; not so when SYSADMIN could not sign on any more.
    SetOption("locked_for", "H0");
    SetOperator("SYSADMIN", "locked_at", StoredTime(m_server.Now()));
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", "zoe"}}), status::LastSecurityRight);
    EXPECT_EQ(Update("zoe", {{"Rchg", "Y"}}), status::Ok);
    EXPECT_EQ(m_server.StatusOf("ExpOpr", {{"OI", "zoe"}}), status::LastSecurityRight)
        << "expired and not allowed to change the password";
    EXPECT_EQ(Get("zoe", "Exp"), "N");
    EXPECT_EQ(Update("zoe", {{"Exp", "Y"}, {"Rchg", "Y"}}), status::LastSecurityRight);
    EXPECT_EQ(Update("zoe", {{"Exp", "Y"}, {"Rchg", "N"}}), status::Ok) << "signs on and changes it";
    SetOperator("zoe", "expired", "N");
    SetOperator("SYSADMIN", "locked_at", "");
    EXPECT_EQ(m_server.StatusOf("DelOpr", {{"OI", "zoe"}}), status::Ok);
}

TEST_F(OperatorAccountsTest, LastHolderIsNotShutOutForGood) {
    SetOption("locked_for", "H0");
    SetOption("first_use_days", 3);
    Guess("SYSADMIN", 5);
    const auto signOn = [&](const QString& peer) {
        return m_server.Connect(peer)->SignOn("SYSADMIN", SamplePassword("SYSADMIN"));
    };
    const QString desk = "198.51.100.7";
    EXPECT_EQ(signOn(desk), status::InvalidSignOn);
    m_server.Advance(3600);
    Guess("SYSADMIN", 1); // guessing goes on at the rate of one in an hour
    EXPECT_EQ(signOn(desk), status::InvalidSignOn);
    m_server.Advance(3600);
    EXPECT_EQ(signOn(desk), status::Ok);
    // On the server's own machine at any time.
    for (const char* own : {"local", "127.0.0.1", "::1"}) {
        Guess("SYSADMIN", 5);
        EXPECT_EQ(signOn(desk), status::InvalidSignOn);
        EXPECT_EQ(signOn(own), status::Ok) << own;
        EXPECT_EQ(signOn(desk), status::Ok) << "that ended the lock";
    }
    SetOperator("SYSADMIN", "reset_at", StoredTime(m_server.Now()));
    m_server.Advance(10 * 86400);
    EXPECT_EQ(SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    SetOperator("SYSADMIN", "restrict_change", "Y");
    SetOperator("SYSADMIN", "expired", "Y");
    const auto reply = m_server.Connect()->TrySignOn("SYSADMIN", SamplePassword("SYSADMIN"));
    EXPECT_EQ(reply->status, status::Ok);
    EXPECT_EQ(wire::FirstValue(reply->fields, "CHG"), "N") << "could not do it";

    // Somebody else who can help changes that.
    SetOperator("SYSADMIN", "restrict_change", "N");
    SetOperator("SYSADMIN", "expired", "N");
    m_server.SignOnAs("SYSADMIN");
    AddAdministrator("zoe");
    Guess("SYSADMIN", 5);
    m_server.Advance(86400);
    EXPECT_EQ(signOn("local"), status::InvalidSignOn);
    // Whoever locks all of them gains nothing on the server's own machine, with a lock that ends or not.
    for (const char* lockedFor : {"H0", "H24"}) {
        SetOption("locked_for", lockedFor);
        SetOperator("SYSADMIN", "locked_at", "");
        Guess("SYSADMIN", 5);
        Guess("zoe", 5);
        EXPECT_EQ(signOn(desk), status::InvalidSignOn);
        EXPECT_EQ(signOn("local"), status::Ok) << lockedFor;
    }
}

TEST_F(OperatorAccountsTest, LogOfInvalidAttemptsComesLatestFirstInBatches) {
    for (int i = 1; i <= 1203; ++i)
        m_server.GetDatabase().Run("INSERT INTO invalid_sign_ons (typed_id, operator_name, at, failed_count, "
                                   "locked_at, peer) VALUES "
                                   "(?, '', ?, 0, '', '192.0.2.1')",
                                   {QString("user%1").arg(i), StoredTime(m_server.Now())});
    Guess("CIRC", 1);
    const auto next = [&](bool goesOn) {
        return m_server.Send("GetInvalidLogins", goesOn ? wire::Fields{{"55", "Y"}} : wire::Fields());
    };
    QStringList ids;
    wire::Reply reply = next(false);
    EXPECT_EQ(wire::FirstValue(reply.fields, "AT"), ShownTime(StoredTime(m_server.Now())));
    EXPECT_EQ(wire::FirstValue(reply.fields, "ON"), "Per Lindqvist");
    EXPECT_EQ(wire::FirstValue(reply.fields, "LC"), "1");
    EXPECT_EQ(wire::FirstValue(reply.fields, "WI"), "203.0.113.1");
    int batches = 0;
    for (; reply.status == status::Continues && batches < 10; ++batches) {
        ids += ValuesOf(reply.fields, "LI");
        reply = next(true);
    }
    EXPECT_EQ(reply.status, status::Ok);
    ids += ValuesOf(reply.fields, "LI");
    EXPECT_EQ(batches, 2);
    EXPECT_EQ(ids.size(), 1204);
    EXPECT_EQ(QSet<QString>(ids.begin(), ids.end()).size(), 1204);
    EXPECT_EQ(ids.first(), "CIRC");
    EXPECT_EQ(ids.last(), "user1");

    EXPECT_EQ(m_server.StatusOf("ClearInvalidLogins"), status::Ok);
    EXPECT_TRUE(next(false).fields.isEmpty());
    EXPECT_EQ(m_server.Value("SELECT operator_id FROM history_requests WHERE request='ClearInvalidLogins'"),
              "SYSADMIN")
        << "who emptied the log is known";
}

TEST_F(OperatorAccountsTest, ExpiryIsOneSettingUnderTwoNames) {
    EXPECT_EQ(m_server.StatusOf("UpdSecOptions", {{"PAX", "90"}, {"ERD", "14"}}), status::Ok);
    EXPECT_EQ(wire::FirstValue(m_server.Send("GetMscExpire").fields, "ED"), "90");
    EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", "10"}}), status::Ok);
    wire::Fields options = m_server.Send("GetSecOptions").fields;
    EXPECT_EQ(wire::FirstValue(options, "PAX"), "10");
    EXPECT_EQ(wire::FirstValue(options, "ERD"), "10") << "no reminder before the password is made";
    EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", "999"}}), status::Ok);
    for (const char* wrong : {"1000", "-1", "", "soon"})
        EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", wrong}}), status::ColumnError) << wrong;
    EXPECT_EQ(m_server.StatusOf("UpdMscExpire", {{"ED", "0"}}), status::Ok);
    m_server.Restart();
    m_server.SignOnAs("SYSADMIN");
    EXPECT_EQ(wire::FirstValue(m_server.Send("GetMscExpire").fields, "ED"), "0");
    EXPECT_EQ(m_server.StatusOf("UpdSecOptions", {{"PDT", "Be\r\ncareful"}}), status::Ok);
    EXPECT_EQ(wire::FirstValue(m_server.Send("GET_PWD_DISPLAY_TEXT").fields, "PDT"), "Be\r\ncareful");
}

TEST_F(OperatorAccountsTest, PasswordRulesInForceAreThoseOfTheOptions) {
    EXPECT_EQ(m_server.StatusOf("UpdSecOptions", {{"PLM", "8"},
                                                  {"PLX", "12"},
                                                  {"PCN", "Y"},
                                                  {"PAL", "0"},
                                                  {"PUL", "2"},
                                                  {"PUG", "Y"},
                                                  {"PNL", "3"},
                                                  {"PNG", "Y"},
                                                  {"PSL", "0"},
                                                  {"PGR", "1"}}),
              status::Ok);
    EXPECT_EQ(Add("a1", "BERGberg"), status::Ok) << "two capitals, the name is allowed";
    EXPECT_EQ(Add("a2", "lower123"), status::Ok);
    EXPECT_EQ(Add("a3", "lower-12"), status::WeakPassword);
    EXPECT_EQ(Add("a3", "TooLongByMuch"), status::WeakPassword);
    // One's own password follows the same rules.
    const auto one = m_server.Connect();
    ASSERT_EQ(one->SignOn("a1", "BERGberg"), status::Ok);
    const auto change = [&](const QString& password) {
        return one
            ->Ask("ChgOwnPwd", {{"OPW", one->Seal("BERGberg", wire::PasswordPurpose::Confirm)},
                                {"PW", one->Seal(password)}})
            ->status;
    };
    EXPECT_EQ(change("lower-12"), status::WeakPassword);
    EXPECT_EQ(change("lower-123"), status::Ok);
}

} // namespace
} // namespace sysadmin::testing
