#include "server/store/Table.h"

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

bool IsStorable(const QString& text) {
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
