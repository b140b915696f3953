#pragma once

#include "core/data/Communication.h"

namespace sysadmin {

/// A session of tests: signed on as TESTER unless told otherwise.
class FakeSession : public Session {
public:
    QString operatorId = "TESTER";
    QString informationCaption = "Login &Information...";
    QStringList commandLine;

    void SetCommandLine(const QStringList& arguments) override { commandLine = arguments; }
    QString InformationCaption() const override { return informationCaption; }
    QString OperatorId() const override { return operatorId; }
};

/// The communication library of tests: records its calls, answers what it was told to, shows nothing.
class FakeCommunication : public Communication {
public:
    explicit FakeCommunication(RequestChannel& theChannel)
        : channel(theChannel) {}

    RequestChannel& channel;
    FakeSession session;
    bool preCheckResult = false;  ///< true ends start-up
    bool postSignOnResult = true; ///< false ends start-up
    /// The names of the operations called, in order ("ShowSignOn", ...).
    QStringList calls;

    Session& GetSession() override { return session; }
    RequestChannel& GetChannel() override { return channel; }
    bool PreCheck() override { return Note("PreCheck"), preCheckResult; }
    void ShowSignOn() override { Note("ShowSignOn"); }
    void CloseSignOn() override { Note("CloseSignOn"); }
    bool PostSignOn() override { return Note("PostSignOn"), postSignOnResult; }
    QString LibraryName() const override { return "Test Library"; }
    QString ServerName() const override { return "settings.example.org"; }
    void ShowLoginInformation(QWidget*) override { Note("ShowLoginInformation"); }
    void ChangePassword(QWidget*) override { Note("ChangePassword"); }
    /// "sealed(" + plain + ")", so that a test sees what was sealed.
    QString EncodePassword(const QString& plain) const override { return "sealed(" + plain + ")"; }

private:
    void Note(const char* operation) { calls.append(operation); }
};

} // namespace sysadmin
