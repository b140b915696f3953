#pragma once

#include "comm/ServerAddress.h"

#include <QThread>

namespace sysadmin {

/// The settings server in a process of its own, and before it a relay that does to the bytes what bad
/// networks do. Both live in a thread of their own, because clients block while they wait.
class ServerRig {
public:
    /// What happens to the next bytes that flow in a direction.
    struct Fault {
        enum class Direction { ToServer, ToClient };
        enum class Then {
            Cut,   ///< the connection ends
            Kill,  ///< the server is killed, its port answers nobody for a moment, and it is started again
            Stall, ///< the connection stays, but nothing gets through any more
        };
        Direction direction = Direction::ToClient;
        qint64 passed = 0; ///< bytes that still get through; all others of the connection are lost
        Then then = Then::Cut;
    };

    /// Starts the server on the library that its options name, as in {"--library", folder}.
    explicit ServerRig(const QStringList& library);
    ~ServerRig();
    ServerRig(const ServerRig&) = delete;
    ServerRig& operator=(const ServerRig&) = delete;

    /// Where clients connect: the relay.
    ServerAddress Address() const;
    /// The server's own port.
    quint16 ServerPort() const;
    QString Fingerprint() const;

    /// Lets no file that the server writes to grow beyond so many bytes; 0 ends that. False where the system
    /// cannot.
    bool LimitFiles(quint64 bytes);

    void KillServer();
    /// Starts it again, on the port that it had.
    void StartServer();

    void Expect(const Fault& fault);
    /// How many faults have happened.
    int Faults() const;
    /// Lets bytes through in pieces of this size only, with a pause after each; 0 all at once.
    void SetPieces(int bytes);
    /// Kills the server and starts it again, so many times, each time after it has run for a while.
    void KillAgainAndAgain(int times, int milliseconds);

private:
    class Worker;

    template <class Work>
    auto InThread(const Work& work) const;

    QThread m_thread;
    Worker* m_worker = nullptr;
};

} // namespace sysadmin
