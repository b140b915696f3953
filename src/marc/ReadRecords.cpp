#include "marc/ReadRecords.h"

#include "marc/Readers.h"

#include <QBuffer>
#include <QCoreApplication>

namespace sysadmin::marc {

namespace {

constexpr qsizetype BytesLookedAt = 4096;

bool IsTag(const QString& tag) {
    return tag.size() == 3 && std::all_of(tag.begin(), tag.end(), [](QChar letter) {
               return letter.unicode() < 0x80 && letter.isLetterOrNumber();
           });
}

bool IsIndicator(QChar letter) {
    return letter.unicode() >= 0x20 && letter.unicode() < 0x7f;
}

/// What is wrong with a field; empty when nothing is.
QString Fault(const Field& field) {
    if (!IsTag(field.tag))
        return Words::tr("\"%1\" is no tag of three letters or digits.").arg(field.tag.left(10));
    if (field.IsControl())
        return {};
    if (!IsIndicator(field.indicator1) || !IsIndicator(field.indicator2))
        return Words::tr("Field %1 has an indicator that is no character.").arg(field.tag);
    if (field.subfields.isEmpty())
        return Words::tr("Field %1 has no subfields.").arg(field.tag);
    for (const Subfield& subfield : field.subfields)
        if (!IsIndicator(subfield.code) || subfield.code == ' ')
            return Words::tr("Field %1 has a subfield without a code.").arg(field.tag);
    return {};
}

QString Fault(const Record& record) {
    if (!record.leader.isEmpty() && record.leader.size() != LeaderLength)
        return Words::tr("The leader has %1 characters, not 24.").arg(record.leader.size());
    if (record.fields.isEmpty())
        return Words::tr("There are no fields.");
    for (const Field& field : record.fields)
        if (const QString fault = Fault(field); !fault.isEmpty())
            return fault;
    return {};
}

void Read(QIODevice& device, Collector& into) {
    QByteArray start = device.peek(BytesLookedAt);
    if (start.contains('\x1e') || start.contains('\x1f') || start.contains('\x1d'))
        return ReadIso2709(device, into);
    const bool isWide = start.startsWith("\xff\xfe") || start.startsWith("\xfe\xff");
    if (start.startsWith("\xef\xbb\xbf"))
        start.remove(0, 3);
    if (isWide || start.trimmed().startsWith('<'))
        return ReadMarcXml(device, into);
    ReadLineText(device, into);
}

} // namespace

void Collector::Add(Record record, const QString& where) {
    if (const QString fault = Fault(record); !fault.isEmpty())
        return Refuse(where, fault);
    record.number = ++m_seen;
    m_result.records << std::move(record);
}

void Collector::Refuse(const QString& where, const QString& fault) {
    m_result.problems << Words::tr("Record %1 (%2): %3").arg(QString::number(++m_seen), where, fault);
}

Result ReadRecords(QIODevice& device, int limit) {
    Collector collector(limit);
    Read(device, collector);
    return collector.Take();
}

Result ReadRecords(const QString& text, int limit) {
    QBuffer buffer;
    buffer.setData(text.toUtf8());
    buffer.open(QIODevice::ReadOnly);
    return ReadRecords(buffer, limit);
}

} // namespace sysadmin::marc
