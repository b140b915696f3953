#include "server/HistoryKeeper.h"

#include "Engines.h"

#include "server/Context.h"
#include "server/HistoryFile.h"
#include "server/Registry.h"
#include "server/subjects/Registrations.h"
#include "support/TestServer.h"
#include "wire/Csv.h"

#include <QFile>

#include <atomic>
#include <thread>

namespace sysadmin::testing {
namespace {

using namespace server;

class HistoryKeeperTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }
    void NextDay() {
        m_server->Advance(24 * 3600);
        m_server->SignOnAs("SYSADMIN");
    }
    /// Gives the vendor type another name, a day after the last change.
    void Rename(const QString& name, const QString& code = "KPT") {
        NextDay();
        ASSERT_EQ(m_server->StatusOf("UpdVenTp", {{"Cd", code}, {"Nm", name}, {"OCd", code}}), status::Ok);
    }
    void AddType(const QString& code) {
        ASSERT_EQ(m_server->StatusOf("AddVenTp", {{"Cd", code}, {"Nm", code + " 0"}}), status::Ok);
    }
    wire::Fields History(const QString& code) {
        return m_server->Send("LstHst", {{"Sbj", "VenTp"}, {"ID", code}}).fields;
    }
    wire::Reply AsOf(const QString& number, const QString& row) {
        return m_server->Send("LstVenTp", {{"AsOf", number}, {"AsSbj", "VenTp"}, {"AsRow", row}});
    }
    void Keep(int days) {
        while (RemoveSomeHistory(m_server->GetDatabase(), m_server->Now().addDays(-days))) {
        }
    }

    std::unique_ptr<TestServer> m_server;
};

// What is kept stays what it was; what is not is told as such, and never as an empty or a later record.
TEST_P(HistoryKeeperTest, WhatIsOlderIsToldAsNotKept) {
    AddType("KPT");
    for (int day = 1; day <= 10; ++day)
        Rename(QString("KPT %1").arg(day));
    const wire::Fields whole = History("KPT");
    const QStringList numbers = ValuesOf(whole, "HN");
    const QString row = ValuesOf(whole, "HRow").value(0);
    ASSERT_EQ(numbers.size(), 11);
    EXPECT_EQ(ValuesOf(whole, "Kept"), QStringList());
    Keep(4);
    const wire::Fields kept = History("KPT");
    EXPECT_EQ(ValuesOf(kept, "HN"), numbers.first(5));
    EXPECT_EQ(ValuesOf(kept, "Kept"), QStringList{ShownTime(StoredTime(m_server->Now().addDays(-4)))});
    for (int back = 0; back <= 10;
         ++back) { // the state after each change, and before the oldest that is kept
        const wire::Reply reply = AsOf(numbers[back], row);
        ASSERT_EQ(reply.status, back <= 5 ? status::Ok : status::HistoryRemoved) << back;
        if (back <= 5)
            EXPECT_EQ(InRecord(reply.fields, "Cd", "KPT", "Nm"), QString("KPT %1").arg(10 - back));
        else
            EXPECT_TRUE(reply.fields.isEmpty());
    }
    const auto list = [&](const QString& from) {
        const wire::Reply all = m_server->Send("LstChg", {{"Sbj", "VenTp"}, {"From", from}});
        EXPECT_EQ(all.status, status::Ok);
        return ValuesOf(all.fields, "Kept").size();
    };
    EXPECT_EQ(list(""), 1);
    EXPECT_EQ(list(m_server->Now().addDays(-9).toString("yyyy-MM-dd")), 1);
    EXPECT_EQ(list(m_server->Now().addDays(-2).toString("yyyy-MM-dd")), 0);
    // A record that was added since is known from its beginning.
    NextDay();
    AddType("NEW");
    EXPECT_EQ(ValuesOf(History("NEW"), "Kept"), QStringList());
    // Of one that nobody has changed since, nothing is left, and that is told.
    Keep(0);
    EXPECT_EQ(ValuesOf(History("KPT"), "HN"), QStringList());
    EXPECT_EQ(ValuesOf(History("KPT"), "Kept").size(), 1);
    // Changes go on being counted where they were: nobody is taken to have seen what he has not.
    const qint64 last = m_server->Value("SELECT MAX(id) FROM history_requests").toLongLong();
    Keep(0);
    Rename("Later");
    EXPECT_GT(m_server->Value("SELECT MAX(id) FROM history_requests").toLongLong(), last);
    EXPECT_EQ(ValuesOf(History("KPT"), "HN").size(), 1);
}

TEST_P(HistoryKeeperTest, ALargeRequestGoesInPiecesAndOldestFirst) {
    Database& database = m_server->GetDatabase();
    const QString at = StoredTime(m_server->Now().addDays(-90));
    QList<qint64> requests;
    for (const int records : {3, 499, 500, 501, 1700}) {
        requests << database.RunInsert(
            "INSERT INTO history_requests (at, operator_id, peer, request, records) VALUES "
            "(?, ?, ?, ?, ?)",
            {at, "ANNA", "local", "Test", records});
        database.InsertMany(
            "history_records",
            {"request_id", "table_name", "record_id", "subject_table", "subject_id", "kind", "fields"},
            records, [&](qsizetype record, QVariantList& values) {
                values << requests.last() << "item_types" << record << "item_types" << record << "changed"
                       << "{}";
            });
    }
    AddType("KPT");
    Rename("Newest");
    const qint64 newest = m_server->Value("SELECT MAX(id) FROM history_requests").toLongLong();
    const QDateTime before = m_server->Now().addDays(-30);
    qint64 left = m_server->Value("SELECT COUNT(*) FROM history_records").toLongLong();
    for (bool isMore = true; isMore;) {
        isMore = RemoveSomeHistory(database, before);
        const qint64 now = m_server->Value("SELECT COUNT(*) FROM history_records").toLongLong();
        EXPECT_LE(left - now, 500) << "whoever saves waits for no more than that";
        left = now;
        // Whatever is gone, all before it is gone, and is said to be.
        const qint64 removed = ReadHistoryBegin(database).value_or(HistoryBegin()).removed;
        EXPECT_EQ(
            m_server->Value("SELECT COUNT(*) FROM history_requests WHERE id<" + QString::number(removed)),
            "0");
    }
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM history_records r LEFT JOIN history_requests h ON "
                              "h.id=r.request_id WHERE h.id IS NULL OR h.id<=" +
                              QString::number(requests.last())),
              "0");
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM history_requests WHERE id=" + QString::number(newest)),
              "1");
}

// Everybody saves while entries go, and each save is there with its history.
TEST_P(HistoryKeeperTest, SaversAreNotHeldUp) {
    Database& database = m_server->GetDatabase();
    const QString at = StoredTime(m_server->Now().addDays(-90));
    for (int request = 0; request < 300; ++request)
        database.RunInsert(
            "INSERT INTO history_requests (at, operator_id, peer, request) VALUES (?, ?, ?, ?)",
            {at, "ANNA", "local", "Test"});
    AddType("KPT");
    std::atomic<int> saved = 0;
    {
        const std::shared_ptr<const Library> library(std::shared_ptr<void>(), &m_server->GetLibrary());
        HistoryKeeper keeper(library, 30);
        for (int save = 0; save < 40; ++save, ++saved)
            ASSERT_EQ(m_server->StatusOf(
                          "UpdVenTp", {{"Cd", "KPT"}, {"Nm", QString("Save %1").arg(save)}, {"OCd", "KPT"}}),
                      status::Ok);
        while (m_server->Value("SELECT COUNT(*) FROM history_requests WHERE request='Test'") != "0")
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(ValuesOf(History("KPT"), "HN").size(), 41);
    EXPECT_EQ(m_server->Value("SELECT name FROM vendor_types WHERE code='KPT'"), "Save 39");
}

TEST_P(HistoryKeeperTest, TheFileTellsEachFieldAndNoPassword) {
    AddType("KPT");
    Rename("A \"quoted\", name\r\nof two lines");
    m_server->Send("DelVenTp", {{"Cd", "KPT"}});
    const QString secret = "hunter-2-hunter";
    Database& database = m_server->GetDatabase();
    const Tables& tables = m_server->GetLibrary().GetRegistry().GetTables();
    // Secret columns are left out, whatever an older version may have noted.
    for (const Table& table : tables)
        for (const Column& column : table.columns)
            if (column.secret)
                database.Run("INSERT INTO history_records (request_id, table_name, record_id, subject_table, "
                             "subject_id, kind, fields) SELECT MAX(id), ?, 1, ?, 1, 'changed', ? FROM "
                             "history_requests",
                             {table.name, table.name,
                              "{\"" + column.name + "\":[\"" + secret + "\",\"" + secret + "\"]}"});
    const QString fileName = m_server->Directory() + "/history.csv";
    qint64 records = 0;
    ASSERT_EQ(WriteHistoryFile(database, tables, fileName, &records), QString());
    EXPECT_EQ(QString::number(records), m_server->Value("SELECT COUNT(*) FROM history_records"));
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    EXPECT_FALSE(bytes.contains(secret.toUtf8()));
    EXPECT_FALSE(bytes.contains("password_hash"));
    QStringList told;
    for (const wire::CsvRecord& record : wire::ParseCsv(QString::fromUtf8(bytes.mid(3)))) {
        ASSERT_EQ(record.fields.size(), 11);
        if (record.fields[5] == u"vendor types")
            told << record.fields.mid(4).join('|');
    }
    EXPECT_EQ(told, (QStringList{
                        "DelVenTp|vendor types|A \"quoted\", name\r\nof two lines|Deleted|code|KPT|",
                        "DelVenTp|vendor types|A \"quoted\", name\r\nof two lines|Deleted|name|A \"quoted\", "
                        "name\r\nof two lines|",
                        "UpdVenTp|vendor types|A \"quoted\", name\r\nof two lines|Changed|name|KPT 0|A "
                        "\"quoted\", name\r\nof two lines",
                        "AddVenTp|vendor types|A \"quoted\", name\r\nof two lines|Created|code||KPT",
                        "AddVenTp|vendor types|A \"quoted\", name\r\nof two lines|Created|name||KPT 0"}));
    EXPECT_TRUE(
        WriteHistoryFile(database, tables, "/no/such/folder/x.csv", &records).startsWith("The file "));
}

INSTANTIATE_ON_ENGINES(HistoryKeeperTest);

} // namespace
} // namespace sysadmin::testing
