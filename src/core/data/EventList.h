#pragma once

#include "wire/Events.h"

namespace sysadmin {

class RequestChannel;

/// Something that takes place on some days: a holiday, an exhibition.
struct Event {
    QString id;
    QString name;
    wire::events::Rule rule;
    bool isOpen = false; ///< with the hours, "HH:mm"; else closed all day
    QString openTime;
    QString closeTime;
};

/// The event of the reply's current record.
Event ReadEvent(RequestChannel& channel);

/// Asks for all events. The status of the request; nothing was read unless it is 0.
qint16 ReadEvents(RequestChannel& channel, QList<Event>& events);

/// The names of the events on a date.
QStringList EventsOn(const QList<Event>& events, QDate date);

} // namespace sysadmin
