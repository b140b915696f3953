#include "Engines.h"

#include "server/files/DifferenceText.h"
#include "server/files/Import.h"
#include "server/files/LibrarySettings.h"
#include "server/files/TableFile.h"
#include "support/TestServer.h"
#include "wire/Csv.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>

namespace sysadmin::testing {
namespace {

using namespace server;
using Kind = Difference::Kind;

/// A sample library, its files, and what becomes of changed ones.
class SettingsImportTest : public EngineTest {
protected:
    using Rows = QList<QStringList>; ///< the headings first

    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
        m_form = std::make_unique<FileForm>(m_server->GetLibrary().GetRegistry().GetTables());
        m_original = Export(m_form->Order());
    }

    QMap<QString, QByteArray> Export(const QStringList& tables) {
        LibrarySettings library(m_server->GetDatabase(), *m_form);
        QMap<QString, QByteArray> files;
        for (const QString& table : tables)
            files.insert(table, WriteTableFile(library.Read(table)));
        return files;
    }
    Rows& Edit(const QString& table) {
        if (!m_edited.contains(table)) {
            m_edited.insert(table, {});
            for (const wire::CsvRecord& record : wire::ParseCsv(QString::fromUtf8(m_original.value(table))))
                m_edited[table] << record.fields;
        }
        return m_edited[table];
    }
    /// The files as they are now: those that were edited.
    QMap<QString, QByteArray> Edited() const {
        QMap<QString, QByteArray> files = m_texts;
        for (auto rows = m_edited.begin(); rows != m_edited.end(); ++rows) {
            QString text;
            for (const QStringList& row : *rows)
                text += wire::CsvLine(row) + "\r\n";
            files.insert(rows.key(), text.toUtf8());
        }
        return files;
    }
    Comparison Take(const QMap<QString, QByteArray>& files, ImportMode mode = ImportMode::Do) {
        Settings settings;
        Comparison result;
        for (const QString& table : m_form->GetTables().keys())
            if (files.contains(table))
                settings.insert(table, ReadTableFile(*m_form, table, files[table], result.problems));
        return result.problems.isEmpty()
                   ? ImportSettings(m_server->GetLibrary(), m_server->GetDatabase(), *m_form, settings, mode)
                   : result;
    }
    Comparison Compared(const QMap<QString, QByteArray>& files) {
        Settings settings;
        QList<FileProblem> problems;
        for (auto file = files.begin(); file != files.end(); ++file)
            settings.insert(file.key(), ReadTableFile(*m_form, file.key(), *file, problems));
        return CompareWith(m_server->GetDatabase(), *m_form, settings);
    }
    int Entries() { return m_server->Value("SELECT COUNT(*) FROM history_requests").toInt(); }
    /// The tables of the files that were edited, with their parts.
    QStringList Concerned() const {
        QStringList tables;
        for (const QString& table : Edited().keys())
            for (const QString& part : m_form->WithParts(table))
                if (!tables.contains(part))
                    tables << part;
        return tables;
    }
    /// Whether the library is what it was, as far as these tables go; the order in which records were added
    /// apart.
    bool IsAsItWas(const QStringList& tables) {
        const QMap<QString, QByteArray> files = Export(tables);
        return std::all_of(tables.begin(), tables.end(), [&](const QString& table) {
            QList<QByteArray> one = files[table].split('\n');
            QList<QByteArray> other = m_original[table].split('\n');
            if (m_form->Named(table).ordered) {
                std::sort(one.begin(), one.end());
                std::sort(other.begin(), other.end());
            }
            return one == other;
        });
    }
    /// Makes the library what it was.
    void Undo() {
        QMap<QString, QByteArray> files;
        const QStringList tables = Concerned();
        for (const QString& table : tables)
            files.insert(table, m_original[table]);
        m_edited.clear();
        m_texts.clear();
        for (const FileProblem& problem : Take(files).problems)
            ADD_FAILURE() << problem.Sentence().toStdString();
        EXPECT_TRUE(IsAsItWas(tables));
    }
    /// Whether there is time for the table: on the slower engine a part of them has to do.
    bool IsTried(const QString& table) const {
        return GetParam() == StoreAddress::Engine::Sqlite || m_form->Order().indexOf(table) % 5 == 0;
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FileForm> m_form;
    QMap<QString, QByteArray> m_original;
    QMap<QString, Rows> m_edited;
    QMap<QString, QByteArray> m_texts; ///< whole files
};
INSTANTIATE_ON_ENGINES(SettingsImportTest);

/// One case of settings-files.txt.
struct Case {
    QString title;
    QList<QStringList> edits;
    QStringList does;
    QStringList refused;
};

QList<Case> ReadCases() {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/server/settings-files.txt");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<Case> cases;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        const QString word = line.section(' ', 0, 0);
        const QString rest = line.section(' ', 1);
        if (line.isEmpty() || word == u"#" || line.startsWith('#'))
            continue;
        if (word == u"case")
            cases.append({.title = rest, .edits = {}, .does = {}, .refused = {}});
        else if (word == u"does")
            cases.last().does << rest;
        else if (word == u"refused")
            cases.last().refused << rest;
        else
            cases.last().edits << QProcess::splitCommand(line);
    }
    return cases;
}

/// Whether told lines are those that are expected: "*" stands for anything in a line, "..." for any lines.
bool Fits(const QStringList& told, const QStringList& expected) {
    if (expected.isEmpty())
        return told.isEmpty();
    if (expected.first() == u"...") {
        for (qsizetype skipped = 0; skipped <= told.size(); ++skipped)
            if (Fits(told.mid(skipped), expected.mid(1)))
                return true;
        return false;
    }
    const QStringList parts = expected.first().split('*');
    QString pattern;
    for (const QString& part : parts)
        pattern += (pattern.isEmpty() ? "" : ".*") + QRegularExpression::escape(part);
    return !told.isEmpty() && QRegularExpression("^" + pattern + "\\z").match(told.first()).hasMatch() &&
           Fits(told.mid(1), expected.mid(1));
}

QStringList Told(const QList<FileProblem>& problems) {
    QStringList told;
    for (const FileProblem& problem : problems)
        told << problem.Sentence();
    return told;
}

TEST_P(SettingsImportTest, EachCaseDoesWhatItSays) {
    for (const Case& one : ReadCases()) {
        SCOPED_TRACE(one.title.toStdString());
        for (const QStringList& edit : one.edits) {
            ASSERT_TRUE(edit.size() >= 3 && m_original.contains(edit[1])) << edit.join(' ').toStdString();
            if (edit[0] == u"text") {
                m_texts.insert(edit[1], QString(edit[2]).replace("\\n", "\n").toUtf8());
                continue;
            }
            Rows& rows = Edit(edit[1]);
            const QStringList key = edit[2].split('|');
            const auto isIt = [&](const QStringList& row) {
                for (qsizetype i = 0; i < key.size(); ++i)
                    if (key[i] != u"*" && row[i] != key[i])
                        return false;
                return true;
            };
            const auto put = [&](QStringList& row, const QString& change) {
                const qsizetype column = rows.first().indexOf(change.section('=', 0, 0));
                ASSERT_GE(column, 0) << change.toStdString();
                row[column] = change.section('=', 1);
            };
            if (edit[0] == u"add") {
                rows << QStringList(rows.first().size(), QString());
                for (const QString& change : edit.mid(2))
                    put(rows.last(), change);
            } else if (edit[0] == u"each") {
                const qsizetype column = rows.first().indexOf(edit[2]);
                for (QStringList& row : rows)
                    row.replace(column, row[column] == edit[3] ? edit[4] : row[column]);
            } else if (edit[0] == u"drop") {
                EXPECT_GT(rows.removeIf(isIt), 0) << edit.join(' ').toStdString();
            } else {
                const auto row = std::find_if(rows.begin(), rows.end(), isIt);
                ASSERT_TRUE(row != rows.end()) << edit.join(' ').toStdString();
                for (const QString& change : edit.mid(3))
                    put(*row, change);
            }
        }
        const QMap<QString, QByteArray> files = Edited();
        const int before = Entries();
        const Comparison tried = Take(files, ImportMode::Try);
        EXPECT_EQ(Entries(), before);
        const Comparison done = Take(files);
        EXPECT_EQ(Told(done.problems), Told(tried.problems));
        EXPECT_TRUE(Fits(Told(done.problems), one.refused)) << Told(done.problems).join('\n').toStdString();
        if (!one.refused.isEmpty()) {
            EXPECT_EQ(Entries(), before);
        } else {
            QStringList told;
            for (const Difference& difference : done.differences)
                told << LinesOf(difference);
            EXPECT_TRUE(Fits(told, one.does)) << told.join('\n').toStdString();
            EXPECT_EQ(Entries(), before + 1);
            for (const Difference& left : Compared(files).differences)
                ADD_FAILURE() << "still " << LinesOf(left).join('\n').toStdString();
        }
        if (one.refused.isEmpty())
            Undo();
        else
            EXPECT_TRUE(IsAsItWas(Concerned()));
        m_edited.clear();
        m_texts.clear();
    }
    EXPECT_TRUE(IsAsItWas(m_form->Order()));
}

/// Whether a problem stands against an import because of what is in the library, with a file to look at.
bool IsTold(const QList<FileProblem>& problems, const FileForm& form) {
    return !problems.isEmpty() && std::all_of(problems.begin(), problems.end(), [&](const FileProblem& one) {
        return form.Order().contains(one.table) && !one.text.isEmpty();
    });
}

/// A value that the column may well take in place of another one.
QString AnotherValue(const Column& column, const QString& value, const QStringList& present,
                     QRandomGenerator& random) {
    const CellRule& rule = column.rule;
    if (column.type == ColumnType::Flag)
        return value == u"Y" ? "N" : "Y";
    if (column.type == ColumnType::Whole && rule.isSet && !rule.check)
        return QString::number(
            random.bounded(qMax(rule.least, qint64(0)), qMin(rule.most, qint64(1000)) + 1));
    if (column.type == ColumnType::Text && !rule.check && !rule.isDecimal) {
        const QString text = QString::fromUtf8("Ä, \"%1\"").arg(random.bounded(1000));
        return rule.limit > 0 ? text.left(rule.limit) : text;
    }
    return present[random.bounded(present.size())]; // what another record has
}

TEST_P(SettingsImportTest, ARandomChangeIsToldAndMade) {
    QRandomGenerator random(20261122);
    int made = 0;
    int refused = 0;
    for (const QString& table : m_form->Order()) {
        const SettingsTable settings = LibrarySettings(m_server->GetDatabase(), *m_form).Read(table);
        const qsizetype keys = NaturalKey(m_form->Named(table)).value_or(QStringList()).size();
        if (settings.records.isEmpty() || keys >= settings.columns.size() || !IsTried(table))
            continue;
        SCOPED_TRACE(table.toStdString());
        const qsizetype place = random.bounded(settings.records.size());
        const qsizetype column = keys + random.bounded(settings.columns.size() - keys);
        QStringList present;
        for (const SettingsRecord& record : settings.records)
            present << record.cells[column];
        const QString before = present[place];
        const QString after = AnotherValue(*settings.columns[column], before, present, random);
        Edit(table)[place + 1][column] = after;
        const Comparison compared = Compared(Edited());
        const QList<Difference> differences = compared.differences;
        ASSERT_EQ(differences.size(), before == after ? 0 : 1);
        if (before != after) {
            EXPECT_EQ(differences[0].key, settings.records[place].key);
            ASSERT_EQ(differences[0].cells.size(), 1);
            EXPECT_EQ(differences[0].cells[0].before, before);
            EXPECT_EQ(differences[0].cells[0].after, after);
            const int entries = Entries();
            const QMap<QString, QByteArray> wanted = Edited();
            const Comparison done = Take(wanted);
            const bool isMade = done.problems.isEmpty();
            ++(isMade ? made : refused);
            EXPECT_TRUE(isMade || IsTold(done.problems, *m_form));
            EXPECT_EQ(Entries(), entries + (isMade ? 1 : 0));
            EXPECT_TRUE(Export({table}).value(table) == (isMade ? wanted[table] : m_original[table]));
            if (isMade)
                Undo();
        }
        m_edited.clear();
    }
    EXPECT_TRUE(IsAsItWas(m_form->Order()));
    EXPECT_GT(made, 3 * refused) << made << " made, " << refused << " refused";
}

TEST_P(SettingsImportTest, ARemovedRecordGoesUnlessSomethingKeepsIt) {
    QRandomGenerator random(20261123);
    int made = 0;
    int refused = 0;
    QList<FileProblem> problems;
    Settings whole;
    for (const QString& table : m_form->Order())
        whole.insert(table, ReadTableFile(*m_form, table, m_original[table], problems));
    const auto import = [&](const Settings& settings) {
        return ImportSettings(m_server->GetLibrary(), m_server->GetDatabase(), *m_form, settings,
                              ImportMode::Do);
    };
    for (const QString& table : m_form->Order()) {
        if (whole[table].records.isEmpty() || !IsTried(table) || random.bounded(3) > 0)
            continue; // each takes the whole library
        SCOPED_TRACE(table.toStdString());
        Edit(table).removeAt(1 + random.bounded(whole[table].records.size()));
        const QByteArray wanted = Edited().value(table);
        m_edited.clear();
        Settings settings = whole;
        settings[table] = ReadTableFile(*m_form, table, wanted, problems);
        const Comparison done = import(settings);
        EXPECT_EQ(done.Count(Kind::Removed), 1);
        EXPECT_EQ(done.Count(Kind::Added), 0);
        const bool isMade = done.problems.isEmpty();
        ++(isMade ? made : refused);
        EXPECT_TRUE(isMade || IsTold(done.problems, *m_form));
        EXPECT_TRUE(Export({table}).value(table) == (isMade ? wanted : m_original[table]));
        if (!isMade)
            continue;
        const Comparison back = import(whole);
        EXPECT_TRUE(back.problems.isEmpty() && back.Count(Kind::Added) == 1);
    }
    EXPECT_TRUE(IsAsItWas(m_form->Order()));
    EXPECT_TRUE(made > 3 && refused > 3) << made << " made, " << refused << " refused";
}

TEST_P(SettingsImportTest, ClientsOfTheSameLibraryAreToldAndSecretsStay) {
    // A client has read a record that an import changes beside it; it also knows its password and the stored
    // one.
    const auto other = m_server->Connect();
    ASSERT_EQ(other->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), wire::status::Ok);
    const QString id = m_server->Value("SELECT id FROM locations WHERE code='ART-STACKS'");
    ASSERT_EQ(other->Send("GetLoc", {{"ID", id}}).status, wire::status::Ok);
    const QString secrets = "SELECT (SELECT password_hash FROM operators WHERE operator_id='SYSADMIN') || "
                            "(SELECT password FROM search_databases WHERE code='PARTNER')";
    const QString kept = m_server->Value(secrets);
    ASSERT_GT(kept.size(), 40);
    const auto rename = [&](const QString& table, const QString& code, int column, const QString& to) {
        for (QStringList& row : Edit(table))
            if (row.first() == code)
                row[column] = to;
    };
    rename("locations", "ART-STACKS", 2, "Art Shelves");
    rename("operators", "SYSADMIN", 1, "Renamed");
    rename("search_databases", "PARTNER", 1, "Neighbour");
    Edit("operators") << QStringList{"NEWBIE", "New", "", "", "N", "N"};
    const Comparison done = Take(Edited());
    ASSERT_TRUE(done.problems.isEmpty());
    EXPECT_EQ(MissingSecrets(*m_form, done),
              QStringList{"New operators cannot sign on until an administrator gives them a password: "
                          "\"NEWBIE\"."});
    EXPECT_EQ(m_server->Value(secrets), kept);
    EXPECT_EQ(m_server->Connect()->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), wire::status::Ok);
    for (const char* password : {"", "NEWBIE", "sample-admin-1"})
        EXPECT_NE(m_server->Connect()->SignOn("NEWBIE", password), wire::status::Ok);
    EXPECT_EQ(m_server->Value("SELECT request || ' ' || operator_id || ' ' || records FROM history_requests "
                              "ORDER BY id DESC"),
              "Import IMPORT 4");
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM history_records WHERE fields LIKE '%password_hash%'"),
              "0");
    const auto saved = other->Send("UpdLoc", {{"ID", id}, {"Cd", "ART-STACKS"}, {"Nm", "Mine"}});
    EXPECT_EQ(saved.status, 131) << "the client has not seen what the import made of it";
    EXPECT_EQ(m_server->Value("SELECT name FROM locations WHERE code='ART-STACKS'"), "Art Shelves");
}

} // namespace
} // namespace sysadmin::testing
