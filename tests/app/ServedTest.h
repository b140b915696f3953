#pragma once

#include "app/Client.h"
#include "app/ServerRig.h"
#include "comm/NetworkTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/WireChannel.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "server/Library.h"
#include "support/ControlTest.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <QDialog>
#include <QLabel>

namespace sysadmin {

/// The communication library and the settings server with a real network between them, on a sample library.
class ServedTest : public ControlTest {
protected:
    /// Makes the library, with cheap password hashes, and starts the server on it.
    void Serve(const server::StoreAddress& address, const QStringList& options) {
        m_address = address;
        OpenLibrary();
        m_rig = std::make_unique<ServerRig>(options);
        TrustStore().Keep(Rig().Address(), Trust::Accepted(Fingerprint()));
    }
    void TearDown() override {
        if (m_client)
            m_client->Window()->Abort = true;
        m_client.reset();
        if (m_rig)
            TrustStore().Forget(Rig().Address());
    }

    ServerRig& Rig() { return *m_rig; }
    QByteArray Fingerprint() { return QByteArray::fromHex(Rig().Fingerprint().toLatin1()); }

    std::unique_ptr<WireChannel> SignedOnChannel(const QString& operatorId = "SYSADMIN") {
        auto channel = std::make_unique<WireChannel>();
        channel->Use(std::make_unique<NetworkTransport>(Rig().Address(), prompter));
        SessionData session;
        const Greeting greeting = channel->Hello();
        session.SetCredentials(
            operatorId, PasswordEncoder(greeting.publicKey, greeting.nonce)
                            .Encode(testing::SamplePassword(operatorId), wire::PasswordPurpose::SignOn));
        EXPECT_TRUE(channel->SignOn(session)) << channel->LastProblem().toStdString();
        return channel;
    }

    static qint16 Add(WireChannel& channel, const QString& code) {
        channel.PutField("Cd", code);
        channel.PutField("Nm", "Type " + code);
        return channel.SendRequest("AddVenTp");
    }
    /// Adds it, however often the client gives up: the operator presses "Save" again. The code.
    static QString AddInTheEnd(WireChannel& channel, const QString& code) {
        qint16 result = wire::status::CommunicationsFailure;
        for (int tries = 0; tries < 5 && result == wire::status::CommunicationsFailure; ++tries)
            result = Add(channel, code);
        EXPECT_EQ(result, wire::status::Ok)
            << code.toStdString() << ": " << channel.LastProblem().toStdString();
        return code;
    }
    static QStringList Codes(WireChannel& channel) {
        EXPECT_EQ(channel.SendRequest("LstVenTp"), wire::status::Ok) << channel.LastProblem().toStdString();
        return testing::ValuesOf(channel.ReplyFields(), "Cd");
    }

    static QStringList Sorted(QStringList codes) {
        codes.sort();
        return codes;
    }

    /// A whole client on this server, signed on as SYSADMIN.
    std::unique_ptr<Client> StartClient() {
        CommandLine line;
        line.server = Rig().Address();
        auto client = std::make_unique<Client>(prompter, line);
        EXPECT_EQ(client->Comm().SignOnDirectly("SYSADMIN", testing::SamplePassword("SYSADMIN")), "");
        EXPECT_TRUE(client->Start({"--server", line.server->Text()}));
        return client;
    }
    /// One with the vendor types' screen in front.
    void OpenVendorTypes() {
        m_client = StartClient();
        m_client->Window()->OpenScreen("Acquisitions_VendorTypes");
        front = m_client->Window()->FindScreen("Acquisitions_VendorTypes");
        ASSERT_TRUE(front);
    }
    WireChannel& Channel() { return m_client->Comm().GetChannel(); }
    void EnterNew(const QString& code) {
        Click("cmdNew");
        Type("txtCode", code);
        Type("txtName", "Type " + code);
    }
    bool IsEditing() { return IsEnabled("cmdCancel"); }
    /// Saves while nobody answers: the operator is told, and what was entered is not lost.
    void SaveInVain() {
        Channel().SetReconnectLimit(std::chrono::milliseconds(300));
        prompter.ExpectDialogResult("frmError", [this](QDialog& dialog) {
            EXPECT_EQ(Get<QLabel>(dialog, "lblErrorMessage").text(), "Communications Failure");
            Click(dialog, "cmdOKCompress");
        });
        Click("cmdSave");
        EXPECT_TRUE(IsEditing());
    }

    /// The library itself, for what is to be done to it while the server is down.
    std::shared_ptr<const server::Library> OpenLibrary() {
        server::LibraryOptions options;
        options.address = m_address;
        options.whenMissing = server::LibraryOptions::WhenMissing::MakeSample;
        options.hashCost = server::HashCost::Least();
        QString error;
        auto library = server::Library::Open(options, &error);
        EXPECT_TRUE(library) << error.toStdString();
        return library;
    }

private:
    server::StoreAddress m_address;
    std::unique_ptr<ServerRig> m_rig;
    std::unique_ptr<Client> m_client;
};

} // namespace sysadmin
