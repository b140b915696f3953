#include "core/data/EventList.h"

#include "core/data/RequestChannel.h"
#include "wire/Status.h"

namespace sysadmin {

Event ReadEvent(RequestChannel& channel) {
    const auto number = [&](const QString& tag) { return channel.GetField(tag).trimmed().toInt(); };
    return {.id = channel.GetField("ID"),
            .name = channel.GetField("Nm"),
            .rule = {.kind = channel.GetField("K"),
                     .month = number("M"),
                     .day = number("Dy"),
                     .week = number("Wk"),
                     .weekday = number("Wd"),
                     .fromEaster = number("Of"),
                     .date = QDate::fromString(channel.GetField("Dt"), wire::events::DateFormat)},
            .isOpen = channel.GetFlag("O"),
            .openTime = channel.GetField("OTm"),
            .closeTime = channel.GetField("CTm")};
}

qint16 ReadEvents(RequestChannel& channel, QList<Event>& events) {
    const qint16 status = channel.SendRequest("LstEvt");
    if (status != wire::status::Ok)
        return status;
    events.clear();
    while (channel.NextRecord("ID"))
        events.append(ReadEvent(channel));
    return status;
}

QStringList EventsOn(const QList<Event>& events, QDate date) {
    QStringList names;
    for (const Event& event : events)
        if (!wire::events::DatesBetween(event.rule, date, date).isEmpty())
            names.append(event.name);
    return names;
}

} // namespace sysadmin
