#pragma once

#include "comm/Transport.h"
#include "wire/Endpoint.h"

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <vector>

namespace sysadmin {

/// Makes the server's connection ends for a library folder; an empty factory and a text for the operator when
/// the library cannot be opened.
using EndpointMaker = std::function<wire::EndpointFactory(const QString& libraryDir, QString* error)>;

/// The transport to a settings server inside the process: the same messages, no socket. The library lives in
/// a thread of its own, so that it may take its time (another program holds it, or there is much to do):
/// windows go on painting, and the time limit holds, as over a network.
class EmbeddedTransport : public Transport {
    Q_DECLARE_TR_FUNCTIONS(EmbeddedTransport)

public:
    EmbeddedTransport(const QString& libraryDir, EndpointMaker makeEndpoints);
    /// Waits for what the library is still doing.
    ~EmbeddedTransport() override;

    QString Open() override;
    bool IsOpen() const override { return m_line != nullptr; }
    std::optional<QByteArray> Exchange(const QByteArray& message,
                                       std::chrono::milliseconds timeLimit) override;
    void Close() override;
    ConnectionInfo Describe() const override;

private:
    /// One connection's end and its thread.
    struct Line;

    /// Waits until the line has done its work; false when that takes longer than it may.
    bool Await(std::optional<std::chrono::milliseconds> limit);

    QString m_libraryDir;
    EndpointMaker m_makeEndpoints;
    wire::EndpointFactory m_factory; // empty until the library was opened
    std::unique_ptr<Line> m_line;
    /// Their connections have ended while they were still at work.
    std::vector<std::unique_ptr<Line>> m_left;
};

} // namespace sysadmin
