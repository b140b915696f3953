#include "comm/EmbeddedTransport.h"

#include "comm/Waiting.h"
#include "wire/Codec.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QSemaphore>
#include <QThreadPool>

namespace sysadmin {

namespace {

constexpr int SliceMs = int(Waiting::Slice.count());

} // namespace

struct EmbeddedTransport::Line {
    std::unique_ptr<wire::Endpoint> endpoint;
    std::optional<QByteArray> reply;
    QSemaphore done;  // one for each piece of work that has ended
    QThreadPool pool; // goes first, and with it whoever uses the rest

    Line() {
        pool.setMaxThreadCount(1);
        pool.setExpiryTimeout(-1);
    }

    void Begin(std::function<void()> work) {
        pool.start([this, work = std::move(work)] {
            work();
            done.release();
        });
    }
};

EmbeddedTransport::EmbeddedTransport(const QString& libraryDir, EndpointMaker makeEndpoints)
    : m_libraryDir(libraryDir)
    , m_makeEndpoints(std::move(makeEndpoints)) {}

EmbeddedTransport::~EmbeddedTransport() {
    Close();
}

bool EmbeddedTransport::Await(std::optional<std::chrono::milliseconds> limit) {
    // Blocking is what makes a quick reply quick; in a long wait the windows get their turn between the
    // slices.
    for (const QDeadlineTimer deadline(limit ? QDeadlineTimer(*limit) : QDeadlineTimer::Forever);;) {
        if (m_line->done.tryAcquire(1, SliceMs))
            return true;
        if (deadline.hasExpired())
            return false;
        Pump();
    }
}

void EmbeddedTransport::Close() {
    if (!m_line)
        return;
    Line& line = *m_line;
    line.Begin([&line] { line.endpoint.reset(); });
    m_left.push_back(std::move(m_line));
    std::erase_if(m_left, [](const auto& left) { return left->pool.waitForDone(SliceMs); });
}

QString EmbeddedTransport::Open() {
    ClearFailure();
    Close();
    m_line = std::make_unique<Line>();
    QString error;
    m_line->Begin([this, &error] {
        if (!m_factory)
            m_factory = m_makeEndpoints(m_libraryDir, &error);
        if (m_factory)
            m_line->endpoint = m_factory("local");
    });
    Await({});
    if (!m_factory) {
        Close();
        return Fail(TransportFailure::Refused,
                    tr("The library in %1 cannot be opened: %2")
                        .arg(QDir::toNativeSeparators(m_libraryDir),
                             error.isEmpty() ? tr("there is no reason given.") : error));
    }
    if (!m_line->endpoint) {
        Close();
        return Fail(TransportFailure::Unreachable,
                    tr("The library in %1 takes no connection.").arg(QDir::toNativeSeparators(m_libraryDir)));
    }
    return {};
}

std::optional<QByteArray> EmbeddedTransport::Exchange(const QByteArray& message,
                                                      std::chrono::milliseconds timeLimit) {
    ClearFailure();
    if (!m_line) {
        Fail(TransportFailure::Lost, tr("The library is not open."));
        return {};
    }
    Line& line = *m_line;
    line.reply.reset();
    line.Begin([&line, message] {
        if (message.size() <= line.endpoint->MessageLimit())
            line.reply = line.endpoint->Handle(message);
    });
    if (!Await(timeLimit)) {
        Close();
        Fail(TransportFailure::TimeLimit,
             tr("The library in %1 has not answered in time.").arg(QDir::toNativeSeparators(m_libraryDir)));
        return {};
    }
    const std::optional<QByteArray> reply = std::exchange(line.reply, {});
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
