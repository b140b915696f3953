#pragma once

#include "comm/EmbeddedTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/SignOnAttempts.h"
#include "comm/TraceLog.h"
#include "comm/WireChannel.h"
#include "core/data/Communication.h"

#include <QCoreApplication>

#include <memory>

namespace sysadmin {

class NetworkTransport;
class Prompter;
class SignOnDialog;

/// The communication library: session, request channel, sign-on, and what an operator may see and do about
/// them.
class CommLibrary : public Communication, public SignOnAttempts {
    Q_DECLARE_TR_FUNCTIONS(CommLibrary)

public:
    /// `makeEndpoints` opens a library on this computer.
    CommLibrary(Prompter& prompter, const CommandLine& line, EndpointMaker makeEndpoints);
    /// Signs off.
    ~CommLibrary() override;

    SessionData& GetSession() override { return m_session; }
    WireChannel& GetChannel() override { return m_channel; }

    /// Opens the trace. True, after telling the operator, when it cannot be written: whoever asks for a trace
    /// needs it.
    bool PreCheck() override;
    void ShowSignOn() override;
    void CloseSignOn() override;
    bool PostSignOn() override;
    QString LibraryName() const override { return m_greeting.libraryName; }
    QString ServerName() const override;
    QString LibraryColour() const override { return m_greeting.colour; }
    std::unique_ptr<Communication> SignOnElsewhere(QWidget* parent) override;
    void ShowLoginInformation(QWidget* parent) override;
    void ChangePassword(QWidget* parent) override;
    QString EncodePassword(const QString& plain) const override;

    /// Signs on without a dialog, at the place that the command line names; an empty text, or why it did not
    /// work. `ShowSignOn` shows nothing after that.
    QString SignOnDirectly(const QString& operatorId, QString password);

    /// Who is told when a request takes long.
    void SetWaitObserver(WaitObserver observer) { m_channel.SetWaitObserver(std::move(observer)); }

    Greeting Greet(const ServerChoice& choice) override;
    const Greeting& LastGreeting() const override { return m_greeting; }
    QString TrySignOn(const ServerChoice& choice, const QString& operatorId, QString& password) override;
    bool CertificateChanged() const override;
    bool AcceptCertificate() override;
    QString ChooseFolder(QWidget* parent, const QString& start) override;

private:
    ServerChoice FirstChoice() const;
    void Remember(const ServerChoice& choice) const;
    void RunSignOn(QWidget* parent, const QString& title);
    QString OpenTrace();
    bool RunChangePassword(QWidget* parent, const QString& reason, const QString& rulesText);

    Prompter& m_prompter;
    EndpointMaker m_makeEndpoints;
    TraceLog m_trace;
    SessionData m_session;
    WireChannel m_channel;
    NetworkTransport* m_network = nullptr; // the channel's transport, when it is one
    ServerChoice m_choice;                 // where the channel's transport leads
    Greeting m_greeting;
    PasswordEncoder m_encoder;
    std::unique_ptr<SignOnDialog> m_signOn;
    bool m_isSecond = false; // beside another session: where it leads is not where the next start goes
};

} // namespace sysadmin
