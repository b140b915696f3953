#include "callslips/CallNumberOrder.h"

#include <QRegularExpression>

#include <algorithm>

namespace sysadmin::callslips {

namespace {

constexpr qsizetype NumberDigits = 12;
constexpr qsizetype ClassLetters = 3; // of the Library of Congress
constexpr QChar Break = u' ';         // stands before everything that goes on

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

/// Goes through a text part by part.
class Reader {
public:
    explicit Reader(const QString& text)
        : m_text(text.toUpper()) {}

    bool AtEnd() const { return m_place >= m_text.size(); }
    QChar Next(qsizetype ahead = 0) const {
        return m_place + ahead < m_text.size() ? m_text[m_place + ahead] : QChar();
    }
    void Skip() { ++m_place; }
    void SkipBlanks() {
        while (Next().isSpace())
            Skip();
    }
    QString Digits() { return Take(IsDigit); }
    QString Letters() {
        return Take([](QChar c) { return c.isLetter() || c.isMark(); });
    }

private:
    template <class Belongs>
    QString Take(Belongs belongs) {
        const qsizetype start = m_place;
        while (!AtEnd() && belongs(m_text[m_place]))
            ++m_place;
        return m_text.mid(start, m_place - start);
    }

    QString m_text;
    qsizetype m_place = 0;
};

/// A number among numbers of any length.
QString Number(QString digits) {
    while (digits.size() > 1 && digits.startsWith('0'))
        digits.remove(0, 1);
    return digits.rightJustified(NumberDigits, '0');
}

/// The number of a class with its decimals.
QString ClassNumber(Reader& reader) {
    QString key = Number(reader.Digits());
    if (reader.Next() == u'.' && IsDigit(reader.Next(1))) {
        reader.Skip();
        key += '.' + reader.Digits();
    }
    return key;
}

/// Whatever follows: words, numbers, and where they are usual Cutter numbers.
QString Rest(Reader& reader, bool withCutters) {
    QString key;
    while (!reader.AtEnd()) {
        if (IsDigit(reader.Next())) {
            key += Break + Number(reader.Digits()) + reader.Letters();
        } else if (const QString letters = reader.Letters(); !letters.isEmpty()) {
            key += Break + letters;
            if (withCutters)
                key += reader.Digits(); // decimals
        } else {
            reader.Skip();
        }
    }
    return key;
}

} // namespace

const QList<CallNumberType>& CallNumberTypes() {
    static const QList<CallNumberType> types{
        {"0", "Library of Congress classification", Scheme::LibraryOfCongress},
        {"1", "Dewey Decimal classification", Scheme::Dewey},
        {"2", "National Library of Medicine classification", Scheme::LibraryOfCongress},
        {"3", "Superintendent of Documents classification", Scheme::Other},
        {"4", "Shelving control number", Scheme::Other},
        {"8", "Other scheme", Scheme::Other},
    };
    return types;
}

namespace {

const CallNumberType* FindType(const QString& code) {
    const QList<CallNumberType>& types = CallNumberTypes();
    const auto found = std::find_if(types.begin(), types.end(),
                                    [&](const CallNumberType& type) { return type.code == code; });
    return found == types.end() ? nullptr : &*found;
}

} // namespace

Scheme SchemeOf(const QString& typeCode) {
    const CallNumberType* type = FindType(typeCode);
    return type ? type->scheme : Scheme::Other;
}

bool IsCallNumberType(const QString& typeCode) {
    return FindType(typeCode);
}

bool IsCallNumber(const QString& text, Scheme scheme) {
    static const QRegularExpression congress("^\\s*[A-Za-z]{1,3}\\s*(\\d|$)");
    static const QRegularExpression dewey("^\\s*\\d{1,3}(?!\\d)");
    switch (scheme) {
    case Scheme::LibraryOfCongress:
        return congress.match(text).hasMatch();
    case Scheme::Dewey:
        return dewey.match(text).hasMatch();
    case Scheme::Other:
        break;
    }
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

QString SortKey(const QString& callNumber, Scheme scheme) {
    Reader reader(callNumber);
    reader.SkipBlanks();
    QString key;
    if (scheme != Scheme::Other && !IsCallNumber(callNumber, scheme))
        return Rest(reader, true).trimmed(); // somewhere among the others, but always in the same place
    if (scheme == Scheme::LibraryOfCongress) {
        key = reader.Letters().leftJustified(ClassLetters, Break);
        reader.SkipBlanks();
        if (IsDigit(reader.Next()))
            key += ClassNumber(reader);
    } else if (scheme == Scheme::Dewey) {
        key = ClassNumber(reader);
    }
    key += Rest(reader, scheme != Scheme::Other);
    return scheme == Scheme::Other ? key.mid(1) : key;
}

} // namespace sysadmin::callslips
