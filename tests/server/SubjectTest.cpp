#include "Engines.h"

#include "server/SubjectReads.h"
#include "server/store/History.h"
#include "server/store/Schema.h"
#include "server/subjects/Registrations.h"
#include "support/TestServer.h"
#include "wire/ReceivedFields.h"

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

TEST_P(SubjectTest, TextsComeBackExactlyOrAreRefused) {
    const auto character = [](char32_t code) { return QString::fromUcs4(&code, 1); };
    const QString mark{QChar(QChar::ByteOrderMark)};
    const QString texts[] = {"a" + mark,
                             "a\u200b b\u00a0",
                             "e\u0301 \u00e9",
                             "\t tab\r\n line ",
                             character(0xfdd0),
                             character(0xfffd),
                             character(0x1f511),
                             character(0x1fffe),
                             character(0x10ffff),
                             "a\u0001\u007f",
                             "?'\"\\%_:1$1",
                             "'; DROP TABLE vendor_types; --",
                             QString(40, QChar(0x4e66)),
                             QString(39, 'x') + "\r\n"}; // a line break is one character
    for (const QString& text : texts) {
        SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
        EXPECT_EQ(StatusOf("AddVenTp", {{"Cd", "ODD"}, {"Nm", text}}), status::Ok);
        EXPECT_EQ(InRecord(Send("LstVenTp").fields, "Cd", "ODD", "Nm"), text);
        EXPECT_EQ(StatusOf("DelVenTp", {{"Cd", "ODD"}}), status::Ok);
    }
    for (const QString& text :
         {QString("a") + QChar(0), QString(QChar(0)), mark, mark + "BOOK", "BOOK" + character(0xfffe),
          "BOOK" + character(0xffff), QString(40, 'x') + "\r\n"}) {
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

// What goes out as the engine's own bytes is what its values are as texts.
TEST_P(SubjectTest, EveryListIsWhatItsTableHolds) {
    Database& database = m_server->GetDatabase();
    const Registry& registry = m_server->GetLibrary().GetRegistry();
    const QString odd = QString::fromUtf8("\xc3\xa4\"\\ \xe6\x9b\xb8\xf0\x9f\x98\x80");
    int lists = 0;
    for (const Table& table : registry.GetTables()) {
        const Subject* subject = registry.SubjectOf(table.name);
        if (!subject || subject->requests.list.isEmpty())
            continue;
        SCOPED_TRACE(subject->requests.list.toStdString());
        const auto set = [&](const SubjectField& field, const QVariant& value, const QString& which) {
            database.Run(QString("UPDATE %1 SET %2=? WHERE id=(SELECT %3(id) FROM %1)")
                             .arg(table.name, field.column, which),
                         {value});
        };
        for (const SubjectField& field : subject->fields)
            if (field.kind == SubjectField::Kind::Text) {
                set(field, odd, "MIN");
                set(field, "", "MAX");
            } else if (field.kind == SubjectField::Kind::Whole ||
                       field.kind == SubjectField::Kind::Reference) {
                set(field, {}, "MAX");
            }
        const Shape shape = MakeShape(*subject, true);
        QString order;
        if (subject->batch == 0)
            for (const QString& column : subject->order)
                order += "t." + column + ", ";
        wire::EncodedFields listed;
        database.Each(shape.select + " ORDER BY " + order + "t.id", {}, [&](const ResultRow& row) {
            for (qsizetype i = 0; i < shape.tags.size(); ++i)
                listed.Append(shape.tags[i], row.value(int(i) + 1).toString().toUtf8());
        });
        const wire::Fields expected = wire::ReceivedFields(listed).All();
        wire::Fields answered;
        wire::Reply reply;
        do {
            const bool goesOn = reply.status == status::Continues;
            reply = Send(subject->requests.list, goesOn ? wire::Fields{{"55", "Y"}} : wire::Fields());
            answered += reply.fields;
        } while (reply.status == status::Continues);
        EXPECT_EQ(reply.status, status::Ok);
        EXPECT_TRUE(answered.first(qMin(answered.size(), expected.size())) == expected);
        const bool isAll = subject->alsoListed.isEmpty() && !subject->addToList;
        EXPECT_TRUE(!isAll || answered.size() == expected.size());
        ++lists;
    }
    EXPECT_GT(lists, 20);
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

} // namespace
} // namespace sysadmin::testing
