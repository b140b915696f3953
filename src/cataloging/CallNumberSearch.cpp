#include "cataloging/CallNumberSearch.h"

#include "callslips/CallNumberOrder.h"
#include "core/data/RequestChannel.h"
#include "core/data/Tr.h"
#include "wire/DuplicateDetection.h"
#include "wire/Status.h"

namespace sysadmin {

namespace duplicates = wire::duplicates;

namespace {

bool FitsIndicator(QChar is, const QString& wanted) {
    return wanted == duplicates::Any || QString(is == u' ' ? QChar(duplicates::Blank) : is) == wanted;
}

bool FitsIndicators(const marc::Field& field, const CallNumberPlace& place) {
    return field.IsControl() || (FitsIndicator(field.indicator1, place.indicator1) &&
                                 FitsIndicator(field.indicator2, place.indicator2));
}

QString Indicators(const marc::Field& field) {
    QString both = QString(field.indicator1) + field.indicator2;
    return both.replace(' ', duplicates::Blank);
}

/// The parts of the call number in the field. The first subfield is the class: of several the first counts,
/// since the others are alternatives to it. The others make the item part.
LookedPlace PartsIn(const marc::Field& field, const CallNumberPlace& place) {
    LookedPlace parts;
    if (field.IsControl()) {
        parts.classPart = field.value.trimmed();
        return parts;
    }
    QStringList item;
    for (const QChar code : place.subfields)
        if (code == place.subfields.front())
            parts.classPart = field.First(code).trimmed();
        else
            for (const QString& value : field.All(code))
                item.append(value.trimmed());
    item.removeAll(QString());
    parts.itemPart = item.join(' ');
    // The marks at which a Dewey number may be cut are no part of it.
    if (callslips::SchemeOf(place.type) == callslips::Scheme::Dewey)
        parts.classPart.remove('/').remove('\'');
    return parts;
}

/// Why none of the record's fields gives a call number.
QString Lack(const marc::Record& record, const CallNumberPlace& place) {
    QStringList others;
    bool fits = false;
    for (const marc::Field& field : record.fields) {
        if (field.tag != place.field)
            continue;
        if (FitsIndicators(field, place))
            fits = true;
        else if (!others.contains(Indicators(field)))
            others.append(Indicators(field));
    }
    if (fits && place.subfields.isEmpty())
        return Tr("%1 is empty.").arg(place.field);
    if (fits)
        return Tr("%1 has no $%2.").arg(place.field, place.subfields.left(1));
    if (!others.isEmpty())
        return Tr("%1 is there with other indicators: %2.").arg(place.field, others.join(", "));
    return Tr("The record has no %1.").arg(place.field);
}

LookedPlace LookIn(const marc::Record& record, const CallNumberPlace& place) {
    for (const marc::Field& field : record.fields)
        if (field.tag == place.field && FitsIndicators(field, place))
            if (const LookedPlace parts = PartsIn(field, place); !parts.classPart.isEmpty())
                return parts;
    return {.why = Lack(record, place)};
}

} // namespace

QString CallNumberPlace::Name() const {
    QString name = field;
    if (indicator1 != duplicates::Any || indicator2 != duplicates::Any)
        name += ' ' + indicator1 + indicator2;
    for (const QChar code : subfields)
        name += QString(" $") + code;
    return name;
}

QString CallNumberTypeName(const QString& code) {
    for (const callslips::CallNumberType& type : callslips::CallNumberTypes())
        if (type.code == code)
            return type.name;
    return code;
}

CallNumberSearch SearchCallNumber(const marc::Record& record, const CallNumberHierarchy& hierarchy) {
    CallNumberSearch search;
    for (const CallNumberPlace& place : hierarchy.places) {
        LookedPlace looked = LookIn(record, place);
        if (!looked.classPart.isEmpty() && search.taken < 0) {
            search.taken = int(search.places.size());
            looked.outcome = LookedPlace::Outcome::Taken;
            looked.why = Tr("The first place that holds a call number.");
            if (!callslips::IsCallNumber(looked.CallNumber(), callslips::SchemeOf(place.type)))
                search.doubt = Tr("\"%1\" does not look like a call number of its type (%2).")
                                   .arg(looked.CallNumber(), CallNumberTypeName(place.type));
        } else if (!looked.classPart.isEmpty()) {
            looked.outcome = LookedPlace::Outcome::Behind;
            looked.why = Tr("Place %1 comes first.").arg(search.taken + 1);
        }
        search.places.append(looked);
    }
    return search;
}

QString HoldingsField(const CallNumberSearch& search, const CallNumberHierarchy& hierarchy) {
    if (search.taken < 0)
        return {};
    const LookedPlace& found = search.places[search.taken];
    const QString type = hierarchy.places[search.taken].type;
    marc::Field field{.tag = "852", .indicator1 = type.isEmpty() ? u' ' : type[0]};
    field.subfields.append({u'h', found.classPart});
    if (!found.itemPart.isEmpty())
        field.subfields.append({u'i', found.itemPart});
    return marc::ToText(field);
}

QList<CallNumberHierarchy> ReadHierarchies(RequestChannel& channel, qint16& status) {
    QList<CallNumberHierarchy> hierarchies;
    status = channel.SendRequest("LstCNH");
    while (status == wire::status::Ok && channel.NextRecord("ID"))
        hierarchies.append({.id = channel.GetField("ID"),
                            .name = channel.GetField("Nm"),
                            .isDefault = channel.GetFlag("DF")});
    for (CallNumberHierarchy& hierarchy : hierarchies) {
        channel.PutField("Look", "Y"); // the screen of its own may be editing it
        channel.PutField("ID", hierarchy.id);
        status = channel.SendRequest("GetCNH");
        if (status != wire::status::Ok)
            return {};
        while (channel.NextRecord("HF"))
            hierarchy.places.append({channel.GetField("HF"), channel.GetField("HI1"), channel.GetField("HI2"),
                                     channel.GetField("HS"), channel.GetField("HT")});
    }
    return hierarchies;
}

} // namespace sysadmin
