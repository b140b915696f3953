#include "server/SocketNews.h"

#ifdef Q_OS_WIN

#include <QHostAddress>
#include <QSocketNotifier>

#include <unordered_map>

#include <winsock2.h>
#include <ws2tcpip.h>

namespace sysadmin::server {

namespace {

/// Two notifiers for each socket, which rest until they are asked for.
class Notifiers : public SocketNews {
public:
    explicit Notifiers(Told told)
        : m_told(std::move(told)) {}

    void Add(qintptr socket) override {
        Pair& pair = m_pairs[socket];
        pair.read = Make(socket, QSocketNotifier::Read);
        pair.write = Make(socket, QSocketNotifier::Write);
    }
    void Remove(qintptr socket) override { m_pairs.erase(socket); }
    void Await(qintptr socket, bool toRead, bool toWrite) override {
        if (const auto pair = m_pairs.find(socket); pair != m_pairs.end()) {
            pair->second.read->setEnabled(toRead);
            pair->second.write->setEnabled(toWrite);
        }
    }

private:
    /// Whoever is told may end the connection, and with it what is telling.
    struct Later {
        void operator()(QSocketNotifier* notifier) const {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };
    using Notifier = std::unique_ptr<QSocketNotifier, Later>;
    struct Pair {
        Notifier read;
        Notifier write;
    };

    Notifier Make(qintptr socket, QSocketNotifier::Type type) {
        Notifier notifier(new QSocketNotifier(socket, type));
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                         [this, socket, its = notifier.get()] {
                             its->setEnabled(false);
                             m_told(socket, false);
                         });
        return notifier;
    }

    Told m_told;
    std::unordered_map<qintptr, Pair> m_pairs;
};

void SwitchOn(qintptr socket, int level, int option) {
    const int on = 1;
    ::setsockopt(SOCKET(socket), level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

} // namespace

std::unique_ptr<SocketNews> MakeSocketNews(SocketNews::Told told) {
    return std::make_unique<Notifiers>(std::move(told));
}

void PrepareSocket(qintptr socket) {
    u_long on = 1;
    ::ioctlsocket(SOCKET(socket), FIONBIO, &on);
    SwitchOn(socket, IPPROTO_TCP, TCP_NODELAY);
    SwitchOn(socket, SOL_SOCKET, SO_KEEPALIVE);
}

QHostAddress PeerAddressOf(qintptr socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    return ::getpeername(SOCKET(socket), plain, &length) == 0 ? QHostAddress(plain) : QHostAddress();
}

void CloseSocket(qintptr socket) {
    ::closesocket(SOCKET(socket));
}

} // namespace sysadmin::server

#endif
