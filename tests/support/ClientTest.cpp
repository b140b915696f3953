#include "support/ClientTest.h"

#include "comm/CommandLine.h"
#include "server/Embedded.h"
#include "server/ServerConnection.h"
#include "support/TestServer.h"

namespace sysadmin {

ClientTest::ClientTest() {
    arguments = {"--library", m_directory.path()}; // and not where another test signed on last
    OpenLibrary();
}

void ClientTest::OpenLibrary() {
    server::LibraryOptions options;
    options.address = server::StoreAddress::InDirectory(m_directory.path());
    options.whenMissing = server::LibraryOptions::WhenMissing::MakeSample;
    options.hashCost = server::HashCost::Least();
    options.now = [passed = m_passed] { return QDateTime::currentDateTimeUtc().addSecs(*passed); };
    QString error;
    m_library = server::Library::Open(options, &error);
    if (!m_library)
        throw std::runtime_error(error.toStdString());
}

void ClientTest::SignOn(const QString& operatorId) {
    if (!TryToStart(operatorId))
        throw std::runtime_error("no main window for " + operatorId.toStdString());
}

void ClientTest::MakeClient() {
    if (m_client && m_client->Window())
        m_client->Window()->Abort = true;
    m_client.reset();
    m_client = std::make_unique<Client>(
        prompter, ParseCommandLine(arguments).commandLine,
        [this, library = m_library](const QString& folder, QString* error) {
            if (!otherLibrary.isEmpty() && folder == otherLibrary)
                return server::MakeEmbeddedEndpoint(folder, error);
            return wire::EndpointFactory([library](const QString& peer) -> std::unique_ptr<wire::Endpoint> {
                return std::make_unique<server::ServerConnection>(library, peer);
            });
        });
}

bool ClientTest::TryToStart(const QString& operatorId) {
    MakeClient();
    const QString problem = m_client->Comm().SignOnDirectly(operatorId, testing::SamplePassword(operatorId));
    if (!problem.isEmpty())
        throw std::runtime_error(operatorId.toStdString() + " cannot sign on: " + problem.toStdString());
    return m_client->Start(arguments);
}

bool ClientTest::StartWithDialog() {
    MakeClient();
    return m_client->Start(arguments);
}

void ClientTest::ReopenLibrary() {
    if (m_client && m_client->Window())
        m_client->Window()->Abort = true;
    m_client.reset();
    m_library.reset();
    OpenLibrary();
}

Screen& ClientTest::Open(const QString& key) {
    Window().OpenScreen(key);
    Screen* screen = Window().FindScreen(key);
    if (!screen)
        throw std::runtime_error("no screen " + key.toStdString());
    front = screen;
    return *screen;
}

} // namespace sysadmin
