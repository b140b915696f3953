#include "Engines.h"

#include "server/files/Apply.h"
#include "server/files/TableFile.h"
#include "server/store/Schema.h"
#include "support/TestServer.h"
#include "wire/Csv.h"

#include <QFile>

namespace sysadmin::testing {
namespace {

using namespace server;

TEST(CsvTest, FieldsAndLines) {
    const QList<wire::CsvRecord> records =
        wire::ParseCsv("a,\"b, \"\"c\"\"\",\r\n,\"two\r\nlines\"\nx\ry,\n");
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records[0].fields, (QStringList{"a", "b, \"c\"", ""}));
    EXPECT_EQ(records[1].fields, (QStringList{"", "two\r\nlines"}));
    EXPECT_EQ(records[2].fields, (QStringList{"x\ry", ""}));
    EXPECT_EQ(records[2].line, 4);
    EXPECT_TRUE(wire::ParseCsv("").isEmpty());
    for (const wire::CsvRecord& record : records)
        EXPECT_EQ(wire::ParseCsv(wire::CsvLine(record.fields) + "\r\n").first().fields, record.fields);
}

/// The settings as files, on each engine.
class SettingsFilesTest : public EngineTest {
protected:
    using Files = QMap<QString, QByteArray>;

    const Tables& GetTables() const { return m_server->GetLibrary().GetRegistry().GetTables(); }

    void SetUp() override {
        EngineTest::SetUp();
        if (!IsSkipped())
            m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
    }

    Files WriteAll(Database& database) const {
        FileForm form(GetTables());
        LibrarySettings library(database, form);
        Files written;
        for (const QString& table : form.SampleOrder())
            written.insert(table, WriteTableFile(library.Read(table)));
        return written;
    }

    /// The files of an empty store that has taken these in.
    Files ReadAndWrite(const Files& given) const {
        const QTemporaryDir directory;
        Database database(StoreAddress::InDirectory(directory.path()));
        BringToSchema(database, m_server->GetLibrary().GetRegistry().GetSchema());
        RunInTransaction(database, [&] {
            Records records(database, GetTables());
            FileForm form(GetTables());
            LibrarySettings library(database, form);
            QList<FileProblem> problems;
            Comparison comparison;
            for (const QString& table : form.SampleOrder())
                CompareTable(form, library.Read(table), ReadTableFile(form, table, given[table], problems),
                             comparison);
            problems += comparison.problems + Apply(records, form, library, comparison, Unknown::Skip);
            for (const FileProblem& problem : problems)
                ADD_FAILURE() << problem.Sentence().toStdString();
        });
        return WriteAll(database);
    }

    std::unique_ptr<TestServer> m_server;
};
INSTANTIATE_ON_ENGINES(SettingsFilesTest);

TEST_P(SettingsFilesTest, EveryTableHasANaturalKeyAndHeadingsOfItsOwn) {
    for (const Table& table : GetTables()) {
        if (table.content == Content::Record)
            continue;
        EXPECT_TRUE(NaturalKey(table)) << table.name.toStdString();
        QStringList headings;
        for (const Column* column : FileColumns(table))
            headings << FileHeading(*column);
        EXPECT_EQ(headings.removeDuplicates(), 0) << table.name.toStdString();
    }
}

TEST_P(SettingsFilesTest, TheSampleLibraryMakesTheFilesOfWhichItWasMade) {
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

TEST_P(SettingsFilesTest, AnyTextGoesOutAndIn) {
    // Texts of every table are given what files find hard, keys among them.
    Database& database = m_server->GetDatabase();
    Records records(database, GetTables());
    const QString hard = QString::fromUtf8(" ,\"é\r\n\n'x\"\"\t;\xF0\x9F\x93\x9A ");
    for (const Table& table : GetTables()) {
        if (table.content != Content::Settings)
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

} // namespace
} // namespace sysadmin::testing
