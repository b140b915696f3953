#pragma once

#include "app/Client.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "server/Library.h"
#include "support/ScriptedPrompter.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace sysadmin {

/// The whole client on a sample library of its own: real server in the process, real screens, scripted
/// operator for boxes and dialogs.
class ClientTest : public ::testing::Test {
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
    /// Opens a screen by its navigation key, or brings it back.
    Screen& Open(const QString& key);

    /// Control of a screen by its given name; a missing one fails the test by an exception.
    template <class Widget>
    Widget& Get(QWidget& parent, const QString& name) {
        auto* widget = parent.findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error("no control " + name.toStdString());
        return *widget;
    }
    /// Clicks a button as an operator does; a hidden or disabled one fails the test.
    void Click(QWidget& parent, const QString& button);
    void Type(QWidget& parent, const QString& lineEdit, const QString& text);

    ScriptedPrompter prompter;
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
