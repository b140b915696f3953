#include "comm/CommLibrary.h"

#include "comm/ChangePasswordDialog.h"
#include "comm/LoginInformationDialog.h"
#include "comm/NetworkTransport.h"
#include "comm/SignOnDialog.h"
#include "core/Prompter.h"
#include "core/data/UserSettings.h"
#include "wire/Status.h"

#include <QApplication>

namespace sysadmin {

namespace {

constexpr char LastOperator[] = "SignOn/Operator";
constexpr char LastServer[] = "SignOn/Server";
constexpr char LastLibrary[] = "SignOn/Library";

} // namespace

CommLibrary::CommLibrary(Prompter& prompter, const CommandLine& line, EndpointMaker makeEndpoints)
    : m_prompter(prompter)
    , m_makeEndpoints(std::move(makeEndpoints))
    , m_session(line) {
    m_channel.SetPasswordChange([this](const QString& rulesText) {
        return RunChangePassword(QApplication::activeWindow(),
                                 tr("Your password has expired. Change it to go on with your work."),
                                 rulesText);
    });
}

CommLibrary::~CommLibrary() {
    m_channel.SignOff();
}

bool CommLibrary::PreCheck() {
    const QString problem = OpenTrace();
    if (!problem.isEmpty())
        m_prompter.ShowBox(nullptr, {problem, Box::Icon::Critical});
    return !problem.isEmpty();
}

QString CommLibrary::OpenTrace() {
    const QString& fileName = m_session.Line().traceFile;
    if (fileName.isEmpty() || m_trace.IsOpen())
        return {};
    const QString problem = m_trace.Open(fileName);
    m_channel.SetTrace(problem.isEmpty() ? &m_trace : nullptr);
    return problem;
}

void CommLibrary::ShowSignOn() {
    if (!m_session.OperatorId().isEmpty())
        return;
    RunSignOn(nullptr, {});
}

void CommLibrary::RunSignOn(QWidget* parent, const QString& title) {
    const QString& given = m_session.Line().operatorId;
    const QString operatorId = given.isEmpty() ? UserSettings().value(LastOperator).toString() : given;
    m_signOn = std::make_unique<SignOnDialog>(*this, FirstChoice(), operatorId, parent);
    if (!title.isEmpty())
        m_signOn->setWindowTitle(title);
    m_prompter.RunDialog(*m_signOn);
}

std::unique_ptr<Communication> CommLibrary::SignOnElsewhere(QWidget* parent) {
    auto other = std::make_unique<CommLibrary>(m_prompter, CommandLine(), m_makeEndpoints);
    other->m_isSecond = true;
    other->RunSignOn(parent, tr("Sign On to Another Library"));
    other->CloseSignOn();
    const bool isSignedOn = !other->m_session.OperatorId().isEmpty() && other->PostSignOn();
    return isSignedOn ? std::move(other) : nullptr;
}

void CommLibrary::CloseSignOn() {
    m_signOn.reset();
}

ServerChoice CommLibrary::FirstChoice() const {
    const CommandLine& line = m_session.Line();
    if (line.server)
        return {line.server, SampleLibraryFolder()};
    if (!line.library.isEmpty())
        return {{}, line.library};
    const QSettings settings = UserSettings();
    const QString library = settings.value(LastLibrary, SampleLibraryFolder()).toString();
    return {ParseServerAddress(settings.value(LastServer).toString()), library};
}

void CommLibrary::Remember(const ServerChoice& choice) const {
    if (m_isSecond)
        return;
    QSettings settings = UserSettings();
    settings.setValue(LastOperator, m_session.OperatorId());
    settings.setValue(LastServer, choice.server ? choice.server->Text() : QString());
    if (!choice.server)
        settings.setValue(LastLibrary, choice.library);
}

Greeting CommLibrary::Greet(const ServerChoice& choice) {
    if (!m_channel.HasTransport() || !(choice == m_choice)) {
        m_choice = choice;
        m_network = nullptr;
        if (choice.server) {
            auto transport = std::make_unique<NetworkTransport>(*choice.server, m_prompter);
            m_network = transport.get();
            m_channel.Use(std::move(transport));
        } else {
            m_channel.Use(std::make_unique<EmbeddedTransport>(choice.library, m_makeEndpoints));
        }
    }
    m_greeting = m_channel.Hello();
    m_encoder = PasswordEncoder(m_greeting.publicKey, m_greeting.nonce);
    if (m_greeting.problem.isEmpty() && !m_encoder.IsUsable())
        m_greeting.problem = tr("The server has no key to which a password could be sealed.");
    return m_greeting;
}

QString CommLibrary::TrySignOn(const ServerChoice& choice, const QString& operatorId, QString& password) {
    // The connection may have ended while the operator was typing, and its nonce with it.
    Greet(choice);
    const QString sealed = m_encoder.Encode(password, wire::PasswordPurpose::SignOn);
    WipeText(password);
    if (sealed.isEmpty())
        return m_greeting.problem;
    m_session.SetCredentials(operatorId, sealed);
    if (!m_channel.SignOn(m_session))
        return m_channel.LastProblem();
    Remember(choice);
    return {};
}

bool CommLibrary::CertificateChanged() const {
    return m_network && m_network->Offer();
}

bool CommLibrary::AcceptCertificate() {
    if (!CertificateChanged() || !m_choice.server)
        return false;
    const CertificateOffer offer = *m_network->Offer();
    const QString question =
        tr("Do this only when the administrator of %1 has confirmed that its certificate was changed, and "
           "that its fingerprint (SHA-256) is now\r\n\r\n%2\r\n\r\n"
           "Trust the new certificate from now on?")
            .arg(m_choice.server->Text(), FingerprintText(offer.fingerprint));
    if (!m_prompter.ShowBox(m_signOn.get(), {.text = question,
                                             .icon = Box::Icon::Exclamation,
                                             .buttons = Box::Buttons::YesNo,
                                             .careful = true}))
        return false;
    TrustStore().Keep(*m_choice.server, offer.trust);
    return true;
}

QString CommLibrary::ChooseFolder(QWidget* parent, const QString& start) {
    return m_prompter.AskFolder(parent, tr("Folder of the Library"), start);
}

QString CommLibrary::SignOnDirectly(const QString& operatorId, QString password) {
    const QString problem = OpenTrace();
    return problem.isEmpty() ? TrySignOn(FirstChoice(), operatorId, password) : problem;
}

bool CommLibrary::PostSignOn() {
    const SignedOnOperator& signedOn = m_session.Operator();
    if (signedOn.mustChangePassword)
        return RunChangePassword(nullptr, tr("Your password has to be changed before you can go on."),
                                 signedOn.rulesText);
    if (signedOn.passwordDaysLeft) {
        const int days = *signedOn.passwordDaysLeft;
        const QString when = days <= 0   ? tr("Your password expires today.")
                             : days == 1 ? tr("Your password expires tomorrow.")
                                         : tr("Your password expires in %1 days.").arg(days);
        const QString question = when + "\r\n\r\n" + tr("Change it now?");
        if (m_prompter.ShowBox(nullptr, {question, Box::Icon::Question, Box::Buttons::YesNo}))
            ChangePassword(nullptr);
    }
    return true;
}

void CommLibrary::ShowLoginInformation(QWidget* parent) {
    const SignedOnOperator& signedOn = m_session.Operator();
    const ConnectionInfo connection = m_channel.Describe();
    LoginInformationDialog dialog({signedOn.id, signedOn.name, m_greeting.libraryName, connection.server,
                                   connection.connection, signedOn.since},
                                  parent);
    m_prompter.RunDialog(dialog);
}

QString CommLibrary::ServerName() const {
    return m_choice.server ? m_choice.server->host : tr("this computer");
}

void CommLibrary::ChangePassword(QWidget* parent) {
    // Without the library's own text the dialog has one of its own.
    const bool known = m_channel.SendRequest("GET_PWD_DISPLAY_TEXT") == wire::status::Ok;
    RunChangePassword(parent, {}, known ? m_channel.GetField("PDT") : QString());
}

bool CommLibrary::RunChangePassword(QWidget* parent, const QString& reason, const QString& rulesText) {
    const auto change = [this](const QString& oldPassword, const QString& newPassword) {
        return m_channel.ChangeOwnPassword(m_encoder.Encode(oldPassword, wire::PasswordPurpose::Confirm),
                                           m_encoder.Encode(newPassword, wire::PasswordPurpose::Set));
    };
    ChangePasswordDialog dialog(reason, rulesText, change, parent);
    if (!m_prompter.RunDialog(dialog))
        return false;
    m_session.PasswordChanged();
    m_prompter.ShowBox(parent, {tr("Your password has been changed."), Box::Icon::Information});
    return true;
}

QString CommLibrary::EncodePassword(const QString& plain) const {
    return m_encoder.Encode(plain, wire::PasswordPurpose::Set);
}

} // namespace sysadmin
