#include "server/store/Table.h"

#include <QRegularExpression>

namespace sysadmin::server {

const Column* Table::Find(const QString& column) const {
    for (const Column& candidate : columns)
        if (candidate.name == column)
            return &candidate;
    return nullptr;
}

bool Table::IsUniqueText(const QString& column) const {
    for (const UniqueText& unique : uniqueTexts)
        if (unique.column == column)
            return true;
    return false;
}

QString CellRule::WrongWith(ColumnType type, const QString& value) const {
    if (!IsStorable(value))
        return "holds a character that cannot be stored";
    const QString trimmed = value.trimmed();
    if (required && trimmed.isEmpty())
        return "must not be empty";
    bool isRight = true;
    switch (type) {
    case ColumnType::Text:
        if (isDecimal) {
            static const QRegularExpression form("^[+-]?(\\d+(\\.\\d*)?|\\.\\d+)\\z");
            if (!trimmed.isEmpty() && (!form.match(trimmed).hasMatch() || trimmed.size() > limit))
                return "is no amount: \"" + value + '"';
        } else if (const qsizetype size = value.size() - value.count("\r\n"); limit > 0 && size > limit) {
            return QString("is too long: %1 characters, and %2 are the most").arg(size).arg(limit);
        }
        break;
    case ColumnType::Flag:
        if (!trimmed.isEmpty() && value != u"Y" && value != u"N")
            return "is neither Y nor N: \"" + value + '"';
        break;
    case ColumnType::Whole:
        if (!trimmed.isEmpty()) {
            const qint64 number = trimmed.toLongLong(&isRight);
            if (!isRight)
                return "is no number: \"" + value + '"';
            if (number < least || number > most)
                return QString("is %1, and it must be from %2 to %3").arg(number).arg(least).arg(most);
        }
        break;
    case ColumnType::Reference:
    case ColumnType::Bytes:
        return {};
    }
    return check && !check(value) ? "cannot be \"" + value + '"' : QString();
}

bool IsStorable(const QString& text) {
    // Nearly every text has none of the characters that need a closer look; the compiler makes this loop look
    // at several at a time.
    constexpr char16_t FirstSurrogate = 0xd800;
    bool isPlain = true;
    for (const QChar character : text)
        isPlain &= char16_t(character.unicode() - 1) < FirstSurrogate - 1;
    if (isPlain)
        return true;
    constexpr char16_t ByteOrderMark = 0xfeff;
    if (text.startsWith(QChar(ByteOrderMark)))
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (character.isNull() || character.isSurrogate() || character.unicode() >= 0xfffe)
            return false;
    }
    return true;
}

QString StorablePart(const QString& text) {
    QString part;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const QString character = text.mid(i, isPair ? 2 : 1);
        if (IsStorable(character))
            part += character;
        i += isPair ? 1 : 0;
    }
    return part;
}

QString Fold(const QString& text) {
    return text.trimmed().normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString FoldedName(const QString& column) {
    return column + "_folded";
}

} // namespace sysadmin::server
