#pragma once

#include "marc/Record.h"

#include <QXmlStreamReader>

namespace sysadmin::marc {

/// Builds records from the elements of MARCXML as they come, however the bytes are cut.
class MarcXmlParser {
public:
    enum class Step {
        Record,   ///< a record ended: `Taken` has it
        NeedMore, ///< the bytes so far are used up
        End,
        Broken ///< no further record can be read: `Error` says why
    };

    void Add(const QByteArray& bytes) { m_xml.addData(bytes); }
    Step Next();
    Record Taken() { return std::move(m_record); }
    /// Comments inside the record that ended.
    QStringList Comments() const { return m_comments; }
    qint64 Line() const { return m_xml.lineNumber(); }
    QString Error() const { return m_xml.errorString(); }
    bool HasSeenRecord() const { return m_hasSeenRecord; }

private:
    void Begin();
    /// True when the element was a record's end.
    bool End();

    QXmlStreamReader m_xml;
    Record m_record;
    QStringList m_comments;
    QString m_text;
    bool m_isInText = false;
    bool m_isInRecord = false;
    bool m_hasSeenRecord = false;
};

} // namespace sysadmin::marc
