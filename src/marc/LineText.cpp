#include "marc/Readers.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QRegularExpression>
#include <QStringDecoder>

namespace sysadmin::marc {

namespace {

constexpr qsizetype MostLineBytes = 1024 * 1024;

/// The signs that stand for the mark of a subfield.
bool IsMark(QChar letter) {
    return letter == u'$' || letter == u'|' || letter == QChar(0x2021) || letter == QChar(0x01c2);
}

/// Blanks of the mnemonic form, and the signs that stand for one in print.
QChar Indicator(QChar letter) {
    return letter == u'\\' || letter == u'#' || letter == u'_' ? QChar(u' ') : letter;
}

bool IsLeaderTag(const QString& tag) {
    return tag == "LDR" || tag == "000";
}

/// Cuts "$a Title $b rest" or "$aTitle$brest". In the spaced form only a mark with blanks around it and its
/// code begins a subfield: prices keep their sign.
QList<Subfield> Subfields(const QString& text, bool isSpaced) {
    const QString sign = QRegularExpression::escape(QString(text[0]));
    const QRegularExpression begin(isSpaced ? QString("(?<!\\S)%1(\\S)(?:\\s+|$)").arg(sign)
                                            : QString("%1(\\S)").arg(sign));
    QList<Subfield> found;
    qsizetype valueAt = 0;
    const auto close = [&](qsizetype end) {
        if (found.isEmpty())
            return;
        const QString value = text.mid(valueAt, qMax(end - valueAt, qsizetype(0))).replace("{dollar}", "$");
        found.last().value = isSpaced ? value.trimmed() : value;
    };
    for (auto matches = begin.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        close(match.capturedStart());
        found << Subfield{match.captured(1)[0], {}};
        valueAt = match.capturedEnd();
    }
    close(text.size());
    return found;
}

/// Reads lines into records.
class LineParser {
public:
    explicit LineParser(Collector& into)
        : m_into(into) {}

    void Line(QString text) {
        ++m_line;
        while (text.endsWith('\n') || text.endsWith('\r'))
            text.chop(1);
        if (text.trimmed().isEmpty())
            return End();
        if (m_begun == 0)
            m_begun = m_line;
        m_size += text.size();
        if (!m_fault.isEmpty())
            return;
        if (text.startsWith("   ") && !m_last.isEmpty()) { // the line before goes on here
            m_last += ' ' + text.trimmed();
            return;
        }
        Flush();
        const bool isLeader =
            IsLeaderTag(text.mid(text.startsWith('=') ? 1 : 0, TagLength)) || IsBareLeader(text);
        if (isLeader && (!m_record.fields.isEmpty() || !m_record.leader.isEmpty())) {
            End();
            m_begun = m_line;
        }
        m_last = text;
        m_lastLine = m_line;
    }
    void Fail(const QString& fault) {
        if (m_begun == 0)
            m_begun = m_line + 1;
        m_fault = Words::tr("Line %1: %2").arg(m_line + 1).arg(fault);
    }
    /// The record ends here, if one has begun.
    void End() {
        Flush();
        const QString where = Words::tr("line %1").arg(m_begun);
        if (m_begun > 0 && m_into.IsFull())
            m_into.SayMore();
        else if (!m_fault.isEmpty())
            m_into.Refuse(where, m_fault);
        else if (m_begun > 0)
            m_into.Add(std::move(m_record), where);
        m_record = {};
        m_fault.clear();
        m_begun = 0;
        m_size = 0;
    }
    bool IsTooLong() const { return m_size > MostRecordBytes; }
    bool IsInRecord() const { return m_begun > 0; }

private:
    static bool IsBareLeader(const QString& text) {
        static const QRegularExpression leader(R"(^\d{5}[a-z][a-z ]{3}[ a]22\d{5})");
        return leader.match(text).hasMatch();
    }

    void Flush() {
        if (m_last.isEmpty())
            return;
        const QString fault = Take(std::exchange(m_last, {}));
        if (!fault.isEmpty())
            m_fault = Words::tr("Line %1: %2").arg(m_lastLine).arg(fault);
    }

    /// Takes one whole line; what is wrong with it.
    QString Take(const QString& line) {
        if (IsBareLeader(line)) {
            m_record.leader = line.leftJustified(LeaderLength);
            return {};
        }
        const bool isMnemonic = line.startsWith('=');
        const QString text = isMnemonic ? line.mid(1) : line;
        Field field{.tag = text.left(TagLength)};
        const QString rest = text.mid(TagLength);
        static const QRegularExpression tag("^[0-9A-Za-z]{3}$");
        if (!tag.match(field.tag).hasMatch())
            return Words::tr("\"%1\" does not begin with a tag of three letters or digits.")
                .arg(line.left(40));
        if (field.IsControl() || IsLeaderTag(field.tag))
            return TakeValue(field, rest, isMnemonic);
        // The blank between tag and indicators may be missing.
        const qsizetype gap = isMnemonic ? 2 : 1;
        const bool hasGap = rest.startsWith(' ');
        QString data = hasGap ? rest.mid(gap) : rest;
        if (!data.isEmpty() && !IsMark(data[0])) {
            field.indicator1 = Indicator(data[0]);
            field.indicator2 = data.size() > 1 && !IsMark(data[1]) ? Indicator(data[1]) : QChar(u' ');
            data = data.mid(data.size() > 1 && IsMark(data[1]) ? 1 : 2);
        }
        while (data.startsWith(' '))
            data.remove(0, 1);
        if (data.size() < 2 || !IsMark(data[0]))
            return Words::tr("field %1 has no subfield behind its indicators (\"%2\").")
                .arg(field.tag, line.left(40));
        field.subfields = Subfields(data, !isMnemonic && data.size() > 2 && data[2] == ' ');
        m_record.fields << field;
        return {};
    }

    QString TakeValue(Field& field, QString value, bool isMnemonic) {
        if (isMnemonic)
            value = value.mid(value.startsWith("  ") ? 2 : 0).replace('\\', ' ').replace("{dollar}", "$");
        else if (value.startsWith("    "))
            value.remove(0, 4);
        else
            while (value.startsWith(' '))
                value.remove(0, 1);
        if (!IsLeaderTag(field.tag)) {
            field.value = value;
            m_record.fields << field;
            return {};
        }
        m_record.leader = value.leftJustified(LeaderLength);
        return {};
    }

    Collector& m_into;
    Record m_record;
    QString m_fault;
    QString m_last; ///< the line that may go on
    int m_lastLine = 0;
    int m_line = 0;
    int m_begun = 0; ///< the line on which the record began; 0: none has
    qsizetype m_size = 0;
};

} // namespace

void ReadLineText(QIODevice& device, Collector& into) {
    LineParser parser(into);
    bool isFirst = true;
    while (true) {
        QByteArray line = device.readLine(MostLineBytes);
        if (line.isEmpty())
            break;
        if (std::exchange(isFirst, false) && line.startsWith("\xef\xbb\xbf"))
            line.remove(0, 3);
        if (into.IsFull() && !line.trimmed().isEmpty())
            return into.SayMore();
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(line);
        const bool isBroken = decoder.hasError();
        if (isBroken)
            parser.Fail(Words::tr("it is not in UTF-8."));
        parser.Line(isBroken ? "(not in UTF-8)" : text);
        if (parser.IsTooLong()) {
            parser.Fail(Words::tr("there is no end of the record in 4 MB."));
            break;
        }
    }
    parser.End();
}

} // namespace sysadmin::marc
