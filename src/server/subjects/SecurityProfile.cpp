#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

/// Operators may ask for their own rights only.
bool IsAboutRequester(const Context& context, const wire::Fields& request) {
    return Fold(wire::FirstValue(request, "OI")) == Fold(context.requester.id);
}

void Append(const Context& context, const QString& tag, ReplyFields& reply) {
    Put(reply, tag, context.rights.Has(tag) ? "Y" : "N");
}

Answer ReadRights(Context& context, const wire::Fields& request) {
    if (!IsAboutRequester(context, request))
        return {status::NotAuthorised};
    Answer answer;
    for (const wire::AreaRights& rights : wire::AreasWithRights()) {
        if (rights.area == Area::PatronGroups)
            continue;
        Append(context, rights.edit, answer.fields);
        Append(context, rights.view, answer.fields);
        if (rights.area == Area::Security)
            Append(context, "ChgPwd", answer.fields);
    }
    const QVariant decimals = context.database.FirstValue("SELECT decimals FROM base_currency ORDER BY id");
    Put(answer.fields, "Dec", decimals.isNull() ? QString("2") : decimals.toString());
    Put(answer.fields, "PRB", ReadSetting(context.database, "web_services", "N"));
    return answer;
}

Answer ReadPatronGroupRights(Context& context, const wire::Fields& request) {
    if (!IsAboutRequester(context, request))
        return {status::NotAuthorised};
    Answer answer;
    const wire::AreaRights rights = wire::RightsOf(Area::PatronGroups);
    Append(context, rights.edit, answer.fields);
    Append(context, rights.view, answer.fields);
    return answer;
}

} // namespace

void RegisterSecurityProfile(Registry& registry) {
    registry.AddRead("SAInit", Area::AnyOperator, ReadRights);
    registry.AddRead("CheckMasterProfile", Area::AnyOperator, ReadPatronGroupRights);
}

} // namespace sysadmin::server
