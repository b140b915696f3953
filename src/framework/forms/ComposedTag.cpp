#include "framework/forms/ComposedTag.h"

#include "core/data/RequestChannel.h"

#include <algorithm>

namespace sysadmin {

TagCodec FixedWidths(const QList<int>& widths, QChar any) {
    const auto split = [=](const QString& text) {
        QStringList parts;
        qsizetype place = 0;
        for (int width : widths) {
            const QString part = text.mid(place, width);
            parts.append(part.count(any) == part.size() ? QString() : part);
            place += width;
        }
        return parts;
    };
    const auto join = [=](const QStringList& parts, const QString&) {
        QString text;
        for (qsizetype i = 0; i < widths.size(); ++i)
            text += parts.value(i).left(widths[i]).leftJustified(widths[i], any);
        return text;
    };
    return {split, join};
}

TagCodec KeyValues(const QStringList& keys, QChar separator, QChar equals) {
    const auto split = [=](const QString& text) {
        QStringList parts(keys.size());
        for (const QString& pair : text.split(separator, Qt::SkipEmptyParts))
            if (const qsizetype part = keys.indexOf(pair.section(equals, 0, 0)); part >= 0)
                parts[part] = pair.section(equals, 1);
        return parts;
    };
    const auto join = [=](const QStringList& parts, const QString& former) {
        QStringList pairs;
        for (qsizetype i = 0; i < keys.size(); ++i)
            if (!parts.value(i).isEmpty())
                pairs.append(keys[i] + equals + parts[i]);
        for (const QString& pair : former.split(separator, Qt::SkipEmptyParts))
            if (!keys.contains(pair.section(equals, 0, 0)))
                pairs.append(pair);
        return pairs.join(separator);
    };
    return {split, join};
}

QString ComposedTag::Text() const {
    if (!IsChanged())
        return m_loaded;
    QStringList parts;
    for (const ValueField* part : m_parts)
        parts.append(part->Draft().trimmed());
    return m_codec.join(parts, m_loaded);
}

void ComposedTag::Load(RequestChannel& channel) {
    m_loaded = channel.GetField(Tag());
    const QStringList parts = m_codec.split(m_loaded);
    for (qsizetype i = 0; i < m_parts.size(); ++i)
        m_parts[i]->SetStored(parts.value(i));
}

void ComposedTag::Put(RequestChannel& channel) const {
    channel.PutField(Tag(), Text());
}

bool ComposedTag::IsChanged() const {
    return std::any_of(m_parts.begin(), m_parts.end(),
                       [](const ValueField* part) { return part->IsChanged(); });
}

} // namespace sysadmin
