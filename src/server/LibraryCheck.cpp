#include "server/LibraryCheck.h"

#include "server/Certificate.h"
#include "server/Library.h"
#include "server/SecurityHolders.h"
#include "server/SecurityOptions.h"
#include "server/ServerOptions.h"
#include "server/store/Database.h"
#include "server/store/LibraryFolder.h"
#include "server/subjects/Registrations.h"

#include <QFileInfo>
#include <QLocale>

namespace sysadmin::server {

namespace {

/// Of the same fault in many places, so many are told.
constexpr int MostOfAKind = 20;

class Check {
public:
    Check(const ServerOptions& options, const std::function<void(const QString&)>& tell)
        : m_options(options)
        , m_address(options.library)
        , m_tell(tell) {}

    bool Run();

private:
    void Good(const QString& sentence) { m_tell(sentence); }
    void Bad(const QString& sentence) {
        ++m_faults;
        m_tell("FAULT: " + sentence);
    }

    bool OpenStore();
    void CheckIntegrity();
    void CheckReferences();
    bool CheckVersion();
    bool CheckTables();
    void CheckKeys();
    void CheckSecrets();
    void CheckCertificate();
    void CheckOperators();

    bool IsSqlite() const { return m_address.engine == StoreAddress::Engine::Sqlite; }

    const ServerOptions& m_options;
    const StoreAddress& m_address;
    const std::function<void(const QString&)>& m_tell;
    std::shared_ptr<const Registry> m_registry = MakeRegistry();
    std::unique_ptr<Database> m_database;
    int m_faults = 0;
};

bool Check::OpenStore() {
    if (IsSqlite() && !QFileInfo::exists(m_address.file)) {
        Bad("There is no library: the file " + m_address.file + " is missing.");
        return false;
    }
    m_database = std::make_unique<Database>(m_address);
    if (!m_database->HasTable("library_settings")) {
        Bad("There is no library in " + m_address.Describe() + '.');
        return false;
    }
    Good("Opened the library \"" + ReadSetting(*m_database, "library_name") + "\" in " +
         m_address.Describe() + '.');
    if (!IsSqlite())
        return true;
    if (const QString open = OpenToOthers(m_address.file); !open.isEmpty())
        Bad(open + " The server closes them at its next start.");
    return true;
}

void Check::CheckIntegrity() {
    if (!IsSqlite())
        return; // PostgreSQL checks its pages when it reads them
    const int before = m_faults;
    m_database->Each("PRAGMA integrity_check(20)", {}, [&](const ResultRow& row) {
        if (const QString found = row.value(0).toString(); found != "ok")
            Bad("The database file is damaged: " + found + '.');
    });
    if (m_faults == before)
        Good("The database file is whole.");
}

void Check::CheckReferences() {
    const int before = m_faults;
    for (const Table& table : m_registry->GetSchema().tables)
        for (const Column& column : table.columns) {
            if (column.type != ColumnType::Reference)
                continue;
            const auto lost = m_database->FirstColumn(
                QString(
                    "SELECT t.id FROM %1 t LEFT JOIN %2 o ON o.id=t.%3 WHERE t.%3 IS NOT NULL AND o.id IS "
                    "NULL ORDER BY t.id LIMIT ?")
                    .arg(table.name, column.target, column.name),
                {MostOfAKind});
            for (const QVariant& id : lost)
                Bad(QString("Row %1 of %2 refers in %3 to a row of %4 that does not exist.")
                        .arg(id.toString(), table.name, column.name, column.target));
        }
    if (m_faults == before)
        Good("Every reference between records leads to a record.");
}

/// False when the data is of another version, whose tables may differ.
bool Check::CheckVersion() {
    const int version = ReadSetting(*m_database, "schema_version", "0").toInt();
    const int known = m_registry->GetSchema().Version();
    if (version > known) {
        Bad(QString("The data has version %1; this program knows versions up to %2. Use a later program.")
                .arg(version)
                .arg(known));
        return false;
    }
    if (version < known)
        Good(QString("The data has version %1; the server brings it to version %2 at its next start.")
                 .arg(version)
                 .arg(known));
    return version == known;
}

/// False when tables or columns are missing.
bool Check::CheckTables() {
    const int before = m_faults;
    const QStringList present = m_database->TableNames();
    const Schema schema = m_registry->GetSchema();
    qint64 records = 0;
    for (const Table& table : schema.tables) {
        if (!present.contains(table.name)) {
            Bad("The table " + table.name + " is missing.");
            continue;
        }
        const QStringList columns = m_database->ColumnsOf(table.name);
        for (const Column& column : table.columns)
            if (!columns.contains(column.name))
                Bad("The column " + column.name + " of the table " + table.name + " is missing.");
        records += m_database->FirstValue("SELECT COUNT(*) FROM " + table.name).toLongLong();
    }
    if (m_faults == before)
        Good(QString("All %1 tables are there, with %2 records.").arg(schema.tables.size()).arg(records));
    return m_faults == before;
}

void Check::CheckKeys() {
    const auto key = [&](const char* name) {
        return QByteArray::fromBase64(ReadSetting(*m_database, name).toLatin1());
    };
    const SealingKeys keys{key("sealing_public_key"), key("sealing_secret_key")};
    const QString probe = "probe";
    constexpr auto Purpose = wire::PasswordPurpose::SignOn;
    const auto opened = OpenSealed(Seal(probe, keys.publicKey, Purpose, probe), keys, Purpose, probe);
    if (opened && QByteArray(opened->Data(), opened->Size()) == probe.toUtf8())
        Good("The keys to which passwords are sealed fit together.");
    else
        Bad("The keys to which passwords are sealed do not fit together: nobody can sign on.");
}

void Check::CheckSecrets() {
    const SecretBox box(SecretKeyFile(m_address));
    const auto closed = m_database->FirstColumn("SELECT password FROM search_databases WHERE password<>''");
    if (closed.isEmpty())
        return;
    if (std::all_of(closed.begin(), closed.end(),
                    [&](const QVariant& password) { return box.Open(password.toString()).has_value(); }))
        Good("The passwords for other systems can be read with the key in " + box.KeyFile() + '.');
    else
        Bad("Passwords for other systems cannot be read with the key in " + box.KeyFile() +
            ": they have to be entered again.");
}

void Check::CheckCertificate() {
    QString error;
    std::optional<ServerIdentity> identity;
    if (!m_options.certificateFile.isEmpty()) {
        identity = ReadIdentity(m_options.certificateFile, m_options.keyFile, &error);
    } else {
        if (ReadSetting(*m_database, "tls_certificate").isEmpty()) {
            Good("The server has no certificate yet; it makes one at its next start.");
            return;
        }
        identity = KeptIdentity(*m_database, &error);
    }
    if (!identity) {
        Bad(error);
        return;
    }
    const QSslCertificate& certificate = identity->chain.first();
    const QString until = QLocale::c().toString(certificate.expiryDate().toLocalTime(), "d MMMM yyyy");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (certificate.expiryDate() < now)
        Bad("The certificate expired on " + until + '.');
    else if (certificate.effectiveDate() > now)
        Bad("The certificate is not valid yet; is this machine's clock right?");
    else
        Good("The certificate fits its key and is valid until " + until + '.');
    Good("Certificate SHA-256 " + identity->Fingerprint());
}

void Check::CheckOperators() {
    const qint64 count = m_database->FirstValue("SELECT COUNT(*) FROM operators").toLongLong();
    if (SecurityHolderCanSignOn(*m_database, ReadSecurityRules(*m_database), QDateTime::currentDateTimeUtc()))
        Good(QString("There are %1 operators; at least one of them can sign on and change security settings.")
                 .arg(count));
    else
        Bad(QString("There are %1 operators, and none of them can sign on and change security settings.")
                .arg(count));
    if (HasSamplePassword(*m_database))
        Good("A password of the sample library is in force: the server listens on this machine only.");
}

bool Check::Run() {
    try {
        if (!OpenStore())
            return false;
        CheckIntegrity();
        if (CheckVersion() && CheckTables()) {
            CheckReferences();
            CheckOperators();
            CheckSecrets();
        }
        CheckKeys();
        CheckCertificate();
    } catch (const StoreError& failure) {
        Bad(m_address.Describe() + " cannot be read: " + failure.Text());
    }
    if (m_faults == 0)
        Good("Everything is in order.");
    else
        m_tell(m_faults == 1 ? QString("One fault was found.")
                             : QString("%1 faults were found.").arg(m_faults));
    return m_faults == 0;
}

} // namespace

bool CheckLibrary(const ServerOptions& options, const std::function<void(const QString&)>& tell) {
    if (!PrepareCryptography()) {
        tell("FAULT: The cryptography library cannot be used.");
        return false;
    }
    return Check(options, tell).Run();
}

} // namespace sysadmin::server
