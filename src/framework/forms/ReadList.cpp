#include "framework/forms/ReadList.h"

#include "core/data/RequestChannel.h"
#include "wire/Status.h"

namespace sysadmin {

namespace status = wire::status;

ListStep CollectItems(QList<PickItem>& items, const QString& idTag, const QString& textTag) {
    return {idTag, [&items, idTag, textTag](RequestChannel& reply) {
                items.append({reply.GetField(idTag), reply.GetField(textTag)});
            }};
}

qint16 ReadList(RequestChannel& channel, const ListQuery& query, const QList<ListStep>& steps) {
    qint16 result = status::Ok;
    do {
        if (query.putKey)
            query.putKey(channel);
        if (result == status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest(query.request);
        if (result == status::Ok || (result == status::Continues && query.form == ListForm::Continuing)) {
            if (query.readHead)
                query.readHead(channel);
            for (const ListStep& step : steps)
                while (channel.NextRecord(step.recordTag))
                    step.read(channel);
        } else if (query.report) {
            query.report(result);
        }
    } while (result == status::Continues);
    return result;
}

} // namespace sysadmin
