#include "comm/EmbeddedTransport.h"

#include "wire/Codec.h"

#include <QDir>

namespace sysadmin {

EmbeddedTransport::EmbeddedTransport(const QString& libraryDir, EndpointMaker makeEndpoints)
    : m_libraryDir(libraryDir)
    , m_makeEndpoints(std::move(makeEndpoints)) {}

QString EmbeddedTransport::Open() {
    ClearFailure();
    if (!m_factory) {
        QString error;
        m_factory = m_makeEndpoints(m_libraryDir, &error);
        if (!m_factory)
            return Fail(TransportFailure::Refused,
                        tr("The library in %1 cannot be opened: %2")
                            .arg(QDir::toNativeSeparators(m_libraryDir),
                                 error.isEmpty() ? tr("there is no reason given.") : error));
    }
    m_endpoint = m_factory("local");
    if (!m_endpoint)
        return Fail(TransportFailure::Unreachable,
                    tr("The library in %1 takes no connection.").arg(QDir::toNativeSeparators(m_libraryDir)));
    return {};
}

std::optional<QByteArray> EmbeddedTransport::Exchange(const QByteArray& message, std::chrono::milliseconds) {
    ClearFailure();
    if (!m_endpoint) {
        Fail(TransportFailure::Lost, tr("The library is not open."));
        return {};
    }
    std::optional<QByteArray> reply;
    if (message.size() <= m_endpoint->MessageLimit())
        reply = m_endpoint->Handle(message);
    if (!reply) {
        Close();
        Fail(TransportFailure::Lost, tr("The library has ended the connection."));
        return {};
    }
    wire::FrameScanner scanner(ReplyLimits());
    if (scanner.Scan(*reply) != wire::FrameScanner::Result::Complete || scanner.Length() != reply->size()) {
        Close();
        Fail(TransportFailure::Broken, tr("The library has sent something that is not an answer."));
        return {};
    }
    return reply;
}

ConnectionInfo EmbeddedTransport::Describe() const {
    return {tr("This computer, %1").arg(QDir::toNativeSeparators(m_libraryDir)),
            tr("Inside the program, no network")};
}

} // namespace sysadmin
