#include "comm/WireChannel.h"

#include "comm/SessionData.h"
#include "comm/TraceLog.h"
#include "core/data/StatusTable.h"
#include "wire/Codec.h"
#include "wire/Status.h"

#include <QElapsedTimer>
#include <QThread>

namespace sysadmin {

namespace status = wire::status;

namespace {

// A server that dies of a request is not to be killed with it for ever.
constexpr int SendingsAtMost = 3;
constexpr std::chrono::milliseconds RestBetweenTries{200};
// The program is about to end or to go elsewhere; the server ends forgotten sessions by itself.
constexpr std::chrono::milliseconds SignOffLimit{2000};
// Nobody handles a request of this name: all that it does is to use up its number.
constexpr char NoOperation[] = "NoOp";

std::chrono::milliseconds Left(const QDeadlineTimer& deadline) {
    return std::chrono::milliseconds(deadline.remainingTime());
}

} // namespace

WireChannel::WireChannel() = default;

WireChannel::~WireChannel() = default;

void WireChannel::Use(std::unique_ptr<Transport> transport) {
    SignOff();
    m_transport = std::move(transport);
}

ConnectionInfo WireChannel::Describe() const {
    return m_transport ? m_transport->Describe() : ConnectionInfo();
}

Greeting WireChannel::Hello() {
    const QString name = "Hello";
    const Answer answer = Observe(name, {}, [&] { return SendOutsideSession(name, {}, m_timeLimit); });
    if (answer.status != status::Ok) {
        Greeting none;
        none.problem = m_problem.isEmpty() ? ProblemOfServer(answer.status) : m_problem;
        return none;
    }
    const auto value = [&](const char* tag) { return wire::FirstValue(answer.fields, tag); };
    return {.problem = {},
            .publicKey = QByteArray::fromBase64(value("PK").toLatin1()),
            .nonce = value("NC"),
            .libraryName = value("LIB"),
            .warning = value("SWT"),
            .version = value("VER"),
            .hint = value("HINT"),
            .colour = value("CLR")};
}

bool WireChannel::SignOn(Session& session) {
    auto* data = dynamic_cast<SessionData*>(&session);
    if (!data)
        return false;
    if (!m_token.isEmpty())
        return true;
    if (!data->HasCredentials())
        return false;
    const QString name = "SignOn";
    const wire::Fields fields{{"OI", data->CredentialId()}, {"PW", data->SealedPassword()}};
    data->ClearCredentials();
    // The password is sealed for this connection: on another one it would be taken for a wrong one.
    const Answer answer =
        Observe(name, fields, [&] { return SendOutsideSession(name, fields, m_timeLimit, false); });
    const auto value = [&](const char* tag) { return wire::FirstValue(answer.fields, tag); };
    if (answer.status != status::Ok || value("SID").isEmpty()) {
        m_problem = ProblemOfSignOn(answer);
        return false;
    }
    m_token = value("SID");
    m_sessionOver = false;
    m_lastNumber = 0;
    m_unsettled.reset();
    m_transport->SetLimits({});
    SignedOnOperator signedOn{value("OI"),
                              value("ONM"),
                              Describe().server,
                              QDateTime::currentDateTime(),
                              value("CHG") == "Y",
                              value("PDT"),
                              {}};
    bool isNumber = false;
    if (const int days = value("WARN").toInt(&isNumber); isNumber)
        signedOn.passwordDaysLeft = days;
    data->SetOperator(signedOn);
    return true;
}

QString WireChannel::ProblemOfSignOn(const Answer& answer) const {
    const int seconds = wire::FirstValue(answer.fields, "WAIT").toInt();
    if (answer.status == status::InvalidSignOn && seconds > 0) {
        const QString when = seconds == 1    ? tr("a second")
                             : seconds <= 90 ? tr("%1 seconds").arg(seconds)
                                             : tr("%1 minutes").arg((seconds + 59) / 60);
        return tr("There were too many wrong passwords from this address. Try again in %1.").arg(when);
    }
    switch (answer.status) {
    case status::Ok:
        return tr("The server has accepted the operator, but opened no session.");
    case status::CommunicationsFailure:
        return m_problem.isEmpty() ? TextOfStatus(answer.status).message : m_problem;
    case status::InvalidSignOn:
        return tr("The operator id or the password is not right, or the operator is locked or disabled.");
    default:
        return ProblemOfServer(answer.status);
    }
}

QString WireChannel::ProblemOfServer(qint16 answered) const {
    if (answered != status::TableError)
        return TextOfStatus(answered).message;
    return tr("The server cannot use its database at the moment: it may be away, or its disk full. Try again "
              "in a while. The server's log tells more.");
}

void WireChannel::SignOff() {
    if (!m_token.isEmpty() && m_transport && m_transport->IsOpen() && !m_waiting) {
        const QString name = "SignOff";
        Observe(name, {}, [&] { return SendOutsideSession(name, {}, SignOffLimit); });
    }
    m_token.clear();
    m_sessionOver = false;
    m_unsettled.reset();
    m_lastNumber = 0;
    if (m_transport)
        m_transport->Close();
}

qint16 WireChannel::ChangeOwnPassword(const QString& sealedOld, const QString& sealedNew) {
    const QString name = "ChgOwnPwd";
    const wire::Fields fields{{"OPW", sealedOld}, {"PW", sealedNew}};
    return Observe(name, fields,
                   [&] {
                       const QDeadlineTimer deadline(m_timeLimit);
                       return ConnectAndResume(deadline) ? SendOutsideSession(name, fields, Left(deadline))
                                                         : Answer{status::CommunicationsFailure, {}};
                   })
        .status;
}

RequestChannel::Answer WireChannel::Exchange(const QString& name, const wire::Fields& fields) {
    const auto send = [&] { return Observe(name, fields, [&] { return SendInSession(name, fields); }); };
    const auto wantsPassword = [](const Answer& answer) {
        return answer.status == status::NotAuthorised && wire::FirstValue(answer.fields, "CHG") == "Y";
    };
    Answer answer = send();
    if (!wantsPassword(answer))
        return answer;
    // Nothing was done, so once there is another password the same request is good.
    if (m_changePassword && !m_changingPassword) {
        m_changingPassword = true;
        const bool changed = m_changePassword(wire::FirstValue(answer.fields, "PDT"));
        m_changingPassword = false;
        if (changed)
            answer = send();
    }
    if (wantsPassword(answer))
        m_problem = tr("Your password has expired. Change it to go on with your work.");
    return answer;
}

RequestChannel::Answer WireChannel::Observe(const QString& name, const wire::Fields& fields,
                                            const Work& work) {
    if (m_waiting) {
        // A fault of the program: something that runs while the windows paint has sent a request.
        qCritical("Request %s while another one is in flight", qUtf8Printable(name));
        return {status::CommunicationsFailure, {}};
    }
    m_problem.clear();
    const QDateTime begun = QDateTime::currentDateTime();
    QElapsedTimer timer;
    timer.start();
    Answer answer{status::CommunicationsFailure, {}};
    if (m_transport) {
        Waiting waiting(name, m_observer);
        m_waiting = &waiting;
        m_transport->SetWaiting(&waiting);
        answer = work();
        waiting.Pause();
        m_transport->SetWaiting(nullptr);
        m_waiting = nullptr;
    }
    if (m_trace)
        m_trace->Write({begun, name, fields, answer.fields.All(), answer.status,
                        double(timer.nsecsElapsed() / 1000) / 1000});
    return answer;
}

// A request without a number. A connection that was open may have ended unnoticed: then the server is called
// anew.
RequestChannel::Answer WireChannel::SendOutsideSession(const QString& name, const wire::Fields& fields,
                                                       std::chrono::milliseconds timeLimit, bool mayRetry) {
    const QDeadlineTimer deadline(timeLimit);
    for (mayRetry = mayRetry && m_transport->IsOpen() && m_token.isEmpty();; mayRetry = false) {
        if (!m_transport->IsOpen()) {
            m_transport->SetLimits(wire::Limits::BeforeSignOn());
            m_problem = m_transport->Open();
            if (!m_problem.isEmpty())
                return {status::CommunicationsFailure, {}};
        }
        if (std::optional<wire::ReceivedReply> reply = Carry({0, name, fields}, deadline)) {
            m_problem.clear();
            return {reply->status, std::move(reply->fields)};
        }
        if (!mayRetry || m_transport->LastFailure() != TransportFailure::Lost)
            return {status::CommunicationsFailure, {}};
    }
}

RequestChannel::Answer WireChannel::SendInSession(const QString& name, const wire::Fields& fields) {
    const Answer failed{status::CommunicationsFailure, {}};
    const QDeadlineTimer deadline(m_timeLimit);
    const bool again = m_unsettled && m_unsettled->name == name && m_unsettled->fields == fields;
    if (m_unsettled && !again && !Settle(deadline))
        return failed;
    const wire::Request request{m_lastNumber + 1, name, fields};
    bool sent = false;
    std::optional<wire::ReceivedReply> reply = Deliver(request, deadline, sent);
    if (!reply) {
        if (sent)
            m_unsettled = request;
        return failed;
    }
    m_unsettled.reset();
    m_lastNumber = request.number;
    return {reply->status, std::move(reply->fields), std::move(reply->changed)};
}

// Whether the server has carried out the unsettled request is not known, and so neither which number is the
// next. Another request under its number answers that: it is done, or it gets the other's reply, and either
// way the number is used up.
bool WireChannel::Settle(const QDeadlineTimer& deadline) {
    bool sent = false;
    const quint64 number = m_unsettled->number;
    if (!Deliver({number, NoOperation, {}}, deadline, sent))
        return false;
    m_lastNumber = number;
    m_unsettled.reset();
    return true;
}

std::optional<wire::ReceivedReply> WireChannel::Deliver(const wire::Request& request,
                                                        const QDeadlineTimer& deadline, bool& sent) {
    for (int sendings = 1;; ++sendings) {
        if (!ConnectAndResume(deadline))
            return {};
        sent = true;
        if (std::optional<wire::ReceivedReply> reply = Carry(request, deadline)) {
            m_problem.clear();
            return reply;
        }
        if (m_transport->LastFailure() != TransportFailure::Lost || sendings == SendingsAtMost)
            return {};
    }
}

bool WireChannel::ConnectAndResume(const QDeadlineTimer& deadline) {
    if (m_token.isEmpty()) {
        m_problem = m_sessionOver ? tr("The session is over. Close the program, start it again and sign on.")
                                  : tr("Nobody is signed on.");
        return false;
    }
    if (m_transport->IsOpen())
        return true;
    const QDeadlineTimer giveUp(qMin(m_reconnectLimit, Left(deadline)));
    for (;;) {
        m_transport->SetLimits(wire::Limits::BeforeSignOn());
        m_problem = m_transport->Open();
        bool mayRetry = m_transport->LastFailure() == TransportFailure::Unreachable;
        if (m_problem.isEmpty() && Resume(deadline, mayRetry))
            return true;
        if (!mayRetry || giveUp.hasExpired())
            return false;
        Rest(RestBetweenTries);
    }
}

bool WireChannel::Resume(const QDeadlineTimer& deadline, bool& mayRetry) {
    const std::optional<wire::ReceivedReply> reply = Carry({0, "Resume", {{"SID", m_token}}}, deadline);
    if (!reply) {
        mayRetry = m_transport->LastFailure() == TransportFailure::Lost;
        return false;
    }
    if (reply->status == status::InvalidSignOn) {
        m_transport->Close();
        m_token.clear();
        m_sessionOver = true;
        m_problem =
            tr("The server has ended the session, or was set up anew. Close the program, start it again and "
               "sign on.");
        mayRetry = false;
        return false;
    }
    if (reply->status != status::Ok) {
        // The server has trouble of its own, which may pass; the session is still there.
        m_transport->Close();
        m_problem = ProblemOfServer(reply->status);
        mayRetry = true;
        return false;
    }
    m_transport->SetLimits({});
    return true;
}

// One message there and one back; none when that failed, and then the connection is closed and m_problem says
// why.
std::optional<wire::ReceivedReply> WireChannel::Carry(const wire::Request& request,
                                                      const QDeadlineTimer& deadline) {
    const std::optional<QByteArray> bytes = m_transport->Exchange(wire::Encode(request), Left(deadline));
    if (!bytes) {
        m_problem = m_transport->LastProblem();
        return {};
    }
    std::optional<wire::ReceivedReply> reply = wire::ReadReply(*bytes);
    if (reply && reply->number == request.number)
        return reply;
    m_transport->Close();
    m_problem = tr("The server has sent something that is not the answer to the request.");
    return {};
}

void WireChannel::Rest(std::chrono::milliseconds time) {
    for (QDeadlineTimer end(time); !end.hasExpired(); m_waiting->Pump())
        QThread::msleep(Waiting::Slice.count());
}

} // namespace sysadmin
