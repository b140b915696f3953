#include "server/SampleLibrary.h"

#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/files/Apply.h"
#include "server/files/TableFile.h"
#include "server/store/Database.h"
#include "server/store/Schema.h"
#include "server/subjects/SearchIndexes.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>

// Outside of any namespace, as resources of static libraries want it.
static void InitSampleLibrary() {
    Q_INIT_RESOURCE(sysadmin_server_sample_library);
    Q_INIT_RESOURCE(sysadmin_server_partner_library);
}

namespace sysadmin::server {

namespace {

/// The folder of the files that make this library.
QString Folder(Database& database) {
    InitSampleLibrary();
    return ReadSetting(database, "sample_kind") == u"partner" ? ":/partner-library" : ":/sample-library";
}

QStringList CarriedTables(Database& database) {
    QStringList tables;
    for (const QString& file : QDir(Folder(database)).entryList({"*.csv"}))
        tables << file.chopped(4);
    return tables;
}

QSet<QString> FilledTables(Database& database) {
    QSet<QString> tables;
    for (const QVariant& name : database.FirstColumn("SELECT name FROM sample_parts"))
        tables.insert(name.toString());
    return tables;
}

/// What no file holds: passwords, and the state of accounts in which time has a part.
void FillAccounts(const Library& library, Records& records) {
    Database& database = records.GetDatabase();
    const QString today = library.Now().date().toString(Qt::ISODate);
    database.Run("UPDATE operators SET created_on=?, modified_on=?, modified_by='SYSADMIN'", {today, today});
    for (const SampleOperator& account : SampleOperators())
        if (const auto id = records.IdOfText("operators", "operator_id", account.id)) {
            NewPassword password(Secret::FromText(account.password), library);
            SetPassword(records, library, *id, password);
        }
    if (const auto locked = records.IdOfText("operators", "operator_id", "CIRC2")) {
        const QString hourAgo = StoredTime(library.Now().addSecs(-3600));
        records.Update("operators", *locked,
                       {{"failed_count", 5}, {"last_failure_at", hourAgo}, {"locked_at", hourAgo}});
    }
    if (const auto expired = records.IdOfText("operators", "operator_id", "CAT2"))
        records.Update("operators", *expired, {{"expired", "Y"}});
}

/// The password with which the sample library signs on to the partner library.
void FillPartnerPassword(const Library& library, Records& records) {
    const auto partner = records.IdOfText("search_databases", "code", "PARTNER");
    if (!partner)
        return;
    const QString user = records.Find("search_databases", *partner)->value("user_id").toString();
    for (const SampleOperator& account : SampleOperators())
        if (account.id == user)
            records.Update("search_databases", *partner,
                           {{"password", library.Secrets().Close(Secret::FromText(account.password))}});
}

/// The cell of a column; empty when the file has no such column.
QString CellIn(const SettingsTable& file, const QStringList& cells, const QString& column) {
    for (qsizetype i = 0; i < cells.size(); ++i)
        if (file.columns[i]->name == column)
            return cells[i];
    return {};
}

/// Adds and changes the records that files of the program say, as far as what they refer to is there. Tables
/// without a file are left out, and lines that are not wanted.
void FillFrom(const QString& folder, Records& records, const QStringList& tables,
              const std::function<bool(const SettingsTable&, const QStringList& cells)>& isWanted) {
    FileForm form(records.GetTables());
    LibrarySettings library(records.GetDatabase(), form);
    Comparison comparison;
    QList<FileProblem> problems;
    for (const QString& table : form.SampleOrder()) {
        QFile file(folder + '/' + table + ".csv");
        if (!tables.contains(table) || !file.open(QIODevice::ReadOnly))
            continue;
        SettingsTable read = ReadTableFile(form, table, file.readAll(), problems);
        erase_if(read.records, [&](const SettingsRecord& record) { return !isWanted(read, record.cells); });
        CompareTable(form, library.Read(table), read, comparison);
    }
    erase_if(comparison.differences,
             [](const Difference& difference) { return difference.kind == Difference::Kind::Removed; });
    problems += comparison.problems;
    if (problems.isEmpty())
        problems = Apply(records, form, library, comparison, Unknown::Skip);
    if (!problems.isEmpty())
        qFatal("The program's own files of settings are not in order. %s",
               qPrintable(problems.first().Sentence()));
}

} // namespace

void FillSampleLibrary(const Library& library, Database& database) {
    Records records(database, library.GetRegistry().GetTables());
    const QStringList carried = CarriedTables(database);
    const QSet<QString> before = FilledTables(database);
    QStringList filled;
    for (const QString& table : carried)
        if (library.GetRegistry().GetTables().contains(table) && !before.contains(table))
            filled << table;
    if (filled.isEmpty())
        return;
    for (const QString& table : filled)
        database.Run("INSERT INTO sample_parts (name) VALUES (?)", {table});
    // What uses records stands in one file for all tables; here come those of the tables that are filled now.
    if (!filled.contains("usage"))
        filled << "usage";
    FillFrom(Folder(database), records, filled, [&](const SettingsTable& file, const QStringList& cells) {
        return file.name != u"usage" || filled.contains(CellIn(file, cells, "table_name"));
    });
    if (filled.contains("operators"))
        FillAccounts(library, records);
    if (filled.contains("search_databases"))
        FillPartnerPassword(library, records);
    if (filled.contains("web_service_configuration"))
        if (const auto only = records.IdWhere("web_service_configuration", "only_one", "Y"))
            records.Update("web_service_configuration", *only, {{"default_pin", "0000"}});
}

void FillSystemIndexes(Records& records, const Library&) {
    InitSampleLibrary();
    using wire::indexes::Family;
    QStringList tables{"bib_texts"};
    QHash<QString, Family> families;
    for (const IndexFamily& family : IndexFamilies()) {
        families.insert(family.table, family.family);
        tables << family.table << family.table + "_fields";
    }
    FillFrom(":/sample-library", records, tables, [&](const SettingsTable& file, const QStringList& cells) {
        const auto family = families.constFind(file.name);
        return family == families.constEnd() || *family == Family::Headings ||
               wire::indexes::IsSystemCode(*family, CellIn(file, cells, "code"));
    });
}

void FillTitleLists(Records& records, const Library&) {
    InitSampleLibrary();
    FillFrom(":/sample-library", records, {"title_lists", "title_list_columns"},
             [](const SettingsTable&, const QStringList&) { return true; });
}

bool IsSampleIncomplete(const Library& library, Database& database) {
    const QSet<QString> filled = FilledTables(database);
    const QStringList carried = CarriedTables(database);
    return std::any_of(carried.begin(), carried.end(), [&](const QString& table) {
        return library.GetRegistry().GetTables().contains(table) && !filled.contains(table);
    });
}

void ConvertSampleParts(Database& database) {
    const QSet<QString> parts = FilledTables(database);
    if (parts.isEmpty())
        return;
    const QStringList present = database.TableNames();
    for (const QString& table : CarriedTables(database)) {
        if (!present.contains(table))
            continue;
        const bool isFilled = parts.contains(QString(table).replace('_', ' ')) ||
                              database.FirstRow("SELECT 1 FROM " + table + " LIMIT 1").has_value();
        if (isFilled && !parts.contains(table))
            database.Run("INSERT INTO sample_parts (name) VALUES (?)", {table});
    }
}

} // namespace sysadmin::server
