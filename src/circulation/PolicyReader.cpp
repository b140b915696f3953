#include "circulation/PolicyReader.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/ReadList.h"
#include "loan/ReadPolicy.h"
#include "wire/Status.h"

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

namespace {

loan::Fields FieldsOf(const RequestChannel& channel) {
    const wire::Fields reply = channel.ReplyFields();
    loan::Fields fields;
    fields.reserve(reply.size());
    for (const wire::Field& field : reply)
        fields.append({field.tag, field.value});
    return fields;
}

QHash<qint64, QString> NamesOf(const QList<PickItem>& items) {
    QHash<qint64, QString> names;
    for (const PickItem& item : items)
        names.insert(item.id.toLongLong(), item.text);
    return names;
}

} // namespace

PolicyReader::PolicyReader(RequestChannel& channel, const QString& clusterId)
    : m_channel(channel)
    , m_clusterId(clusterId) {}

// What is read here may be open in an edit elsewhere, which began with what it read itself.
void PolicyReader::PutScope() {
    m_channel.PutField("CID", m_clusterId);
    m_channel.PutField("Look", "Y");
}

qint16 PolicyReader::Send(const QString& request, const QString& id) {
    if (!id.isEmpty())
        m_channel.PutField("ID", id);
    PutScope();
    return m_channel.SendRequest(request);
}

qint16 PolicyReader::ReadGroups() {
    m_policy = {.decimals = m_policy.decimals};
    for (QList<PickItem>* items : {&m_freeLocations, &m_patronGroups, &m_itemTypes})
        items->clear();
    m_calendarIds.clear();
    m_calendars.clear();
    m_whole.clear();
    const auto read = [](QList<PickItem>& items, const QString& idTag, const QString& textTag) {
        return ListStep{idTag, [&items, idTag, textTag](RequestChannel& channel) {
                            items.append({channel.GetField(idTag), channel.GetField(textTag)});
                        }};
    };
    const auto putCluster = [this](RequestChannel&) { PutScope(); };
    qint16 result = ReadList(
        m_channel, {.request = "CircAvail", .putKey = putCluster},
        {read(m_freeLocations, "AI", "AN"), read(m_patronGroups, "1", "1A"), read(m_itemTypes, "I1", "I2")});
    if (result != status::Ok)
        return result;
    m_policy.patronGroups = NamesOf(m_patronGroups);
    m_policy.itemTypes = NamesOf(m_itemTypes);
    m_channel.PutField("Look", "Y");
    result = m_channel.SendRequest("GetCrMsc");
    if (result != status::Ok)
        return result;
    loan::ReadCirculation(FieldsOf(m_channel), m_policy);
    QList<PickItem> groups;
    result = ReadList(m_channel, {.request = "LstCrcGp", .putKey = putCluster}, {read(groups, "ID", "Nm")});
    for (const PickItem& group : groups)
        if (result == status::Ok)
            result = ReadGroup(group.id);
    return result;
}

qint16 PolicyReader::ReadGroup(const QString& id) {
    const qint16 result = Send("GetCrcGp", id);
    if (result != status::Ok)
        return result;
    loan::Group group{.id = id.toLongLong()};
    const loan::Fields record = FieldsOf(m_channel);
    loan::ReadGroup(record, group);
    loan::ReadLocations(record, group);
    loan::ReadItemSettings(record, group);
    for (const auto& [tag, value] : record)
        if (tag == u"SCI")
            m_calendarIds[group.id].append(value);
    m_policy.groups.append(group);
    return status::Ok;
}

qint16 PolicyReader::ReadRules(qint64 id) {
    const auto group = std::find_if(m_policy.groups.begin(), m_policy.groups.end(),
                                    [&](const loan::Group& candidate) { return candidate.id == id; });
    if (m_whole.contains(id) || group == m_policy.groups.end())
        return status::Ok;
    qint16 result = Send("GetCrcPatronGp", QString::number(id));
    if (result != status::Ok)
        return result;
    loan::ReadPatronRules(FieldsOf(m_channel), *group);
    group->rules.clear();
    result = Send("LstMatRule", QString::number(id));
    if (result != status::Ok)
        return result;
    loan::ReadRules(FieldsOf(m_channel), *group);
    result = ReadCalendars(*group);
    if (result == status::Ok)
        m_whole.insert(id);
    return result;
}

qint16 PolicyReader::ReadCalendars(loan::Group& group) {
    group.calendars.clear();
    for (const QString& id : m_calendarIds.value(group.id)) {
        if (!m_calendars.contains(id)) {
            if (const qint16 result = Send("GetCal", id); result != status::Ok)
                return result;
            loan::Calendar calendar{.id = id.toLongLong()};
            loan::ReadCalendar(FieldsOf(m_channel), calendar);
            m_calendars.insert(id, calendar);
        }
        group.calendars.append(m_calendars[id]);
    }
    return status::Ok;
}

qint16 PolicyReader::ReadDemerits(qint64 patronGroup) {
    if (!m_policy.usesDemerits || m_policy.demerits.contains(patronGroup))
        return status::Ok;
    const qint16 result = Send("GetPatGp", QString::number(patronGroup));
    if (result == status::NotAuthorised) { // patron groups have a right of their own
        m_policy.demerits[patronGroup].isKnown = false;
        return status::Ok;
    }
    if (result == status::Ok)
        loan::ReadDemeritRule(FieldsOf(m_channel), m_policy.demerits[patronGroup]);
    return result;
}

qint16 PolicyReader::ReadAll() {
    qint16 result = ReadGroups();
    const QList<loan::Group> groups = m_policy.groups;
    for (const loan::Group& group : groups)
        if (result == status::Ok)
            result = ReadRules(group.id);
    return result;
}

} // namespace sysadmin
