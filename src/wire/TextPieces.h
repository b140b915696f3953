#pragma once

#include <QStringList>

namespace sysadmin::wire {

/// A long text in pieces that fit into fields: at most 768 KiB each on the wire.
inline QStringList TextPieces(const QString& text) {
    constexpr qsizetype MostCharacters = 256 * 1024;
    QStringList pieces;
    for (qsizetype at = 0; at < text.size();) {
        qsizetype size = qMin(MostCharacters, text.size() - at);
        if (at + size < text.size() && text[at + size].isLowSurrogate())
            --size; // a pair stays together
        pieces.append(text.mid(at, size));
        at += size;
    }
    return pieces;
}

} // namespace sysadmin::wire
