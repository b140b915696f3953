#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QHostAddress;

namespace sysadmin::server {

/// Where a system tells which sockets can be read or written.
class SocketNews {
public:
    using Told = std::function<void(qintptr socket, bool isGone)>;

    virtual ~SocketNews() = default;

    virtual void Add(qintptr socket) = 0;
    virtual void Remove(qintptr socket) = 0;
    /// The socket was found empty, or full: tells when that changes.
    virtual void Await(qintptr socket, bool toRead, bool toWrite) = 0;
};

/// The best that this system has. Tells in the calling thread's event loop; throws `std::runtime_error` when
/// the system gives none.
std::unique_ptr<SocketNews> MakeSocketNews(SocketNews::Told told);

/// Makes a connected socket that neither blocks nor keeps small messages back, and that finds out when the
/// other machine has vanished.
void PrepareSocket(qintptr socket);
/// The address of the other side; null when it has gone.
QHostAddress PeerAddressOf(qintptr socket);
void CloseSocket(qintptr socket);

} // namespace sysadmin::server
