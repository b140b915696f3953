#include "server/LibraryCheck.h"

#include "Engines.h"
#include "server/ServerOptions.h"
#include "server/store/LibraryFolder.h"
#include "server/store/Schema.h"
#include "support/TestServer.h"

#include <QDir>
#include <QFileInfo>

namespace sysadmin::testing {
namespace {

using namespace server;

class LibraryCheckTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }

    bool Check() {
        ServerOptions options;
        options.library = m_server->GetLibrary().GetAddress();
        m_told.clear();
        return CheckLibrary(options, [&](const QString& sentence) { m_told << sentence; });
    }

    bool IsSqlite() const { return GetParam() == StoreAddress::Engine::Sqlite; }

    std::unique_ptr<TestServer> m_server;
    QStringList m_told;
};
INSTANTIATE_ON_ENGINES(LibraryCheckTest);

TEST_P(LibraryCheckTest, FindsWhatIsWrongAndTellsIt) {
    Database& database = m_server->GetDatabase();
    EXPECT_TRUE(Check()) << m_told.join('\n').toStdString();
    EXPECT_EQ(m_told.last(), "Everything is in order.");
    EXPECT_TRUE(m_told.filter("FAULT").isEmpty());

    const QString publicKey = ReadSetting(database, "sealing_public_key");
    const QString version = ReadSetting(database, "schema_version");
    const struct {
        QString words;
        std::function<void()> spoil;
        std::function<void()> mend;
    } cases[] = {
        {"keys to which passwords are sealed do not fit",
         [&] { WriteSetting(database, "sealing_public_key", QString(publicKey).replace(0, 4, "AAAA")); },
         [&] { WriteSetting(database, "sealing_public_key", publicKey); }},
        {"certificate that the library keeps", [&] { WriteSetting(database, "tls_certificate", "rubbish"); },
         [&] { WriteSetting(database, "tls_certificate", ""); }},
        {"none of them can sign on",
         [&] { database.Run("UPDATE master_profiles SET security_edit='n' WHERE security_edit='Y'"); },
         [&] { database.Run("UPDATE master_profiles SET security_edit='Y' WHERE security_edit='n'"); }},
        {"refers in operator_row to a row of operators that does not exist",
         [&] {
             database.Run(IsSqlite() ? "PRAGMA foreign_keys=OFF" : "SET session_replication_role=replica");
             database.Run("INSERT INTO sessions (token_hash, operator_row) VALUES ('lost', 987654)");
         },
         [&] {
             database.Run("DELETE FROM sessions WHERE token_hash='lost'");
             database.Run(IsSqlite() ? "PRAGMA foreign_keys=ON" : "SET session_replication_role=origin");
         }},
        {"The data has version 99", [&] { WriteSetting(database, "schema_version", "99"); },
         [&] { WriteSetting(database, "schema_version", version); }},
        {"The table sessions is missing", [&] { database.Run("ALTER TABLE sessions RENAME TO gone"); },
         [&] { database.Run("ALTER TABLE gone RENAME TO sessions"); }},
        {"The column peer of the table sessions is missing",
         [&] { database.Run("ALTER TABLE sessions RENAME COLUMN peer TO gone"); },
         [&] { database.Run("ALTER TABLE sessions RENAME COLUMN gone TO peer"); }},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.words.toStdString());
        one.spoil();
        EXPECT_FALSE(Check());
        EXPECT_TRUE(m_told.filter("FAULT").join('\n').contains(one.words)) << m_told.join('\n').toStdString();
        one.mend();
        EXPECT_TRUE(Check()) << m_told.join('\n').toStdString();
    }
}

#ifdef Q_OS_UNIX

constexpr QFile::Permissions Everybody = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                         QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                         QFile::ExeOther;

TEST(LibraryFolderTest, IsClosedToOthersOrRefused) {
    TestServer server;
    const QString file = server.GetLibrary().GetAddress().file;
    for (const QString& open : {server.Directory(), file, QString(file + "-wal")})
        ASSERT_TRUE(QFile::setPermissions(open, Everybody));
    EXPECT_TRUE(OpenToOthers(file).contains("-wal"));
    server.Restart();
    EXPECT_EQ(OpenToOthers(file), QString());
    EXPECT_EQ(server.StatusOf("LstVenTp"), status::Ok);

    // What else lives in a folder may be meant for others: whoever gave it decides.
    const QTemporaryDir folder;
    QFile other(folder.filePath("readme"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::setPermissions(folder.path(), Everybody));
    LibraryOptions options;
    options.address = StoreAddress::InDirectory(folder.path());
    options.whenMissing = LibraryOptions::WhenMissing::MakeEmpty;
    QString error;
    EXPECT_FALSE(Library::Open(options, &error));
    EXPECT_TRUE(error.contains("chmod 700 " + folder.path())) << error.toStdString();
    EXPECT_TRUE(QFileInfo(folder.path()).permission(QFile::ReadOther));
    EXPECT_FALSE(QFileInfo::exists(options.address.file));
}

// SQLite writes on to a file that has gone: who is told 0 must find the change later.
TEST(LibraryFolderTest, OneThatVanishedIsNoticedBeforeAChangeIsAcknowledged) {
    const QTemporaryDir parent;
    const QString folder = parent.filePath("library");
    const QString away = parent.filePath("away");
    TestServer server({.address = StoreAddress::InDirectory(folder)});
    const auto add = [&](TestClient& client, const QString& code) {
        return client.Send("AddVenTp", {{"Cd", code}, {"Nm", code}}).status;
    };
    ASSERT_EQ(add(server.Client(), "BEFORE"), status::Ok);

    // Moved away: neither the connection that has it open nor a new one goes on.
    const QString token = server.Client().Token();
    ASSERT_TRUE(QDir().rename(folder, away));
    EXPECT_EQ(add(server.Client(), "GONE"), status::CommunicationsFailure);
    const auto next = server.Connect();
    EXPECT_EQ(next->Resume(token, 1), status::TableError);
    EXPECT_FALSE(QFileInfo::exists(folder)) << "no empty library is made in its place";

    // Another folder in its place is not the library.
    ASSERT_TRUE(QDir().mkdir(folder));
    ASSERT_TRUE(QFile::copy(away + "/library.sqlite", folder + "/library.sqlite"));
    EXPECT_EQ(next->Resume(token, 1), status::TableError);

    // Back again the session goes on, and the change that was not acknowledged is there once.
    ASSERT_TRUE(QDir(folder).removeRecursively() && QDir().rename(away, folder));
    EXPECT_EQ(next->Resume(token, 1), status::Ok);
    EXPECT_EQ(add(*next, "GONE"), status::Ok);
    EXPECT_EQ(ValuesOf(next->Send("LstVenTp").fields, "Cd").count("GONE"), 1);

    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_EQ(add(*next, "LOST"), status::CommunicationsFailure);
}

#endif

} // namespace
} // namespace sysadmin::testing
