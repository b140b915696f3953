#include "server/SampleLibrary.h"

#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/store/Database.h"
#include "server/store/Schema.h"
#include "server/store/TableFiles.h"
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

} // namespace

void FillSampleLibrary(const Library& library, Database& database) {
    Records records(database, library.GetRegistry().GetTables());
    TableFiles files(records, library.GetRegistry().GetTables());
    const QStringList carried = CarriedTables(database);
    const QSet<QString> before = FilledTables(database);
    QSet<QString> filled;
    for (const QString& table : files.Names()) {
        if (!carried.contains(table) || before.contains(table))
            continue;
        filled.insert(table);
        database.Run("INSERT INTO sample_parts (name) VALUES (?)", {table});
        if (table == u"usage") // what uses the records of every table; see below
            continue;
        QFile file(Folder(database) + '/' + table + ".csv");
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QString wrong = files.Read(table, file.readAll(), TableFiles::Unknown::Skip);
        if (!isOpen || !wrong.isEmpty())
            qFatal("The sample data is not in order. %s", qPrintable(wrong));
    }
    if (filled.isEmpty())
        return;
    QFile usage(Folder(database) + "/usage.csv");
    if (usage.open(QIODevice::ReadOnly))
        files.Read("usage", usage.readAll(), TableFiles::Unknown::Skip,
                   [&](const Row& row) { return filled.contains(row.value("table_name").toString()); });
    if (filled.contains("operators"))
        FillAccounts(library, records);
    if (filled.contains("search_databases"))
        FillPartnerPassword(library, records);
    if (filled.contains("web_service_configuration"))
        if (const auto only = records.IdWhere("web_service_configuration", "only_one", "Y"))
            records.Update("web_service_configuration", *only, {{"default_pin", "0000"}});
}

namespace {

/// Reads a file of the sample library into one that is no sample: what every library has. `takes` may leave
/// lines out.
void ReadFromSample(Records& records, const Library& library, const QString& table,
                    const std::function<bool(const Row&)>& takes = {}) {
    InitSampleLibrary();
    TableFiles files(records, library.GetRegistry().GetTables());
    QFile file(":/sample-library/" + table + ".csv");
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QString wrong = files.Read(table, file.readAll(), TableFiles::Unknown::Skip, takes);
    if (!isOpen || !wrong.isEmpty())
        qFatal("What comes with the system is not in order. %s", qPrintable(wrong));
}

} // namespace

void FillSystemIndexes(Records& records, const Library& library) {
    ReadFromSample(records, library, "bib_texts");
    for (const IndexFamily& family : IndexFamilies()) {
        const bool isFixed = family.family == wire::indexes::Family::Headings;
        ReadFromSample(records, library, family.table, [&](const Row& row) {
            return isFixed || wire::indexes::IsSystemCode(family.family, row.value("code").toString());
        });
        if (library.GetRegistry().GetTables().contains(family.table + "_fields"))
            ReadFromSample(records, library, family.table + "_fields");
    }
}

void FillTitleLists(Records& records, const Library& library) {
    ReadFromSample(records, library, "title_lists");
    ReadFromSample(records, library, "title_list_columns");
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
