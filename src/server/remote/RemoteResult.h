#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QString>

#include <atomic>
#include <memory>

namespace sysadmin::server {

/// What came of talking to another system.
enum class Outcome {
    Connected,
    NoAddress,          ///< none is stored
    UnknownHost,        ///< there is no computer of that name
    Refused,            ///< nothing listens there
    Unreachable,        ///< the network does not get there
    TimedOut,           ///< no answer in time
    Closed,             ///< the other side ended the connection
    OtherProtocol,      ///< what answers is something else
    TooLong,            ///< it sends more than anybody reads
    SignOnRefused,      ///< wrong user or password
    PasswordExpired,    ///< the user must change the password first
    PasswordUnreadable, ///< the stored password was closed with another key
    NewCertificate,     ///< nobody has accepted the certificate yet
    OtherCertificate,   ///< it is not the one that was accepted
    WeakCertificate,    ///< its key can be broken
    SearchRefused,      ///< reached, but the search failed
    RecordRefused,      ///< searched, but no record came
    Busy,               ///< too much of this is going on
    Cancelled,
};

/// The word under which an outcome travels.
QString WordOf(Outcome outcome);

struct RemotePatronGroup {
    qint64 id = 0;
    QString code;
    QString name;
};

struct RemoteCluster {
    qint64 id = 0;
    QString code;
    QString name;
    QList<RemotePatronGroup> groups;
};

class Prepared;

struct RemoteResult {
    Outcome outcome = Outcome::Connected;
    QString detail{};        ///< the other side's, or the system's, own words
    QString name{};          ///< of the target or library
    QString version{};       ///< of its program
    qint64 hits = -1;        ///< -1: nothing was searched
    QString record{};        ///< the first record as text
    QString fingerprint{};   ///< of the certificate that was shown, in hexadecimal digits
    bool vouchedFor = false; ///< an authority vouches for that certificate
    qint64 milliseconds = 0;
    QList<RemoteCluster> clusters{};
    std::shared_ptr<Prepared> brought{}; ///< whatever else a job found
};

/// How long one goes on: until a deadline, or until somebody says that it is enough.
struct Patience {
    static constexpr int Tick = 100; ///< milliseconds between looks whether it is over

    QDeadlineTimer deadline;
    const std::atomic_bool* cancelled = nullptr;

    bool IsOver() const { return (cancelled && *cancelled) || deadline.hasExpired(); }
    Outcome Reason() const { return cancelled && *cancelled ? Outcome::Cancelled : Outcome::TimedOut; }
};

} // namespace sysadmin::server
