#include "Engines.h"

#include "server/store/Csv.h"
#include "server/store/Schema.h"
#include "server/store/TableFiles.h"
#include "support/TestServer.h"

#include <QFile>

namespace sysadmin::testing {
namespace {

using namespace server;

TEST(CsvTest, FieldsAndLines) {
    const QList<CsvRecord> records = ParseCsv("a,\"b, \"\"c\"\"\",\r\n,\"two\r\nlines\"\nx\ry,\n");
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records[0].fields, (QStringList{"a", "b, \"c\"", ""}));
    EXPECT_EQ(records[1].fields, (QStringList{"", "two\r\nlines"}));
    EXPECT_EQ(records[2].fields, (QStringList{"x\ry", ""}));
    EXPECT_EQ(records[2].line, 4);
    EXPECT_TRUE(ParseCsv("").isEmpty());
    for (const CsvRecord& record : records)
        EXPECT_EQ(ParseCsv(CsvLine(record.fields) + "\r\n").first().fields, record.fields);
}

/// The settings as files, on each engine.
class TableFilesTest : public EngineTest {
protected:
    using Files = QMap<QString, QByteArray>;

    const Tables& GetTables() const { return m_server->GetLibrary().GetRegistry().GetTables(); }

    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }

    Files WriteAll(Database& database) const {
        Records records(database, GetTables());
        TableFiles files(records, GetTables());
        Files written;
        for (const QString& table : files.Names())
            written.insert(table, files.Write(table));
        return written;
    }

    /// The files of an empty library that has read these.
    Files ReadAndWrite(const Files& given) const {
        const QTemporaryDir directory;
        Database database(StoreAddress::InDirectory(directory.path()));
        BringToSchema(database, m_server->GetLibrary().GetRegistry().GetSchema());
        RunInTransaction(database, [&] {
            Records records(database, GetTables());
            TableFiles files(records, GetTables());
            for (const QString& table : files.Names())
                EXPECT_EQ(files.Read(table, given[table]), "");
        });
        return WriteAll(database);
    }

    std::unique_ptr<TestServer> m_server;
};
INSTANTIATE_ON_ENGINES(TableFilesTest);

TEST_P(TableFilesTest, EveryTableHasANaturalKeyAndHeadingsOfItsOwn) {
    for (const Table& table : GetTables()) {
        if (table.content != Content::Settings)
            continue;
        EXPECT_TRUE(NaturalKey(table)) << table.name.toStdString();
        QStringList headings;
        for (const Column* column : FileColumns(table))
            headings << FileHeading(*column);
        EXPECT_EQ(headings.removeDuplicates(), 0) << table.name.toStdString();
    }
}

TEST_P(TableFilesTest, TheSampleLibraryMakesTheFilesOfWhichItWasMade) {
    const Files written = WriteAll(m_server->GetDatabase());
    if (const QString to = qEnvironmentVariable("SYSADMIN_WRITE_SAMPLE"); !to.isEmpty())
        for (auto file = written.begin(); file != written.end(); ++file) {
            QFile out(to + '/' + file.key() + ".csv");
            if (file->count('\n') > 1 && out.open(QIODevice::WriteOnly))
                out.write(*file);
        }
    for (auto file = written.begin(); file != written.end(); ++file) {
        QFile carried(":/sample-library/" + file.key() + ".csv");
        if (carried.open(QIODevice::ReadOnly))
            EXPECT_EQ(*file, carried.readAll()) << file.key().toStdString();
        else
            EXPECT_EQ(file->count('\n'), 1) << file.key().toStdString() << " has records and no file";
    }
    EXPECT_EQ(ReadAndWrite(written), written);
}

TEST_P(TableFilesTest, AnyTextGoesOutAndIn) {
    // Texts of every table are given what files find hard, keys among them.
    Database& database = m_server->GetDatabase();
    Records records(database, GetTables());
    const QString hard = QString::fromUtf8(" ,\"é\r\n\n'x\"\"\t;\xF0\x9F\x93\x9A ");
    for (const Table& table : GetTables()) {
        if (table.content != Content::Settings || table.name == u"usage")
            continue;
        const auto ids = database.FirstColumn("SELECT id FROM " + table.name + " ORDER BY id LIMIT 3", {});
        for (const QVariant& id : ids)
            for (const Column& column : table.columns)
                if (column.type == ColumnType::Text && !column.secret && !column.bookkeeping)
                    records.Update(table.name, id.toLongLong(), {{column.name, id.toString() + hard}});
    }
    const Files written = WriteAll(database);
    EXPECT_EQ(ReadAndWrite(written), written);
}

TEST_P(TableFilesTest, WhatIsWrongIsToldWithFileAndLine) {
    Records records(m_server->GetDatabase(), GetTables());
    TableFiles files(records, GetTables());
    const auto read = [&](const QString& table, const QByteArray& file) { return files.Read(table, file); };
    EXPECT_EQ(read("vendors", ""), "vendors.csv, line 1: There are no headings.");
    EXPECT_EQ(read("vendors", "code,nme\r\n"),
              "vendors.csv, line 1: The heading \"nme\" means nothing here.");
    EXPECT_EQ(read("vendors", "name\r\n"), "vendors.csv, line 1: The heading \"code\" is missing.");
    EXPECT_EQ(read("vendors", "code,name\r\nA,\"B\r\nC\"\r\nD\r\n"),
              "vendors.csv, line 4: There are 1 fields in place of 2.");
    EXPECT_EQ(read("vendors", "code,vendor_type\nA,BOOK\nB,NONE\n"),
              "vendors.csv, line 3: There is no record \"NONE\" of the table vendor_types.");
    EXPECT_EQ(read("po_types", "name,blanket\nA,y\n"), "po_types.csv, line 2: blanket is neither Y nor N.");
    EXPECT_EQ(read("fund_types", "name,undercommit_percent\nA,many\n"),
              "fund_types.csv, line 2: undercommit_percent is no number.");
    // What is there is changed, whatever the case of its key, and columns that are not named stay.
    EXPECT_EQ(read("vendors", "name,code\nHarbour Books,harbour\n"), "");
    EXPECT_EQ(m_server->Value("SELECT v.name || t.code FROM vendors v JOIN vendor_types t ON "
                              "t.id=v.vendor_type_id WHERE v.code_folded='harbour'"),
              "Harbour BooksBOOK");
}

} // namespace
} // namespace sysadmin::testing
