#include "wire/RdaToolkit.h"
#include "server/Library.h"
#include "server/SubjectReads.h"
#include "server/remote/AddressTest.h"
#include "server/remote/RemoteJobs.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/WebAddress.h"

// Where catalogers' workstations find the RDA Toolkit.

namespace sysadmin::server {

namespace toolkit = wire::rdatoolkit;

namespace {

constexpr int HttpsPort = 443;
constexpr int HttpPort = 80;

/// How far a test is; no result while it goes on.
struct TestAnswer : Prepared {
    std::optional<RemoteResult> result{};
    QString place{}; ///< "host:port"
};

/// The stored record; an empty one while nothing is stored.
Row StoredToolkit(Database& database, const Library& library) {
    const Records records(database, library.GetRegistry().GetTables());
    const auto id = records.IdWhere("rda_toolkit", "only_one", "Y");
    return id ? *records.Find("rda_toolkit", *id) : Row();
}

RemoteJobs::Work TestOf(const Library& library, const Row& stored, const QUrl& url) {
    const auto find = [](Outcome outcome) {
        return [outcome](const Patience&) { return RemoteResult{.outcome = outcome}; };
    };
    if (url.host().isEmpty())
        return find(Outcome::NoAddress);
    AddressCall call{.url = url, .user = stored["account"].toString()};
    if (const QString closed = stored["password"].toString(); !closed.isEmpty()) {
        auto secret = library.Secrets().Open(closed);
        if (!secret)
            return find(Outcome::PasswordUnreadable);
        call.password = std::make_shared<const Secret>(std::move(*secret));
    }
    return [call](const Patience& patience) { return AskAddress(call, patience); };
}

std::shared_ptr<Prepared> PrepareToolkitTest(Database& database, const Library& library,
                                             const Requester& requester, const wire::Fields& request) {
    const Row stored = StoredToolkit(database, library);
    const QUrl url(stored["address"].toString().trimmed(), QUrl::StrictMode);
    auto answer = std::make_shared<TestAnswer>();
    answer->place =
        QString("%1:%2").arg(url.host()).arg(url.port(url.scheme() == u"https" ? HttpsPort : HttpPort));
    answer->result = library.Jobs().Follow(
        QString("%1\nrda").arg(requester.session), requester.id, std::chrono::seconds(toolkit::TestSeconds),
        wire::FirstValue(request, "55"), [&] { return TestOf(library, stored, url); });
    return answer;
}

/// "TstRdaTk": asks the stored address.
Answer TestToolkit(Context& context, const wire::Fields&) {
    const auto* answer = dynamic_cast<const TestAnswer*>(context.prepared);
    if (!answer || !answer->result)
        return {answer ? status::Continues : status::NotFound};
    Answer reply;
    Put(reply.fields, "RES", WordOf(answer->result->outcome));
    Put(reply.fields, "DT", StorablePart(answer->result->detail));
    Put(reply.fields, "AT", answer->place);
    Put(reply.fields, "TO", QString::number(toolkit::TestSeconds));
    Put(reply.fields, "MS", QString::number(answer->result->milliseconds));
    return reply;
}

/// What is on has an address, and an account only where its password cannot be read on the way.
qint16 CheckToolkit(Context&, const wire::Fields&, const Row&, Row& after) {
    const QString address = after["address"].toString().trimmed();
    const bool hasAccount =
        !after["account"].toString().trimmed().isEmpty() || !after["password"].toString().isEmpty();
    const bool isOn = after["enabled"].toString() == u"Y";
    return (isOn && address.isEmpty()) || (hasAccount && !wire::IsEncryptedAddress(address))
               ? status::ColumnError
               : status::Ok;
}

} // namespace

void RegisterRdaToolkit(Registry& registry) {
    registry.AddSubject({
        .table = "rda_toolkit",
        .area = Area::Cataloging,
        .requests = {.get = "GetRdaTk", .update = "UpdRdaTk"},
        .fields = {SubjectField::Flag("On", "enabled"),
                   SubjectField::Text("Ad", "address", wire::WebAddressLength).Checked(wire::IsWebAddress),
                   SubjectField::Text("Us", "account", toolkit::AccountLength),
                   SubjectField::Secret("PW", "PC", "password", toolkit::PasswordLength)},
        .single = true,
        .checkPut = CheckToolkit,
    });
    registry.AddRequest({.name = "TstRdaTk",
                         .area = Area::Cataloging,
                         .access = Access::Edit,
                         .handler = TestToolkit,
                         .prepare = PrepareToolkitTest});
}

} // namespace sysadmin::server
