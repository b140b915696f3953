#pragma once

#include "comm/Transport.h"
#include "wire/Endpoint.h"

#include <QCoreApplication>

#include <functional>
#include <memory>

namespace sysadmin {

/// Makes the server's connection ends for a library folder; an empty factory and a text for the operator when
/// the library cannot be opened.
using EndpointMaker = std::function<wire::EndpointFactory(const QString& libraryDir, QString* error)>;

/// The transport to a settings server inside the process: the same messages, no socket.
class EmbeddedTransport : public Transport {
    Q_DECLARE_TR_FUNCTIONS(EmbeddedTransport)

public:
    EmbeddedTransport(const QString& libraryDir, EndpointMaker makeEndpoints);

    QString Open() override;
    bool IsOpen() const override { return m_endpoint != nullptr; }
    std::optional<QByteArray> Exchange(const QByteArray& message,
                                       std::chrono::milliseconds timeLimit) override;
    void Close() override { m_endpoint.reset(); }
    ConnectionInfo Describe() const override;

private:
    QString m_libraryDir;
    EndpointMaker m_makeEndpoints;
    wire::EndpointFactory m_factory; // empty until the library was opened
    std::unique_ptr<wire::Endpoint> m_endpoint;
};

} // namespace sysadmin
