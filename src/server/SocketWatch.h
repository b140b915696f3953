#pragma once

#include <QTimer>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace sysadmin::server {

class SocketNews;

/// Tells which of many sockets can be read or written, in the thread that made it. What a turn costs depends
/// on the sockets with news, not on the idle ones.
class SocketWatch {
public:
    /// Called when something may be done with a socket, sometimes without need; `isGone` when its peer has
    /// gone, where the system tells that by itself.
    using Told = std::function<void(bool isGone)>;

    /// Throws `std::runtime_error` when the system gives no means for it.
    SocketWatch();
    ~SocketWatch();
    SocketWatch(const SocketWatch&) = delete;
    SocketWatch& operator=(const SocketWatch&) = delete;

    /// Begins to watch a socket that does not block. Whoever is told must read or write until the socket is
    /// found empty or full (`Await`), or ask to be told again (`Again`).
    void Add(qintptr socket, Told told);
    /// Ends that, before the socket is closed; nobody is told afterwards.
    void Remove(qintptr socket);
    /// The socket was found empty, or full: says so when that changes.
    void Await(qintptr socket, bool toRead, bool toWrite);
    /// There is more to do: says so when the others had their turn.
    void Again(qintptr socket);

private:
    void Tell(qintptr socket, bool isGone);

    std::unordered_map<qintptr, Told> m_told;
    std::vector<qintptr> m_again;
    QTimer m_nextTurn;
    std::unique_ptr<SocketNews> m_news;
};

} // namespace sysadmin::server
