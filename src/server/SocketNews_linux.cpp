#include "server/SocketNews.h"

#ifdef Q_OS_LINUX

#include <QHostAddress>
#include <QSocketNotifier>

#include <array>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sysadmin::server {

namespace {

/// The kernel's queue of events: it tells each change once, so nothing need be asked for again.
class EventQueue : public SocketNews {
public:
    explicit EventQueue(Told told)
        : m_told(std::move(told)) {
        if (m_queue < 0)
            throw std::runtime_error("The system gives no queue for the news of sockets.");
        m_notifier = std::make_unique<QSocketNotifier>(m_queue, QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { Take(); });
    }
    ~EventQueue() override {
        m_notifier.reset();
        ::close(m_queue);
    }
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;

    void Add(qintptr socket) override {
        epoll_event event{};
        event.events = EPOLLIN | EPOLLOUT | EPOLLRDHUP | EPOLLET;
        event.data.fd = int(socket);
        if (epoll_ctl(m_queue, EPOLL_CTL_ADD, int(socket), &event) != 0)
            throw std::runtime_error("A socket cannot be watched.");
    }
    void Remove(qintptr socket) override { epoll_ctl(m_queue, EPOLL_CTL_DEL, int(socket), nullptr); }
    void Await(qintptr, bool, bool) override {}

private:
    void Take() {
        std::array<epoll_event, 256> events;
        const int count = epoll_wait(m_queue, events.data(), int(events.size()), 0);
        for (int i = 0; i < count; ++i)
            m_told(events[size_t(i)].data.fd, events[size_t(i)].events & (EPOLLRDHUP | EPOLLHUP | EPOLLERR));
    }

    Told m_told;
    const int m_queue = epoll_create1(EPOLL_CLOEXEC);
    std::unique_ptr<QSocketNotifier> m_notifier;
};

void SwitchOn(qintptr socket, int level, int option) {
    const int on = 1;
    ::setsockopt(int(socket), level, option, &on, sizeof on);
}

} // namespace

std::unique_ptr<SocketNews> MakeSocketNews(SocketNews::Told told) {
    return std::make_unique<EventQueue>(std::move(told));
}

void PrepareSocket(qintptr socket) {
    ::fcntl(int(socket), F_SETFL, ::fcntl(int(socket), F_GETFL) | O_NONBLOCK);
    SwitchOn(socket, IPPROTO_TCP, TCP_NODELAY);
    SwitchOn(socket, SOL_SOCKET, SO_KEEPALIVE);
}

QHostAddress PeerAddressOf(qintptr socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    return ::getpeername(int(socket), plain, &length) == 0 ? QHostAddress(plain) : QHostAddress();
}

void CloseSocket(qintptr socket) {
    ::close(int(socket));
}

} // namespace sysadmin::server

#endif
