#include "server/ServerConnection.h"

#include "server/OperatorPasswords.h"
#include "server/RecordHistory.h"
#include "server/SessionView.h"
#include "server/SignOn.h"
#include "server/store/Database.h"
#include "wire/Codec.h"
#include "wire/ManyChanges.h"

#include <future>

namespace sysadmin::server {

namespace {

/// A connection that keeps guessing passwords is cut off; operators are locked by their own count.
constexpr int MostWrongSignOns = 10;
/// How exact the time of a session's last use is.
constexpr qint64 TouchSeconds = 60;

QByteArray Encoded(quint64 number, const Answer& answer, const QStringList& changed = {}) {
    // Of the refusals, those say more that are about a lock, an expired password or somebody else's change.
    const bool withFields = answer.status == status::Ok || answer.status == status::Continues ||
                            answer.status == status::InvalidSignOn ||
                            answer.status == status::NotAuthorised ||
                            answer.status == status::RecordChanged || answer.status == status::NotFound ||
                            answer.status == wire::many::NotDone;
    return wire::Encode(number, answer.status, withFields ? answer.fields.Encoded() : wire::EncodedFields(),
                        changed);
}

qint16 StatusOf(const StoreError& error) {
    switch (error.GetKind()) {
    case StoreError::Kind::Duplicate:
        return status::DuplicateRecord;
    case StoreError::Kind::Referenced:
        return status::InUse;
    case StoreError::Kind::Busy:
        return status::CommunicationsFailure;
    case StoreError::Kind::Unstorable:
        return status::ColumnError;
    default:
        return status::TableError;
    }
}

} // namespace

ServerConnection::ServerConnection(std::shared_ptr<const Library> library, const QString& peer,
                                   std::shared_ptr<Databases> databases)
    : m_library(std::move(library))
    , m_peer(peer)
    , m_databases(databases ? std::move(databases) : std::make_shared<Databases>(m_library)) {}

ServerConnection::~ServerConnection() = default;

bool ServerConnection::Writes(const QByteArray& request) const {
    for (const char* name : {"SignOn", "Resume", "SignOff", "ChgOwnPwd"})
        if (request == name)
            return true;
    const RequestRule* rule = m_library->GetRegistry().Find(QString::fromUtf8(request));
    return rule && rule->changes;
}

qint64 ServerConnection::MessageLimit() const {
    return IsSignedOn() ? wire::Limits().message : wire::Limits::BeforeSignOn().message;
}

Database& ServerConnection::GetDatabase() {
    return m_databases->OfThisThread();
}

std::optional<QByteArray> ServerConnection::Handle(const QByteArray& message) {
    std::promise<std::optional<QByteArray>> reply;
    HandleThen(message, [&](std::optional<QByteArray> answer) { reply.set_value(std::move(answer)); });
    return reply.get_future().get();
}

void ServerConnection::HandleThen(const QByteArray& message, const Answered& answered) {
    std::optional<QByteArray> reply = HandleMessage(message);
    Database* const database = m_databases->KeptByThisThread();
    if (!reply || !database || !database->HasCommitted()) {
        answered(std::move(reply));
        return;
    }
    database->WhenOnDisk([library = m_library, databases = m_databases, reply, answered](bool onDisk) {
        if (!onDisk) { // whether the change was kept is known to whoever resumes the session
            library->Errors().Write("The library's log cannot be brought to the disk.");
            databases->RenewAll();
        }
        answered(onDisk ? reply : std::nullopt);
    });
}

std::optional<QByteArray> ServerConnection::HandleMessage(const QByteArray& message) {
    const auto request =
        wire::DecodeRequest(message, IsSignedOn() ? wire::Limits() : wire::Limits::BeforeSignOn());
    if (!request)
        return std::nullopt;
    try {
        if (request->number != 0)
            return HandleNumbered(*request);
        try {
            return HandleSessionRequest(*request);
        } catch (const StoreError& error) {
            // A connection that was idle while the database went away and came back tells so only now. These
            // requests may be carried out again; the client does not repeat them, what is sealed in them
            // being good for one connection.
            if (error.GetKind() != StoreError::Kind::Lost || request->name == "ChgOwnPwd")
                throw;
            m_databases->RenewAll();
            return HandleSessionRequest(*request);
        }
    } catch (const StoreError& error) {
        m_library->Errors().Write(request->name + ": " + error.what());
        if (error.GetKind() == StoreError::Kind::Lost) {
            m_databases->RenewAll();
            if (request->number != 0)
                return std::nullopt; // whether the change was kept is known to whoever resumes the session
        }
        if (request->number != 0) {
            m_number = request->number;
            m_resumed = false;
        }
        return Encoded(request->number, {StatusOf(error)});
    } catch (const std::exception& error) { // out of memory, say: nothing of the request was kept
        m_library->Errors().Write(request->name + ": " + error.what());
        m_databases->CloseOfThisThread(); // its transaction may not have ended
        if (request->number != 0) {
            m_number = request->number;
            m_resumed = false;
        }
        return Encoded(request->number, {status::TableError});
    }
}

std::optional<QByteArray> ServerConnection::HandleSessionRequest(const wire::Request& request) {
    Answer answer;
    if (request.name == "Hello") {
        answer = Hello();
    } else if (request.name == "SignOn") {
        if (m_wrongSignOns >= MostWrongSignOns)
            return std::nullopt;
        const SignOnResult result = SignOn(GetDatabase(), *m_library, request.fields, m_peer, m_nonce);
        answer = result.answer;
        if (result.sessionRow != 0)
            m_nonce.clear(); // it is the session's now
        m_session = result.sessionRow;
        m_operator = result.operatorId;
        if (IsSignedOn())
            m_library->Seen().Begin(m_session);
        m_epoch = 0;
        m_number = 0;
        m_resumed = false;
        m_wrongSignOns = result.sessionRow != 0 ? 0 : m_wrongSignOns + 1;
    } else if (request.name == "Resume") {
        const QString token = wire::FirstValue(request.fields, "SID");
        m_session = 0;
        RunInTransaction(GetDatabase(), [&] {
            const auto session = Sessions(GetDatabase()).Resume(token, m_library->Now());
            m_session = session ? session->row : 0;
            m_operator = session ? session->requester.id : QString();
            m_epoch = session ? session->epoch : 0;
            m_number = session ? session->number : 0;
        });
        m_resumed = true;
        answer.status = IsSignedOn() ? status::Ok : status::InvalidSignOn;
    } else if (request.name == "SignOff") {
        if (IsSignedOn())
            RunInTransaction(GetDatabase(), [&] { Sessions(GetDatabase()).End(m_session); });
        m_session = 0;
    } else if (request.name == "ChgOwnPwd") {
        answer = ChangePassword(request.fields);
    } else {
        answer.status = status::UnknownRequest;
    }
    return Encoded(0, answer);
}

Answer ServerConnection::Hello() {
    Database& database = GetDatabase();
    Answer answer;
    Put(answer.fields, "PK", QString::fromLatin1(m_library->GetSealingKeys().publicKey.toBase64()));
    if (m_nonce.isEmpty())
        m_nonce = RandomToken();
    Put(answer.fields, "NC", m_nonce);
    Put(answer.fields, "LIB", ReadSetting(database, "library_name"));
    if (const QString colour = ReadSetting(database, "colour"); !colour.isEmpty())
        Put(answer.fields, "CLR", colour);
    Put(answer.fields, "SWT", ReadSecurityRules(database).warningText);
    Put(answer.fields, "VER", SYSADMIN_VERSION);
    if (!IsLocalPeer(m_peer))
        return answer;
    const auto open = database.FirstColumn("SELECT operator_id FROM operators WHERE sample_password='Y'");
    for (const SampleOperator& sample : SampleOperators()) {
        if (!open.contains(QVariant(sample.id)))
            continue;
        Put(answer.fields, "HINT",
            "Try the operator " + sample.id + " with the password " + sample.password + '.');
        break;
    }
    return answer;
}

Answer ServerConnection::ChangePassword(const wire::Fields& request) {
    if (!IsSignedOn())
        return {status::InvalidSignOn};
    const auto session = LoadSession();
    if (!session) {
        m_session = 0;
        return {status::InvalidSignOn};
    }
    Requester requester = session->requester;
    requester.peer = m_peer;
    return {ChangeOwnPassword(GetDatabase(), *m_library, requester, request)};
}

Answer ServerConnection::Carry(const wire::Request& request, const RequestRule& rule,
                               const StoredSession& session, SessionView& view, Prepared* prepared,
                               ListCursor& cursor) {
    Database& database = GetDatabase();
    const Rights& rights = session.rights;
    if (session.mustChangePassword) {
        Answer refusal{status::NotAuthorised};
        Put(refusal.fields, "CHG", "Y");
        Put(refusal.fields, "PDT", ReadSecurityRules(database).rulesText);
        return refusal;
    }
    if (!rule.Allows(rights))
        return {status::NotAuthorised};
    if (auto refusal = view.Refusal(m_library->Seen()))
        return *refusal;
    Requester requester = session.requester;
    requester.peer = m_peer;
    const QDateTime now = m_library->Now();
    Context context{
        .library = *m_library,
        .database = database,
        .records = Records(database, m_library->GetRegistry().GetTables(),
                           Author{requester.id, m_peer, request.name, StoredTime(now),
                                  requester.name.isEmpty() ? requester.id : requester.name, session.row}),
        .requester = requester,
        .rights = rights,
        .now = now,
        .cursor = session.cursor,
        .prepared = prepared};
    Answer answer;
    try {
        answer = IsAsOf(request.fields) ? AnswerAsOf(context, rule, request.fields)
                                        : rule.handler(context, request.fields);
    } catch (const ReplyTooLongError&) {
        return {status::ReplyTooLong};
    }
    context.records.Finish();
    if (answer.status == status::NotFound || answer.status == status::NotAuthorised)
        answer.fields.Clear();
    view.ExplainMissing(answer);
    cursor = context.cursor;
    return answer;
}

std::optional<StoredSession> ServerConnection::LoadSession() {
    m_known = Sessions(GetDatabase()).Load(m_session, m_library->Now(), m_known);
    return m_known && m_known->epoch == m_epoch ? m_known : std::nullopt;
}

std::shared_ptr<Prepared> ServerConnection::Prepare(const wire::Request& request, const RequestRule* rule) {
    if (!rule || !rule->prepare)
        return nullptr;
    Database& database = GetDatabase();
    const auto session = LoadSession();
    if (!session || request.number <= session->number || !rule->Allows(session->rights))
        return nullptr; // it will be refused, or was answered before
    return rule->prepare(database, *m_library, session->requester, request.fields);
}

std::optional<QByteArray> ServerConnection::HandleNumbered(const wire::Request& request) {
    if (!IsSignedOn())
        return std::nullopt;
    const RequestRule* rule = m_library->GetRegistry().Find(request.name);
    const bool changes = rule && rule->changes;
    const std::shared_ptr<Prepared> prepared = Prepare(request, rule);
    std::optional<QByteArray> reply; // stays empty when the peer is to be cut off
    bool touch = false;
    std::optional<SessionView> view;
    qint16 answered = status::Ok;

    const bool writes = changes || (rule && IsAsOf(request.fields));
    RunInTransaction(GetDatabase(), writes ? Transaction::Mode::Write : Transaction::Mode::Read, [&] {
        reply.reset();
        view.reset();
        Sessions sessions(GetDatabase());
        const QDateTime now = m_library->Now();
        const auto session = LoadSession();
        if (!session)
            return false;
        const quint64 last = qMax(m_number, session->number);
        if (request.number == session->number) {
            reply = sessions.ReplyOf(m_session);
            return false;
        }
        if (request.number < last || (request.number > last + 1 && !m_resumed))
            return false;
        touch = session->usedAt.secsTo(now) > TouchSeconds;
        ListCursor cursor;
        static const RequestRule nobodys;
        view.emplace(GetDatabase(), SessionStart{session->row, session->startChange}, session->lastChange,
                     rule ? *rule : nobodys, request.fields);
        const Answer answer = rule ? Carry(request, *rule, *session, *view, prepared.get(), cursor)
                                   : Answer{status::UnknownRequest};
        answered = answer.status;
        reply =
            Encoded(request.number, answer, view->ChangedWords(m_library->Seen(), m_library->GetRegistry()));
        if (!changes || (answer.status != status::Ok && answer.status != status::Continues))
            return false;
        sessions.Keep(m_session, request.number, *reply, cursor, now);
        return true;
    });
    if (!reply) {
        m_session = 0;
        return std::nullopt;
    }
    m_number = request.number;
    m_resumed = false;
    // A change is kept by now: nothing that could still fail may follow. What only reads, in parts, changed
    // nothing but how far it went; its reply would come again.
    if (view && (!changes || rule->access == Access::View))
        view->KeepRead(m_library->Seen(), answered);
    if (view)
        view->KeepTold(m_library->Seen());
    if (touch && !changes)
        TouchSession();
    return reply;
}

void ServerConnection::TouchSession() {
    // Who only reads waits for nobody, and still gets the answer when nothing can be written: a later read
    // makes up for it.
    try {
        RunInTransaction(GetDatabase(), Transaction::Mode::WriteIfFree, [&] {
            Sessions(GetDatabase()).Touch(m_session, m_library->Now());
            return true;
        });
    } catch (const StoreError& error) {
        if (error.GetKind() != StoreError::Kind::Busy)
            m_library->Errors().Write(QString("The time of a session's last use: ") + error.what());
    }
}

} // namespace sysadmin::server
