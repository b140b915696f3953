#pragma once

#include "server/store/Database.h"
#include "support/ClientTest.h"
#include "support/ScriptedChannel.h"

namespace sysadmin {

/// A whole job on the real client. Whatever its clients send is traced; no password that was typed may stand
/// in the trace.
class JobTest : public ClientTest {
protected:
    JobTest();
    void TearDown() override;

    using Sent = ScriptedChannel::Sent;
    /// What the clients have sent so far, in order.
    QList<Sent> Traffic() const override;
    /// The last request of this name; fails the test when there is none.
    Sent LastSent(const QString& request) const;
    /// A text that must not stand in the trace.
    QString Secret(const QString& text);

    /// The library's database. It stays open until the next day.
    server::Database& Store();
    /// Everybody goes home; the next day the same library is opened anew, and the administrator signs on.
    void NextDay();
    /// The server's answer to a request of the client as it is signed on.
    qint16 Ask(const QString& request, const wire::Fields& fields = {});
    /// The keys of the screens that the operator is offered.
    QStringList Offered();

private:
    QTemporaryDir m_folder;
    QString m_trace;
    std::unique_ptr<server::Database> m_store;
    QStringList m_secrets;
};

} // namespace sysadmin
