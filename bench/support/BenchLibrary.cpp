#include "support/BenchLibrary.h"

#include "server/Databases.h"
#include "server/ServerConnection.h"
#include "server/store/Database.h"
#include "server/store/Records.h"

#include <cstdio>

namespace sysadmin {

BenchEnvironment::BenchEnvironment() {
    qputenv("XDG_CONFIG_HOME", m_settings.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", m_settings.path().toLocal8Bit());
    // The offscreen platform's remarks would stand between the figures.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

BenchLibrary::BenchLibrary()
    : BenchLibrary(server::StoreAddress()) {}

BenchLibrary::BenchLibrary(const server::StoreAddress& address) {
    server::LibraryOptions options;
    options.address = address.database.isEmpty() ? server::StoreAddress::InDirectory(Folder()) : address;
    options.whenMissing = server::LibraryOptions::WhenMissing::MakeSample;
    options.hashCost = server::HashCost::Least();
    QString error;
    m_library = server::Library::Open(options, &error);
    if (!m_library)
        qFatal("%s", qPrintable(error));
}

wire::EndpointFactory BenchLibrary::Endpoints() const {
    const auto databases = std::make_shared<server::Databases>(m_library);
    return [library = m_library, databases](const QString& peer) {
        return std::make_unique<server::ServerConnection>(library, peer, databases);
    };
}

void BenchLibrary::GrowVendorTypes(int count) {
    const auto database = m_library->Connect();
    const int there = database->FirstValue("SELECT COUNT(*) FROM vendor_types").toInt();
    RunInTransaction(*database, [&] {
        server::Records records(*database, m_library->GetRegistry().GetTables());
        for (int i = there; i < count; ++i) {
            const QString number = QString::number(i);
            records.Insert("vendor_types", {{"code", "T" + number}, {"name", "Vendor type " + number}});
        }
    });
}

void BenchLibrary::GrowLocations(int count) {
    const auto database = m_library->Connect();
    const int there = database->FirstValue("SELECT COUNT(*) FROM locations").toInt();
    const QVariant library = database->FirstValue("SELECT id FROM owning_libraries ORDER BY id");
    RunInTransaction(*database, [&] {
        server::Records records(*database, m_library->GetRegistry().GetTables());
        for (int i = there; i < count; ++i) {
            const QString number = QString::number(i);
            records.Insert(
                "locations",
                {{"code", "L" + number}, {"name", "Reading room " + number}, {"owning_library_id", library}});
        }
    });
}

ServerThread::ServerThread(const std::function<QTcpServer*()>& make) {
    m_inThread.moveToThread(&m_thread);
    m_thread.start();
    const auto begin = [&] {
        m_server = make();
        if (!m_server->listen(QHostAddress::LocalHost))
            qFatal("%s", qPrintable(m_server->errorString()));
        m_port = m_server->serverPort();
    };
    QMetaObject::invokeMethod(&m_inThread, begin, Qt::BlockingQueuedConnection);
}

ServerThread::~ServerThread() {
    QMetaObject::invokeMethod(
        &m_inThread, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

} // namespace sysadmin
