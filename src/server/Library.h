#pragma once

#include "server/ErrorLog.h"
#include "server/Passwords.h"
#include "server/Registry.h"
#include "server/SecretBox.h"
#include "server/SeenRecords.h"
#include "server/SignOnThrottle.h"
#include "server/store/StoreAddress.h"
#include "server/store/WriterQueue.h"

#include <QDateTime>
#include <QSemaphore>
#include <QThread>

#include <functional>
#include <memory>
#include <mutex>

namespace sysadmin::server {

class RemoteJobs;

/// How a library is opened.
struct LibraryOptions {
    enum class WhenMissing {
        Refuse,
        MakeEmpty,   ///< with one administrator, whose password is made up
        MakeSample,  ///< with the sample data
        MakePartner, ///< with those of a second sample library, which the first one reaches
    };

    StoreAddress address;
    WhenMissing whenMissing = WhenMissing::Refuse;
    HashCost hashCost = {};
    /// How long a request waits for the changes of others.
    std::chrono::milliseconds patience = std::chrono::seconds(10);
    /// Operators signed on at once; past it the session that was idle for the longest time ends.
    int sessions = 10'000;
    /// Peers on other machines can reach the library: the published sample passwords are refused.
    bool servesOthers = false;
    /// The server's clock; tests set their own.
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTimeUtc(); };
    /// What the server stores and answers; all of it unless a test says otherwise.
    std::shared_ptr<const Registry> registry = {};
};

/// An open library: what all connections to it share. Does not change once it is open, so that connections of
/// several threads may use it.
class Library {
public:
    /// Opens a library, brings its data to this version, and makes it when it is missing and that is wanted.
    /// Null, with one clear line, when that cannot be.
    static std::shared_ptr<const Library> Open(const LibraryOptions& options, QString* error);

    ~Library();

    /// A connection to its database, for the thread that asks. Throws `StoreError`, also when the library's
    /// file is no longer the one that was opened.
    std::unique_ptr<Database> Connect() const;

    const Registry& GetRegistry() const { return *m_registry; }
    const SealingKeys& GetSealingKeys() const { return m_keys; }
    /// Where passwords for other systems are kept.
    const SecretBox& Secrets() const { return m_secrets; }
    const HashCost& GetHashCost() const { return m_options.hashCost; }
    /// A hash that no password fits, for sign-on attempts of operators that do not exist.
    const QString& DummyHash() const { return m_dummyHash; }
    int MostSessions() const { return m_options.sessions; }
    const StoreAddress& GetAddress() const { return m_options.address; }
    QDateTime Now() const { return m_options.now().toUTC(); }
    bool IsSample() const { return m_sample; }
    bool ServesOthers() const { return m_options.servesOthers; }
    /// The password of the administrator of a library that was made just now; empty otherwise.
    const QString& FirstPassword() const { return m_firstPassword; }
    /// Where changes wait for each other.
    const WriterQueue& Writers() const { return *m_writers; }
    /// Keeps the memory and the cores that hashing takes within bounds when many sign on at once.
    QSemaphore& HashingSlots() const { return m_hashingSlots; }
    SignOnThrottle& Throttle() const { return m_throttle; }
    /// What goes on with other systems.
    RemoteJobs& Jobs() const { return *m_jobs; }

    /// What the sessions have read.
    SeenRecords& Seen() const { return m_seen; }
    ErrorLog& Errors() const { return m_errors; }

private:
    explicit Library(const LibraryOptions& options);
    void Fill(Database& database);
    void MakeFirstAdministrator(Database& database);

    LibraryOptions m_options;
    std::shared_ptr<const Registry> m_registry;
    std::shared_ptr<WriterQueue> m_writers;
    std::pair<quint64, quint64> m_file; ///< which file it is, once it is open
    SealingKeys m_keys;
    SecretBox m_secrets;
    QString m_dummyHash;
    QString m_firstPassword;
    bool m_sample = false;
    /// The connection that opened the library, for who connects first: closing the only one empties the log,
    /// and the next one begins with reading the schema.
    mutable std::unique_ptr<Database> m_opened;
    mutable std::mutex m_openedMutex;
    mutable QSemaphore m_hashingSlots{qBound(1, QThread::idealThreadCount() - 1, 4)};
    mutable SignOnThrottle m_throttle;
    mutable SeenRecords m_seen;
    std::unique_ptr<RemoteJobs> m_jobs;
    mutable ErrorLog m_errors;
};

/// Names the library and gives it a colour ("none" takes that away); what is empty stays as it is. Throws
/// `StoreError`.
void MarkLibrary(Database& database, const QString& name, const QString& colour);

/// Whether one of the published passwords of the sample library still opens it. Throws `StoreError`.
bool HasSamplePassword(Database& database);

} // namespace sysadmin::server
