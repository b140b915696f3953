#include "server/Library.h"

#include "server/OperatorPasswords.h"
#include "server/SampleLibrary.h"
#include "server/remote/RemoteJobs.h"
#include "server/store/Database.h"
#include "server/store/LibraryFolder.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchDatabases.h"

#include <QFileInfo>

namespace sysadmin::server {

namespace {

/// Why the data in the file cannot be used; empty when it looks sound.
QString CheckFile(Database& database, const StoreAddress& address) {
    constexpr qint64 QuickToCheck = 32 * 1024 * 1024;
    if (address.engine != StoreAddress::Engine::Sqlite || QFileInfo(address.file).size() > QuickToCheck)
        return {};
    const QString result = database.FirstValue("PRAGMA quick_check(1)").toString();
    return result == "ok" ? QString() : result.section('\n', 0, 0);
}

} // namespace

Library::Library(const LibraryOptions& options)
    : m_options(options)
    , m_registry(options.registry ? options.registry : MakeRegistry())
    , m_writers(std::make_shared<WriterQueue>())
    , m_secrets(SecretKeyFile(options.address))
    , m_jobs(std::make_unique<RemoteJobs>()) {}

Library::~Library() = default;

std::unique_ptr<Database> Library::Connect() const {
    if (m_file != FileIdentity() && IdentityOf(m_options.address.file) != m_file)
        throw StoreError(StoreError::Kind::Lost, FileIsGone(m_options.address.file));
    {
        const std::lock_guard lock(m_openedMutex);
        if (m_opened)
            return std::move(m_opened);
    }
    return std::make_unique<Database>(m_options.address, m_writers, m_options.patience);
}

std::shared_ptr<const Library> Library::Open(const LibraryOptions& options, QString* error) {
    const QString place = options.address.Describe();
    if (!PrepareCryptography()) {
        *error = "The cryptography library cannot be used.";
        return nullptr;
    }
    if (options.address.engine == StoreAddress::Engine::Sqlite) {
        *error = PrepareLibraryFolder(options.address.file,
                                      options.whenMissing != LibraryOptions::WhenMissing::Refuse);
        if (!error->isEmpty())
            return nullptr;
    }
    const std::shared_ptr<Library> library(new Library(options));
    try {
        auto database = library->Connect();
        if (const QString damage = CheckFile(*database, options.address); !damage.isEmpty()) {
            *error = "The library " + place + " is damaged: " + damage;
            return nullptr;
        }
        if (options.whenMissing == LibraryOptions::WhenMissing::Refuse &&
            !database->HasTable("library_settings")) {
            *error = "There is no library in " + place + '.';
            return nullptr;
        }
        if (const QString refusal = BringToSchema(*database, library->m_registry->GetSchema());
            !refusal.isEmpty()) {
            *error = "The library " + place + " cannot be opened. " + refusal;
            return nullptr;
        }
        library->Fill(*database);
        library->m_file = IdentityOf(options.address.file);
        library->m_opened = std::move(database);
    } catch (const StoreError& failure) {
        const bool damaged =
            failure.Text().contains("not a database") || failure.Text().contains("malformed");
        *error =
            "The library " + place + (damaged ? " is damaged: " : " cannot be opened: ") + failure.Text();
        return nullptr;
    }
    return library;
}

void Library::Fill(Database& database) {
    // Whether the library is complete is looked up first without holding others up.
    const QString made = ReadSetting(database, "made_at");
    const bool sample = made.isEmpty() ? m_options.whenMissing == LibraryOptions::WhenMissing::MakeSample ||
                                             m_options.whenMissing == LibraryOptions::WhenMissing::MakePartner
                                       : ReadSetting(database, "sample") == "Y";
    if (made.isEmpty() || (sample && IsSampleIncomplete(*this, database))) {
        RunInTransaction(database, [&] {
            m_firstPassword.clear();
            if (ReadSetting(database, "made_at").isEmpty()) {
                const SealingKeys keys = SealingKeys::Make();
                WriteSetting(database, "made_at", StoredTime(Now()));
                const bool partner = m_options.whenMissing == LibraryOptions::WhenMissing::MakePartner;
                WriteSetting(database, "library_name",
                             partner  ? "Partner Library"
                             : sample ? "Sample Library"
                                      : "Library");
                WriteSetting(database, "sample_kind", partner ? "partner" : "");
                WriteSetting(database, "sample", sample ? "Y" : "N");
                WriteSetting(database, "web_services", sample ? "Y" : "N");
                WriteSetting(database, "sealing_public_key", QString::fromLatin1(keys.publicKey.toBase64()));
                WriteSetting(database, "sealing_secret_key", QString::fromLatin1(keys.secretKey.toBase64()));
                WriteSetting(database, "dummy_hash",
                             HashPassword(Secret::FromText(RandomPassword()), m_options.hashCost));
                Records(database, m_registry->GetTables()).Insert("security_options", {{"only_one", "Y"}});
                if (!sample)
                    MakeFirstAdministrator(database);
            }
            if (ReadSetting(database, "sample") == "Y")
                FillSampleLibrary(*this, database);
        });
    }
    if (!database.FirstRow("SELECT 1 FROM search_databases WHERE code='LOCAL'"))
        RunInTransaction(database, [&] {
            Records records(database, m_registry->GetTables());
            MakeLocalDatabase(records);
        });
    // None of them can be added or removed: either all are there, or this library is older than they are.
    if (!database.FirstRow("SELECT 1 FROM heading_indexes"))
        RunInTransaction(database, [&] {
            Records records(database, m_registry->GetTables());
            FillSystemIndexes(records, *this);
        });
    if (!database.FirstRow("SELECT 1 FROM title_lists"))
        RunInTransaction(database, [&] {
            Records records(database, m_registry->GetTables());
            FillTitleLists(records, *this);
        });
    m_sample = ReadSetting(database, "sample") == "Y";
    m_dummyHash = ReadSetting(database, "dummy_hash");
    m_keys.publicKey = QByteArray::fromBase64(ReadSetting(database, "sealing_public_key").toLatin1());
    m_keys.secretKey = QByteArray::fromBase64(ReadSetting(database, "sealing_secret_key").toLatin1());
}

void Library::MakeFirstAdministrator(Database& database) {
    Records records(database, m_registry->GetTables());
    m_firstPassword = RandomPassword();
    const QString today = Now().date().toString(Qt::ISODate);
    const qint64 administrator = records.Insert("operators", {{"operator_id", "SYSADMIN"},
                                                              {"last_name", "Administrator"},
                                                              {"first_name", "System"},
                                                              {"created_on", today},
                                                              {"modified_on", today},
                                                              {"modified_by", "SYSADMIN"}});
    NewPassword password(Secret::FromText(m_firstPassword), *this);
    SetPassword(records, *this, administrator, password);
    records.Update("operators", administrator, {{"expired", "Y"}});
    Row profile{{"name", "System administrators"}};
    for (const MasterRight& right : MasterRights())
        profile.insert(right.column, right.tag == "CluViewOnly" ? "N" : "Y");
    const qint64 id = records.Insert("master_profiles", profile);
    records.Insert("master_profile_operators", {{"profile_id", id}, {"operator_row", administrator}});
}

void MarkLibrary(Database& database, const QString& name, const QString& colour) {
    RunInTransaction(database, [&] {
        if (!name.isEmpty())
            WriteSetting(database, "library_name", name);
        if (!colour.isEmpty())
            WriteSetting(database, "colour", colour == u"none" ? QString() : colour);
    });
}

bool HasSamplePassword(Database& database) {
    return database.FirstRow("SELECT 1 FROM operators WHERE sample_password='Y' OR published_password='Y'")
        .has_value();
}

} // namespace sysadmin::server
