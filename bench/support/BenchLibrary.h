#pragma once

#include "core/Prompter.h"
#include "server/Library.h"
#include "wire/Endpoint.h"

#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>

#include <functional>

namespace sysadmin {

/// What every benchmark begins with, before the application object: no display, and settings that are not the
/// user's.
class BenchEnvironment {
public:
    BenchEnvironment();

private:
    QTemporaryDir m_settings;
};

/// The prompter of benchmarks: says yes to everything, shows nothing.
class YesPrompter : public Prompter {
public:
    bool ShowBox(QWidget*, const Box&) override { return true; }
    bool RunDialog(QDialog&) override { return true; }
    QString AskSaveFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString AskOpenFile(QWidget*, const QString&, const QString&) override { return {}; }
    QString AskFolder(QWidget*, const QString&, const QString&) override { return {}; }
};

/// A sample library, in a folder that goes with it unless it is said where.
class BenchLibrary {
public:
    BenchLibrary();
    /// The same in a database elsewhere.
    explicit BenchLibrary(const server::StoreAddress& address);

    const std::shared_ptr<const server::Library>& Get() const { return m_library; }
    QString Folder() const { return m_folder.filePath("library"); }
    /// Makes the server's ends of connections to this library, whatever the folder asked for.
    wire::EndpointFactory Endpoints() const;
    /// Adds vendor types until there are so many.
    void GrowVendorTypes(int count);
    /// The same with locations.
    void GrowLocations(int count);

private:
    QTemporaryDir m_folder;
    std::shared_ptr<const server::Library> m_library;
};

/// A TCP server in a thread of its own, on a free port of this machine.
class ServerThread {
public:
    explicit ServerThread(const std::function<QTcpServer*()>& make);
    ~ServerThread();
    quint16 Port() const { return m_port; }

private:
    QThread m_thread;
    QObject m_inThread;
    QTcpServer* m_server = nullptr;
    quint16 m_port = 0;
};

} // namespace sysadmin
