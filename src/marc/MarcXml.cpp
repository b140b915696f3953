#include "marc/MarcXml.h"

#include "marc/Readers.h"

#include <QCoreApplication>
#include <QIODevice>

namespace sysadmin::marc {

namespace {

/// An indicator or subfield code; none is a blank, more than one character is none.
QChar OneCharacter(const QXmlStreamAttributes& attributes, const QString& name) {
    const QStringView value = attributes.value(name);
    if (value.isEmpty())
        return u' ';
    return value.size() == 1 ? value[0] : QChar(0);
}

} // namespace

MarcXmlParser::Step MarcXmlParser::Next() {
    while (true) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::Invalid:
            return m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError ? Step::NeedMore
                                                                                  : Step::Broken;
        case QXmlStreamReader::EndDocument:
            return Step::End;
        case QXmlStreamReader::StartElement:
            Begin();
            break;
        case QXmlStreamReader::EndElement:
            if (End())
                return Step::Record;
            break;
        case QXmlStreamReader::Characters:
            if (m_isInText)
                m_text += m_xml.text();
            break;
        case QXmlStreamReader::Comment:
            m_comments << m_xml.text().trimmed().toString();
            break;
        default:
            break;
        }
    }
}

void MarcXmlParser::Begin() {
    const QStringView name = m_xml.name();
    const QXmlStreamAttributes attributes = m_xml.attributes();
    if (name == u"record") { // an outer record (of a harvesting protocol) is given up for the one inside
        m_record = {};
        m_comments.clear();
        m_isInRecord = true;
        m_hasSeenRecord = true;
    } else if (name == u"leader" || name == u"subfield" || name == u"controlfield") {
        m_text.clear();
        m_isInText = true;
    }
    if (name == u"controlfield" || name == u"datafield")
        m_record.fields << Field{.tag = attributes.value("tag").toString(),
                                 .indicator1 = OneCharacter(attributes, "ind1"),
                                 .indicator2 = OneCharacter(attributes, "ind2")};
    else if (name == u"subfield" && !m_record.fields.isEmpty())
        m_record.fields.last().subfields << Subfield{OneCharacter(attributes, "code"), {}};
}

bool MarcXmlParser::End() {
    const QStringView name = m_xml.name();
    if (name == u"leader") // blanks at its end are often lost
        m_record.leader = m_text.leftJustified(LeaderLength);
    else if (name == u"controlfield" && !m_record.fields.isEmpty())
        m_record.fields.last().value = m_text;
    else if (name == u"subfield" && !m_record.fields.isEmpty() && !m_record.fields.last().subfields.isEmpty())
        m_record.fields.last().subfields.last().value = m_text;
    if (name == u"leader" || name == u"subfield" || name == u"controlfield")
        m_isInText = false;
    return name == u"record" && std::exchange(m_isInRecord, false);
}

void ReadMarcXml(QIODevice& device, Collector& into) {
    MarcXmlParser parser;
    qsizetype sinceRecord = 0;
    const auto where = [&parser] { return Words::tr("line %1").arg(parser.Line()); };
    while (true) {
        switch (parser.Next()) {
        case MarcXmlParser::Step::Record:
            if (into.IsFull())
                return into.SayMore();
            into.Add(parser.Taken(), where());
            sinceRecord = 0;
            break;
        case MarcXmlParser::Step::NeedMore: {
            const QByteArray bytes = device.read(BytesAtOnce);
            if (bytes.isEmpty())
                return into.IsFull() ? into.SayMore()
                                     : into.Refuse(where(), Words::tr("The XML ends too early."));
            sinceRecord += bytes.size();
            if (into.IsFull() || sinceRecord > MostRecordBytes)
                return into.IsFull()
                           ? into.SayMore()
                           : into.Refuse(where(), Words::tr("There is no end of a record in 4 MB."));
            parser.Add(bytes);
            break;
        }
        case MarcXmlParser::Step::End:
            if (!parser.HasSeenRecord())
                into.Refuse(where(), Words::tr("The XML has no \"record\" element."));
            return;
        case MarcXmlParser::Step::Broken:
            if (into.IsFull())
                return into.SayMore();
            return into.Refuse(where(), Words::tr("The XML is broken: %1").arg(parser.Error()));
        }
    }
}

} // namespace sysadmin::marc
