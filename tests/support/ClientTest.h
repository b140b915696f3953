#pragma once

#include "app/Client.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "server/Library.h"
#include "support/StoryTeller.h"

#include <QTemporaryDir>

namespace sysadmin {

/// The whole client on a sample library of its own: real server in the process, real screens, scripted
/// operator for boxes and dialogs.
class ClientTest : public StoryTeller {
protected:
    ClientTest();

    /// Signs the operator on with the sample password and opens the main window, in place of the one before.
    void SignOn(const QString& operatorId);
    /// The same for an operator whom start-up may refuse; whether there is a main window then.
    bool TryToStart(const QString& operatorId);
    /// Starts the program with its sign-on dialog (`frmSignOn`), which the scripted operator fills in;
    /// whether there is a main window then.
    bool StartWithDialog();
    /// Ends the client, closes the library, and opens it again as the next start of a server does.
    void ReopenLibrary();
    /// Lets time pass for the server.
    void Advance(qint64 seconds) { *m_passed += seconds; }
    /// The library that the client works on, to look at and to change behind its back.
    const server::Library& GetLibrary() const { return *m_library; }
    Application& App() { return m_client->App(); }
    MainWindow& Window() { return *m_client->Window(); }
    /// Opens a screen by its navigation key, or brings it to the front.
    Screen& Open(const QString& key);

    /// The folder of a second sample library, beside that of the test.
    QString otherLibrary;
    /// The command line of the clients made from here on.
    QStringList arguments;

private:
    void OpenLibrary();
    void MakeClient();

    QTemporaryDir m_directory;
    std::shared_ptr<qint64> m_passed = std::make_shared<qint64>(0);
    std::shared_ptr<const server::Library> m_library;
    std::unique_ptr<Client> m_client;
};

} // namespace sysadmin
