#pragma once

#include "comm/Transport.h"
#include "comm/Waiting.h"
#include "core/data/RequestChannel.h"
#include "wire/ReceivedFields.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <memory>

namespace sysadmin {

class TraceLog;

/// What a server tells of itself before anybody signs on.
struct Greeting {
    QString problem;      ///< empty, or why the server could not be asked, in words for the operator
    QByteArray publicKey; ///< to which passwords are sealed
    QString nonce;        ///< under which they are, for a sign-on and in the session that it begins
    QString libraryName;
    QString warning; ///< the security warning for those who sign on; may be empty
    QString version;
    QString hint;     ///< which operator and password to try; only from a sample library
    QString colour{}; ///< the library's own, as "#c03028" or a name; may be empty
};

/// The request channel to a settings server, over a transport that it owns. A lost connection is made anew,
/// the session resumed, and the request sent again under its number, so that the server carries it out once.
class WireChannel : public RequestChannel {
    Q_DECLARE_TR_FUNCTIONS(WireChannel)

public:
    WireChannel();
    ~WireChannel() override;

    /// Ends what there was and uses this transport from now on. It connects when it is first needed.
    void Use(std::unique_ptr<Transport> transport);
    bool HasTransport() const { return m_transport != nullptr; }
    Greeting Hello();
    /// Signs on with the session's credentials, which must be a SessionData's, and fills in who is signed on.
    /// True also when the operator is signed on already, false without credentials.
    bool SignOn(Session& session) override;
    /// Ends the session, as well as the connection allows.
    void SignOff();
    /// Changes the operator's own password, both sealed; the server's status.
    qint16 ChangeOwnPassword(const QString& sealedOld, const QString& sealedNew);

    const QString& LastProblem() const override { return m_problem; }
    ConnectionInfo Describe() const;

    /// How long a request may take, connecting anew included; 60 seconds unless set.
    void SetTimeLimit(std::chrono::milliseconds limit) { m_timeLimit = limit; }
    /// How long a lost connection is tried to be made anew; a server that is started again comes back within
    /// it.
    void SetReconnectLimit(std::chrono::milliseconds limit) { m_reconnectLimit = limit; }
    void SetWaitObserver(WaitObserver observer) { m_observer = std::move(observer); }
    /// Lets the operator change the password when the server demands it in the middle of a session; true when
    /// that was done. It is handed the library's text about new passwords. The request that the server
    /// refused for it is then sent again.
    void SetPasswordChange(std::function<bool(const QString& rulesText)> change) {
        m_changePassword = std::move(change);
    }
    /// The trace to write to; null for none. It must outlive the channel.
    void SetTrace(TraceLog* trace) { m_trace = trace; }

protected:
    Answer Exchange(const QString& name, const wire::Fields& fields) override;

private:
    using Work = std::function<Answer()>;

    Answer Observe(const QString& name, const wire::Fields& fields, const Work& work);
    Answer SendInSession(const QString& name, const wire::Fields& fields);
    Answer SendOutsideSession(const QString& name, const wire::Fields& fields,
                              std::chrono::milliseconds timeLimit, bool mayRetry = true);
    bool Settle(const QDeadlineTimer& deadline);
    std::optional<wire::ReceivedReply> Deliver(const wire::Request& request, const QDeadlineTimer& deadline,
                                               bool& sent);
    bool ConnectAndResume(const QDeadlineTimer& deadline);
    bool Resume(const QDeadlineTimer& deadline, bool& mayRetry);
    std::optional<wire::ReceivedReply> Carry(const wire::Request& request, const QDeadlineTimer& deadline);
    void Rest(std::chrono::milliseconds time);
    QString ProblemOfSignOn(const Answer& answer) const;
    QString ProblemOfServer(qint16 status) const;

    std::unique_ptr<Transport> m_transport;
    std::chrono::milliseconds m_timeLimit{60000};
    std::chrono::milliseconds m_reconnectLimit{10000};
    WaitObserver m_observer;
    std::function<bool(const QString&)> m_changePassword;
    bool m_changingPassword = false;
    TraceLog* m_trace = nullptr;
    Waiting* m_waiting = nullptr; // not null while a request is in flight
    QString m_problem;

    QString m_token; // empty: nobody is signed on
    bool m_sessionOver = false;
    quint64 m_lastNumber = 0; // of the last request whose reply is known
    // A request that was sent, but whose reply is not known; it has the number after the last.
    std::optional<wire::Request> m_unsettled;
};

} // namespace sysadmin
