#pragma once

#include "app/ServerRig.h"
#include "comm/NetworkTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/WireChannel.h"
#include "server/Library.h"
#include "support/ScriptedPrompter.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin {

/// The communication library and the settings server with a real network between them, on a sample library.
class ServedTest : public ::testing::Test {
protected:
    /// Makes the library, with cheap password hashes, and starts the server on it.
    void Serve(const server::StoreAddress& address, const QStringList& options) {
        m_address = address;
        OpenLibrary();
        m_rig = std::make_unique<ServerRig>(options);
        TrustStore().Keep(Rig().Address(), Trust::Accepted(Fingerprint()));
    }
    void TearDown() override {
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
    static QStringList Codes(WireChannel& channel) {
        EXPECT_EQ(channel.SendRequest("LstVenTp"), wire::status::Ok) << channel.LastProblem().toStdString();
        return testing::ValuesOf(channel.ReplyFields(), "Cd");
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

    ScriptedPrompter prompter;

private:
    server::StoreAddress m_address;
    std::unique_ptr<ServerRig> m_rig;
};

} // namespace sysadmin
