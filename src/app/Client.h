#pragma once

#include "comm/CommLibrary.h"
#include "core/Application.h"

#include <memory>

class QApplication;

namespace sysadmin {

class MainWindow;

/// The client program put together: communication library, application, all screens.
class Client {
public:
    /// `makeEndpoints` opens libraries on this computer; the settings server's own unless a test says
    /// otherwise.
    Client(Prompter& prompter, const CommandLine& line, EndpointMaker makeEndpoints = {});
    ~Client();

    /// Signs the operator on and shows the main window; false when the program ends here.
    bool Start(const QStringList& arguments);

    Application& App() { return m_application; }
    CommLibrary& Comm() { return m_comm; }
    /// Null before a successful start.
    MainWindow* Window() const { return m_window.get(); }
    /// Closes and forgets the main window.
    void CloseWindow();

private:
    CommLibrary m_comm;
    Application m_application;
    std::unique_ptr<MainWindow> m_window;
};

/// What the program says of itself to the window system, and its appearance.
void SetUpProgram(QApplication& program, const CommandLine& line);

/// Contributes the screens of every subsystem.
void AddAllScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
