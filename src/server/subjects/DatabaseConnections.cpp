#include "server/Library.h"
#include "server/SubjectReads.h"
#include "server/remote/RemoteJobs.h"
#include "server/remote/SettingsPeer.h"
#include "server/remote/TargetTest.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchDatabases.h"
#include "wire/Bib1.h"
#include "wire/SearchDatabases.h"

#include <QRegularExpression>

namespace sysadmin::server {

namespace databases = wire::databases;

namespace {

constexpr int UsualTimeout = 30;

/// What became of the work with another system that a request is about; none while it goes on.
struct RemoteAnswer : Prepared {
    std::optional<RemoteResult> result{};
    QString place{}; ///< "host:port"
    std::chrono::seconds timeout{};
};

/// A definition with what calling its server takes.
struct Called {
    qint64 id = 0;
    Row row{};
    std::shared_ptr<const Secret> password{};
    bool unreadable = false; ///< there is a password, but not for this server

    bool IsTarget() const { return row["type"].toString() == databases::TargetType; }
    QString Place() const {
        const DatabaseService& service = DatabaseServices()[IsTarget() ? 0 : 3];
        return row[service.address].toString().trimmed() + ':' + row[service.port].toString();
    }
    std::chrono::seconds Timeout() const {
        const int seconds = row["timeout"].toInt();
        return std::chrono::seconds(seconds > 0 ? seconds : UsualTimeout);
    }
};

std::optional<Called> FindCalled(Database& database, const Library& library, const wire::Fields& request) {
    const Records records(database, library.GetRegistry().GetTables());
    std::optional<qint64> id;
    if (const auto code = Sent(request, "C"))
        id = records.IdOfText("search_databases", "code", *code);
    else
        id = records.IdWhere("search_databases", "id", Sent(request, "DBI").value_or(QString()).toLongLong());
    if (!id)
        return std::nullopt;
    Called called{.id = *id, .row = *records.Find("search_databases", *id)};
    if (const QString closed = called.row["password"].toString(); !closed.isEmpty()) {
        if (auto secret = library.Secrets().Open(closed))
            called.password = std::make_shared<const Secret>(std::move(*secret));
        else
            called.unreadable = true;
    }
    return called;
}

/// Those of the search code; "*" stands for the first one.
SearchAttributes AttributesOf(Database& database, qint64 id, const QString& code) {
    SearchAttributes attributes;
    const auto row = database.FirstRow(
        "SELECT use_attribute, relation_attribute, position_attribute, structure_attribute, "
        "completeness_attribute, joins_words, left_truncation, both_truncation, right_truncation FROM "
        "search_database_attributes WHERE database_id=? AND (code=? OR ?='*') ORDER BY id LIMIT 1",
        {id, code, code});
    if (!row)
        return attributes;
    const auto number = [&](int column) { return row->value(column).toInt(); };
    const auto flag = [&](int column) { return row->value(column).toString() == u"Y"; };
    attributes.use = number(0);
    attributes.relation = number(1);
    attributes.position = number(2);
    attributes.structure = number(3);
    attributes.completeness = number(4);
    attributes.joinsWords = flag(5);
    attributes.truncation = flag(6) ? 2 : flag(7) ? 3 : flag(8) ? 1 : 0;
    return attributes;
}

RemoteJobs::Work FindOutNothing(Outcome outcome) {
    return [outcome](const Patience&) { return RemoteResult{.outcome = outcome}; };
}

RemoteJobs::Work CallOf(const Called& called, bool readsClusters) {
    PeerCall call;
    call.host = called.row["administration_address"].toString().trimmed();
    call.port = quint16(called.row["administration_port"].toInt());
    call.user = called.row["user_id"].toString();
    call.password = called.password;
    call.trusted = called.row["trusted_certificate"].toString();
    call.readsClusters = readsClusters;
    if (call.host.isEmpty() || call.port == 0)
        return FindOutNothing(Outcome::NoAddress);
    if (called.unreadable)
        return FindOutNothing(Outcome::PasswordUnreadable);
    return [call](const Patience& patience) { return CallPeer(call, patience); };
}

RemoteJobs::Work TestOf(Database& database, const Called& called, const wire::Fields& request) {
    if (!called.IsTarget())
        return CallOf(called, false);
    TargetCall call;
    call.host = called.row["opac_address"].toString().trimmed();
    call.port = quint16(called.row["opac_port"].toInt());
    call.database = called.row["database_name"].toString().trimmed();
    call.user = called.row["user_id"].toString();
    call.password = called.password;
    const int set = called.row["character_set"].toInt();
    if (set > 0 && set <= CharacterSets().size())
        call.characterSet = CharacterSets()[set - 1].converter;
    call.attributes = AttributesOf(database, called.id, Sent(request, "ASC").value_or(QString()));
    call.term = Sent(request, "TRM").value_or(QString()).left(databases::NameLength);
    if (call.host.isEmpty() || call.port == 0)
        return FindOutNothing(Outcome::NoAddress);
    if (called.unreadable)
        return FindOutNothing(Outcome::PasswordUnreadable);
    return [call](const Patience& patience) { return TryTarget(call, patience); };
}

QString KeyOf(const Requester& requester, const char* what, const wire::Fields& request) {
    QStringList parts{QString::number(requester.session), what};
    for (const char* tag : {"C", "DBI", "ASC", "TRM"})
        parts << Sent(request, tag).value_or(QString());
    return parts.join('\n');
}

/// Begins the work, or looks how far it is: with "55" = "Y" a request goes on with what it began, with "N" it
/// ends it.
std::shared_ptr<Prepared> Follow(Database& database, const Library& library, const Requester& requester,
                                 const wire::Fields& request, const char* what,
                                 const std::function<RemoteJobs::Work(const Called&)>& workOf) {
    const auto called = FindCalled(database, library, request);
    if (!called)
        return nullptr;
    auto answer = std::make_shared<RemoteAnswer>();
    answer->place = called->Place();
    answer->timeout = called->Timeout();
    answer->result = library.Jobs().Follow(KeyOf(requester, what, request), requester.id, called->Timeout(),
                                           wire::FirstValue(request, "55"), [&] { return workOf(*called); });
    return answer;
}

std::shared_ptr<Prepared> PrepareDatabaseTest(Database& database, const Library& library,
                                              const Requester& requester, const wire::Fields& request) {
    return Follow(database, library, requester, request, "test",
                  [&](const Called& called) { return TestOf(database, called, request); });
}

/// Universal borrowing needs the other library's server: whether it is there is tried before the definition
/// is saved that begins to rely on it. Until that is known the save answers that it goes on.
std::shared_ptr<Prepared> PrepareSave(Database& database, const Library& library, const Requester& requester,
                                      const wire::Fields& request) {
    constexpr std::chrono::seconds Longest{5};
    if (wire::FirstValue(request, "DBU") != u"Y" ||
        wire::FirstValue(request, "Pr") != databases::SystemType ||
        wire::FirstValue(request, "C") == databases::LocalCode)
        return nullptr;
    const QString host = wire::FirstValue(request, "ADRS").trimmed();
    const QString port = wire::FirstValue(request, "PSYS").trimmed();
    const auto before = FindCalled(database, library, request);
    if (before && before->row["universal_borrowing"].toString() == u"Y" &&
        before->row["administration_address"].toString() == host &&
        before->row["administration_port"].toString() == port)
        return nullptr;
    auto tried = std::make_shared<ReachTried>();
    tried->outcome = Outcome::NoAddress;
    if (host.isEmpty() || port.toUShort() == 0)
        return tried;
    const QString key = QStringList{QString::number(requester.session), "reach", host, port}.join('\n');
    const auto reach = [host, port](const Patience& patience) {
        return RemoteResult{.outcome = IsReachable(host, port.toUShort(), patience) ? Outcome::Connected
                                                                                    : Outcome::Unreachable};
    };
    const std::optional<RemoteResult> result = library.Jobs().Follow(
        key, requester.id, Longest, wire::FirstValue(request, "55"), [&] { return reach; });
    tried->outcome = result ? std::optional(result->outcome) : std::nullopt;
    return tried;
}

void PutOutcome(const RemoteAnswer& answer, ReplyFields& reply) {
    Put(reply, "RES", WordOf(answer.result->outcome));
    Put(reply, "DT", StorablePart(answer.result->detail));
    Put(reply, "AT", answer.place);
    Put(reply, "TO", QString::number(answer.timeout.count()));
    Put(reply, "MS", QString::number(answer.result->milliseconds));
    Put(reply, "FP", answer.result->fingerprint);
}

Answer TestDatabase(Context& context, const wire::Fields&) {
    const auto* answer = dynamic_cast<const RemoteAnswer*>(context.prepared);
    if (!answer)
        return {status::NotFound};
    if (!answer->result)
        return {status::Continues};
    const RemoteResult& result = *answer->result;
    Answer reply;
    PutOutcome(*answer, reply.fields);
    Put(reply.fields, "TNM", StorablePart(result.name));
    Put(reply.fields, "TVR", StorablePart(result.version));
    Put(reply.fields, "HIT", result.hits < 0 ? QString() : QString::number(result.hits));
    Put(reply.fields, "REC", StorablePart(result.record));
    return reply;
}

bool Refreshes(const wire::Fields& request) {
    return wire::FirstValue(request, "CRFSH") == u"Y";
}

std::shared_ptr<Prepared> PrepareRefresh(Database& database, const Library& library,
                                         const Requester& requester, const wire::Fields& request) {
    if (!Refreshes(request) || !Rights::Of(database, requester.row).MayEdit(Area::System))
        return nullptr;
    return Follow(database, library, requester, request, "refresh", [](const Called& called) {
        return called.IsTarget() ? FindOutNothing(Outcome::NoAddress) : CallOf(called, true);
    });
}

/// Makes the rows that belong to an owner those that were told; a row keeps its id as long as it is told.
template <class Told>
QHash<qint64, qint64> Store(Context& context, const QString& table, const Row& owner,
                            const QString& ownerColumn, const QList<Told>& told) {
    QHash<qint64, qint64> rows; // of those that were there, by the other server's id
    context.database.Each(
        "SELECT remote_id, id FROM " + table + " WHERE " + ownerColumn + "=?", {owner[ownerColumn]},
        [&](const ResultRow& row) { rows.insert(row.value(0).toLongLong(), row.value(1).toLongLong()); });
    QHash<qint64, qint64> kept;
    for (const Told& one : told) {
        if (kept.contains(one.id))
            continue;
        Row row = owner;
        row.insert("remote_id", one.id);
        row.insert("code", StorablePart(one.code).left(CodeLength));
        row.insert("name", StorablePart(one.name).left(NameLength));
        if (const qint64 known = rows.take(one.id); known != 0) {
            context.records.Update(table, known, row);
            kept.insert(one.id, known);
        } else {
            kept.insert(one.id, context.records.Insert(table, row));
        }
    }
    for (const qint64 gone : rows)
        context.records.Remove(table, gone);
    return kept;
}

void StoreClusters(Context& context, qint64 database, const QList<RemoteCluster>& clusters) {
    const Row owner{{"database_id", database}};
    const auto kept = Store(context, "remote_clusters", owner, "database_id", clusters);
    for (const RemoteCluster& cluster : clusters) {
        Row groupOwner = owner;
        groupOwner.insert("cluster_id", kept[cluster.id]);
        Store(context, "remote_patron_groups", groupOwner, "cluster_id", cluster.groups);
    }
}

Answer RefreshClusters(Context& context, const wire::Fields& request) {
    const auto id =
        context.records.IdWhere("search_databases", "id", wire::FirstValue(request, "DBI").toLongLong());
    if (!id)
        return {status::NotFound};
    Answer reply;
    if (Refreshes(request)) {
        if (!context.rights.MayEdit(Area::System))
            return {status::NotAuthorised};
        const auto* answer = dynamic_cast<const RemoteAnswer*>(context.prepared);
        if (!answer)
            return {status::NotFound};
        if (!answer->result)
            return {status::Continues};
        const RemoteResult& result = *answer->result;
        if (result.outcome == Outcome::Connected) {
            StoreClusters(context, *id, result.clusters);
            const Row row = *context.records.Find("search_databases", *id);
            if (result.vouchedFor && row["trusted_certificate"].toString().isEmpty())
                context.database.Run("UPDATE search_databases SET trusted_certificate=? WHERE id=?",
                                     {TrustedByAuthority, *id});
        }
        PutOutcome(*answer, reply.fields);
    }
    context.database.Each(
        "SELECT remote_id, name, code FROM remote_clusters WHERE database_id=? ORDER BY name, id", {*id},
        [&](const ResultRow& row) {
            Put(reply.fields, "CID", row.value(0).toString());
            Put(reply.fields, "CNM", row.value(1).toString());
            Put(reply.fields, "CCD", row.value(2).toString());
        });
    return reply;
}

/// Accepts the certificate of a database's settings server.
Answer Trust(Context& context, const wire::Fields& request) {
    static const QRegularExpression form("^[0-9a-f]{64}\\z");
    const auto id = context.records.IdOfText("search_databases", "code", wire::FirstValue(request, "C"));
    const QString fingerprint = wire::FirstValue(request, "FP");
    if (!id)
        return {status::NotFound};
    if (!form.match(fingerprint).hasMatch())
        return {status::ColumnError};
    context.records.Update("search_databases", *id, {{"trusted_certificate", fingerprint}});
    return {};
}

} // namespace

void RegisterDatabaseConnections(Registry& registry) {
    registry.AddRequest({.name = "TstDB",
                         .area = Area::System,
                         .access = Access::Edit,
                         .handler = TestDatabase,
                         .prepare = PrepareDatabaseTest});
    registry.AddRequest({.name = "RefreshClusterCache",
                         .area = Area::System,
                         .access = Access::View,
                         .changes = true,
                         .handler = RefreshClusters,
                         .prepare = PrepareRefresh});
    for (const char* request : {"AddDB", "UpdDB"})
        registry.Prepare(request, PrepareSave);
    registry.AddChange("TrustDB", Area::System, Trust);
}

} // namespace sysadmin::server
