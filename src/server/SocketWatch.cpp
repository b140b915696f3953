#include "server/SocketWatch.h"

#include "server/SocketNews.h"

namespace sysadmin::server {

SocketWatch::SocketWatch()
    : m_news(MakeSocketNews([this](qintptr socket, bool isGone) { Tell(socket, isGone); })) {
    m_nextTurn.setSingleShot(true);
    QObject::connect(&m_nextTurn, &QTimer::timeout, &m_nextTurn, [this] {
        for (const qintptr socket : std::exchange(m_again, {}))
            Tell(socket, false);
    });
}

SocketWatch::~SocketWatch() = default;

void SocketWatch::Tell(qintptr socket, bool isGone) {
    const auto told = m_told.find(socket);
    if (told == m_told.end())
        return;
    const Told call = told->second; // the socket may be removed meanwhile
    call(isGone);
}

void SocketWatch::Add(qintptr socket, Told told) {
    m_told.insert_or_assign(socket, std::move(told));
    m_news->Add(socket);
}

void SocketWatch::Remove(qintptr socket) {
    if (m_told.erase(socket) > 0)
        m_news->Remove(socket);
}

void SocketWatch::Await(qintptr socket, bool toRead, bool toWrite) {
    m_news->Await(socket, toRead, toWrite);
}

void SocketWatch::Again(qintptr socket) {
    m_again.push_back(socket);
    m_nextTurn.start(0);
}

} // namespace sysadmin::server
