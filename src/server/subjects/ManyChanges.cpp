#include "wire/ManyChanges.h"
#include "server/Library.h"
#include "server/SessionView.h"
#include "server/Sessions.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <vector>

// Saves that stand together in one request. Each is carried out as if it were sent by itself.
namespace sysadmin::server {

namespace many = wire::many;

namespace {

/// A request that stands inside of another one.
struct Inner {
    QString name;
    wire::Fields fields;
};

QList<Inner> InnerOf(const wire::Fields& request) {
    QList<Inner> all;
    for (const wire::Field& field : request)
        if (field.tag == many::Begins)
            all.append({field.value, {}});
        else if (!all.isEmpty())
            all.last().fields.append(field);
    return all;
}

/// What was prepared for each of them, by its place.
struct PreparedMany : Prepared {
    std::vector<std::shared_ptr<Prepared>> each;
};

/// The rule by which an inner request is carried out; null where it is none that saves a record.
const RequestRule* RuleOf(const Registry& registry, const QString& name) {
    const RequestRule* rule = registry.Find(name);
    const bool saves = name.startsWith("Add") || name.startsWith("Upd") || name.startsWith("Del");
    return rule && rule->changes && saves && rule->access == Access::Edit && name != many::Request ? rule
                                                                                                   : nullptr;
}

std::shared_ptr<Prepared> PrepareMany(Database& database, const Library& library, const Requester& requester,
                                      const wire::Fields& request) {
    const Rights rights = Rights::Of(database, requester.row);
    auto prepared = std::make_shared<PreparedMany>();
    for (const Inner& inner : InnerOf(request)) {
        const RequestRule* rule = RuleOf(library.GetRegistry(), inner.name);
        const bool prepares = rule && rule->prepare && rule->Allows(rights);
        prepared->each.push_back(prepares ? rule->prepare(database, library, requester, inner.fields)
                                          : nullptr);
    }
    return prepared;
}

Answer Carry(Context& context, const StoredSession& session, const Inner& inner, Prepared* prepared) {
    const RequestRule* rule = RuleOf(context.library.GetRegistry(), inner.name);
    if (!rule)
        return {status::UnknownRequest};
    if (!rule->Allows(context.rights))
        return {status::NotAuthorised};
    SessionView view(context.database, {session.row, session.startChange}, session.lastChange, *rule,
                     inner.fields);
    if (auto refusal = view.Refusal(context.library.Seen()))
        return *refusal;
    context.prepared = prepared;
    Answer answer = rule->handler(context, inner.fields);
    context.prepared = nullptr;
    if (answer.status == status::NotFound)
        answer.fields.Clear();
    view.ExplainMissing(answer);
    // One that has to wait for another system is saved by itself.
    return answer.status == status::Continues ? Answer{status::CommunicationsFailure} : answer;
}

Answer ChangeMany(Context& context, const wire::Fields& request) {
    const auto session = Sessions(context.database).Load(context.requester.session, context.now);
    if (!session)
        return {status::NotAuthorised};
    const QList<Inner> all = InnerOf(request);
    const auto* prepared = dynamic_cast<PreparedMany*>(context.prepared);
    ReplyFields refused;
    const auto refuse = [&](qsizetype place, const Answer& answer) {
        Put(refused, many::Refused, QString::number(place));
        Put(refused, many::Why, QString::number(answer.status));
        const wire::Fields fields = answer.fields.Decoded();
        for (const QString& tag : {QString("ChBy"), QString("ChAt")})
            Put(refused, tag, wire::FirstValue(fields, tag));
    };
    for (qsizetype i = 0; i < all.size(); ++i) {
        try {
            const bool isPrepared = prepared && size_t(i) < prepared->each.size();
            const Answer answer =
                Carry(context, *session, all[i], isPrepared ? prepared->each[size_t(i)].get() : nullptr);
            if (answer.status != status::Ok)
                refuse(i, answer);
            context.database.Settle(); // what goes wrong is this one's
        } catch (const StoreError& error) {
            const bool isDuplicate = error.GetKind() == StoreError::Kind::Duplicate;
            if (error.GetKind() == StoreError::Kind::Unstorable) {
                refuse(i, {status::ColumnError});
                continue;
            }
            if (!isDuplicate && error.GetKind() != StoreError::Kind::Referenced)
                throw;
            refuse(i, {isDuplicate ? status::DuplicateRecord : status::InUse});
            break; // nothing can be looked at in this transaction any more
        }
    }
    if (!refused.IsEmpty() || wire::FirstValue(request, many::OnlyTry) == u"Y")
        return {many::NotDone, refused};
    Answer done;
    Put(done.fields, "Q", QString::number(all.size()));
    return done;
}

} // namespace

void RegisterManyChanges(Registry& registry) {
    registry.AddChange(many::Request, Area::AnyOperator, ChangeMany);
    registry.Prepare(many::Request, PrepareMany);
}

} // namespace sysadmin::server
