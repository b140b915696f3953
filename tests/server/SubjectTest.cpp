#include "Engines.h"

#include "server/store/History.h"
#include "server/store/Schema.h"
#include "server/subjects/Registrations.h"
#include "support/TestServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Whole jobs on the subjects of the sample library, on each engine.
class SubjectTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }

    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server->Send(name, fields);
    }
    qint16 StatusOf(const QString& name, const wire::Fields& fields = {}) {
        return Send(name, fields).status;
    }

    std::unique_ptr<TestServer> m_server;
};
INSTANTIATE_ON_ENGINES(SubjectTest);

TEST_P(SubjectTest, ValuesAreKeptLiterally) {
    const QStringList names{"'; DROP TABLE vendor_types; --",  "\" OR 1=1",
                            "back\\slash \\' and \\\\",        "%_*? $1 ? :name",
                            "two\r\nlines\tand a tab",         "Ünïcödé 書籍 العربية 😀",
                            "e\u0301 with a combining accent", QString(40, QChar(0x4e66))};
    for (qsizetype i = 0; i < names.size(); ++i)
        ASSERT_EQ(StatusOf("AddVenTp", {{"Cd", QString("Q%1'").arg(i)}, {"Nm", names[i]}}), status::Ok) << i;
    const wire::Fields list = Send("LstVenTp").fields;
    for (qsizetype i = 0; i < names.size(); ++i)
        EXPECT_EQ(InRecord(list, "Cd", QString("Q%1'").arg(i), "Nm"), names[i]);
    // The same letter in another form is the same name.
    EXPECT_EQ(
        StatusOf("AddVenTp", {{"Cd", "ACC"}, {"Nm", QString(QChar(0xc9)) + " WITH a combining accent"}}),
        status::DuplicateName);
    EXPECT_EQ(StatusOf("DelVenTp", {{"Cd", "Q1'"}}), status::Ok);
}

TEST_P(SubjectTest, TextsComeBackExactlyOrAreRefused) {
    const auto character = [](char32_t code) { return QString::fromUcs4(&code, 1); };
    const QString mark{QChar(QChar::ByteOrderMark)};
    const QString texts[] = {"a" + mark,          "a\u200b b\u00a0", "e\u0301 \u00e9",   "\t tab\r\n line ",
                             character(0xfdd0),   character(0xfffd), character(0x1f511), character(0x1fffe),
                             character(0x10ffff), "a\u0001\u007f",   "?'\"\\%_:1$1"};
    for (const QString& text : texts) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        EXPECT_EQ(StatusOf("AddVenTp", {{"Cd", "ODD"}, {"Nm", text}}), status::Ok);
        EXPECT_EQ(InRecord(Send("LstVenTp").fields, "Cd", "ODD", "Nm"), text);
        EXPECT_EQ(StatusOf("DelVenTp", {{"Cd", "ODD"}}), status::Ok);
    }
    for (const QString& text : {QString("a") + QChar(0), QString(QChar(0)), mark, mark + "BOOK",
                                "BOOK" + character(0xfffe), "BOOK" + character(0xffff)}) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        EXPECT_EQ(StatusOf("AddVenTp", {{"Cd", "ODD"}, {"Nm", text}}), status::ColumnError);
        EXPECT_EQ(StatusOf("AddVenTp", {{"Cd", text}, {"Nm", "Odd"}}), status::ColumnError);
        // It names no record, and nothing breaks of it.
        EXPECT_EQ(StatusOf("UpdVenTp", {{"Cd", "ODD"}, {"Nm", "Odd"}, {"OCd", text}}), status::NotFound);
        EXPECT_EQ(StatusOf("DelVenTp", {{"Cd", text}}), status::NotFound);
        for (const char* get : {"GetOpr", "ExpOpr", "DelOpr", "GetLockoutStatus"})
            EXPECT_EQ(StatusOf(get, {{"OI", text}}), status::NotFound) << get;
        EXPECT_EQ(StatusOf("GetPatGp", {{"ID", text}}), status::NotFound);
    }
}

TEST_P(SubjectTest, TheLogTellsNothingOfStatementsAndData) {
    static QStringList logged;
    logged.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { logged << text; });
    m_server->GetDatabase().Run("ALTER TABLE vendor_types RENAME TO elsewhere");
    const qint16 result = StatusOf("AddVenTp", {{"Cd", "SECRETCODE"}, {"Nm", "Secret name"}});
    qInstallMessageHandler(before);
    EXPECT_EQ(result, status::TableError);
    ASSERT_FALSE(logged.isEmpty());
    const QString text = logged.join('\n');
    EXPECT_TRUE(text.contains("AddVenTp: the database has refused the work ("));
    for (const char* word : {"vendor_types", "elsewhere", "SELECT", "INSERT", "SECRET", "no such"})
        EXPECT_FALSE(text.contains(word, Qt::CaseInsensitive)) << text.toStdString();
}

TEST_P(SubjectTest, HistoryTellsWhoChangedWhat) {
    Database& database = m_server->GetDatabase();
    const auto requests = [&] { return m_server->Value("SELECT COUNT(*) FROM history_requests").toInt(); };
    const auto last = [&] {
        return *database.FirstRow(
            "SELECT h.at, h.operator_id, h.peer, h.request, h.records, r.table_name, r.kind, "
            "r.fields FROM history_requests h JOIN history_records r ON r.request_id=h.id "
            "ORDER BY r.id DESC");
    };
    EXPECT_EQ(requests(), 0);
    Send("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}});
    EXPECT_EQ(last()[7].toString(), R"({"code":[null,"ZINE"],"name":[null,"Zines"]})");
    Send("UpdVenTp", {{"Cd", "ZINE"}, {"Nm", "Zine \"shop\""}, {"OCd", "ZINE"}});
    const QVariantList row = last();
    EXPECT_EQ(TimeFromStore(row[0].toString()), m_server->Now());
    EXPECT_EQ(row.mid(1), (QVariantList{"SYSADMIN", "local", "UpdVenTp", 1, "vendor_types", "changed",
                                        R"({"name":["Zines","Zine \"shop\""]})"}));

    // What is refused or changes nothing leaves no trace.
    const int count = requests();
    Send("UpdVenTp", {{"Cd", "ZINE"}, {"Nm", "Zine \"shop\""}, {"OCd", "ZINE"}});
    Send("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Again"}});
    Send("LstVenTp");
    EXPECT_EQ(requests(), count);
    Send("DelVenTp", {{"Cd", "ZINE"}});
    EXPECT_EQ(last()[7].toString(), R"({"code":["ZINE",null],"name":["Zine \"shop\"",null]})");

    // Rows that go with a record have an entry each, under the record to which they belonged; its number
    // grows with each of them.
    const auto location = m_server->Value("SELECT location_id FROM location_addresses ORDER BY id");
    const RecordName name{"locations", location.toLongLong()};
    EXPECT_EQ(LastChangeOf(database, name), 0);
    const wire::Fields reply = Send("GetLoc", {{"ID", location}}).fields;
    const auto change = [&](const wire::Fields& more) {
        wire::Fields put{{"ID", location}};
        for (const char* tag : {"Cd", "Nm", "Spn", "Dsp", "OPAC", "Lb"})
            put.append({tag, wire::FirstValue(reply, tag)});
        EXPECT_EQ(StatusOf("UpdLoc", put + more), status::Ok);
        return LastChangeOf(database, name);
    };
    const wire::Fields address{
        {"AdrRq", "1"}, {"AdrNm", "Annex"}, {"PhNm", "555"}, {"PhTp", "1"}, {"PhRq", "1"}};
    const qint64 first = change(address);
    EXPECT_GT(first, 0);
    EXPECT_EQ(m_server->Value("SELECT records FROM history_requests WHERE id=?", {first}), "2");
    const QString added = m_server->Value("SELECT MAX(id) FROM location_addresses");
    EXPECT_GT(change({{"AdrRq", "3"}, {"AdrID", added}}), first);
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM history_records WHERE table_name='location_phones' AND "
                              "subject_table='locations' AND subject_id=?",
                              {location.toLongLong()}),
              "2");
}

TEST_P(SubjectTest, TheFormerHistoryIsTakenOver) {
    Database& database = m_server->GetDatabase();
    Table former{.name = "history",
                 .columns = {{.name = "at"},
                             {.name = "operator_id"},
                             {.name = "peer"},
                             {.name = "request"},
                             {.name = "table_name"},
                             {.name = "record_id", .type = ColumnType::Whole},
                             {.name = "changes"}}};
    WriteSetting(database, "schema_version", "1");
    BringToSchema(database, {.tables = {former}});
    const auto write = [&](const QString& request, const QString& table, int id, const QString& changes) {
        database.Run("INSERT INTO history (at, operator_id, request, table_name, record_id, changes) VALUES "
                     "('now', 'CIRC', ?, ?, ?, ?)",
                     {request, table, id, changes});
    };
    write("AddLib", "owning_libraries", 7, R"({"name":[null,"A"],"nuc_code":[null,""]})");
    write("AddLib", "locations", 9, R"({"owning_library_id":[null,"7"]})");
    write("DelMPrf", "master_profile_locations", 4, R"({"location_id":["1",null],"profile_id":["2",null]})");
    m_server->Restart();
    QStringList taken;
    m_server->GetDatabase().Each(
        "SELECT h.request, h.records, r.record_id, r.kind FROM history_requests h JOIN history_records r ON "
        "r.request_id=h.id ORDER BY r.id",
        {}, [&](const ResultRow& row) {
            taken << row.value(0).toString() + row.value(1).toString() + ' ' + row.value(2).toString() +
                         row.value(3).toString();
        });
    EXPECT_EQ(taken, (QStringList{"AddLib2 7added", "AddLib2 9changed", "DelMPrf1 4removed"}));
    EXPECT_FALSE(m_server->GetDatabase().HasTable("history"));
}

TEST_P(SubjectTest, ListsInBatches) {
    auto registry = std::make_shared<Registry>();
    registry->AddTable(Sessions::Declare());
#define FAMILY(name) Register##name(*registry);
#include "server/subjects/Families.inc"
#undef FAMILY
    registry->AddSubject({.table = "notes",
                          .requests = {.list = "LstNote", .add = "AddNote"},
                          .fields = {SubjectField::Text("T", "text", 20).InList()},
                          .listArea = Area::AnyOperator,
                          .batch = 3});
    registry->AddRead("LstLong", Area::AnyOperator, [](Context&, const wire::Fields&) {
        Answer answer;
        for (;;) // it ends where the reply would not fit into a message
            Put(answer.fields, "T", "x");
        return answer;
    });
    m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address(), .registry = registry});
    EXPECT_EQ(StatusOf("LstLong"), status::ReplyTooLong);
    for (int i = 1; i <= 7; ++i)
        ASSERT_EQ(StatusOf("AddNote", {{"T", QString::number(i)}}), status::Ok);

    const wire::Reply first = Send("LstNote");
    EXPECT_EQ(first.status, status::Continues);
    EXPECT_EQ(ValuesOf(first.fields, "T"), (QStringList{"1", "2", "3"}));
    // A batch whose reply was lost comes again, also from another connection after a restart.
    const wire::Reply second = Send("LstNote", {{"55", "Y"}});
    EXPECT_EQ(ValuesOf(second.fields, "T"), (QStringList{"4", "5", "6"}));
    const QString token = m_server->Client().Token();
    const quint64 number = m_server->Client().LastNumber();
    m_server->Restart();
    ASSERT_EQ(m_server->Client().Resume(token, number - 1), status::Ok);
    EXPECT_EQ(Send("LstNote", {{"55", "Y"}}), second);
    const wire::Reply third = Send("LstNote", {{"55", "Y"}});
    EXPECT_EQ(third.status, status::Ok);
    EXPECT_EQ(ValuesOf(third.fields, "T"), QStringList{"7"});
    EXPECT_EQ(ValuesOf(Send("LstNote").fields, "T"), (QStringList{"1", "2", "3"}));
}

TEST_P(SubjectTest, TheSampleLibraryIsWhole) {
    EXPECT_EQ(ValuesOf(Send("LstLoc").fields, "ID").size(), 633);
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM locations WHERE owning_library_id IS NULL"), "0");
    EXPECT_EQ(m_server->Value("SELECT display_name FROM locations WHERE code='ARS-LOCKED'"),
              "Locked stacks: Ask at desk");
    EXPECT_EQ(m_server->Value("SELECT COUNT(DISTINCT code) FROM patron_groups"), "21");
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM circulation_matrix"), "3444");
    EXPECT_EQ(m_server->Value("SELECT code FROM patron_groups WHERE code LIKE 'medical-h%'"),
              "medical-hospital staff");
    EXPECT_GE(m_server->Value("SELECT COUNT(*) FROM vendors WHERE vendor_type_id IS NOT NULL").toInt(), 20);
    // A part that a later version brings is filled in, and the ones that are there are left alone.
    Send("DelVenTp", {{"Cd", "MAP"}});
    m_server->GetDatabase().Run("DELETE FROM base_currency");
    m_server->GetDatabase().Run("DELETE FROM sample_parts WHERE name='base_currency'");
    m_server->Restart();
    EXPECT_EQ(wire::FirstValue(Send("GetBsCur").fields, "CrCd"), "USD");
    EXPECT_FALSE(ValuesOf(Send("LstVenTp").fields, "Cd").contains("MAP"));
    EXPECT_EQ(ValuesOf(Send("LstLoc").fields, "ID").size(), 633);
}

} // namespace
} // namespace sysadmin::testing
