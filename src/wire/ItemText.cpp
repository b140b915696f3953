#include "wire/ItemText.h"

namespace sysadmin::wire {

namespace {

QString KeyOf(const QString& item) {
    return item.section('=', 0, 0);
}

} // namespace

ItemText::ItemText(const QString& text)
    : m_items(text.split(' ')) {}

qsizetype ItemText::Find(const QString& key) const {
    for (qsizetype i = 0; i < m_items.size(); ++i)
        if (!m_items[i].isEmpty() && KeyOf(m_items[i]) == key)
            return i;
    return -1;
}

QString ItemText::Value(const QString& key) const {
    const qsizetype place = Find(key);
    return place < 0 ? QString() : m_items[place].section('=', 1);
}

bool ItemText::Has(const QString& key) const {
    return Find(key) >= 0;
}

void ItemText::Set(const QString& key, const QString& value) {
    const QString item = key + '=' + value;
    if (const qsizetype place = Find(key); place >= 0 && !value.isEmpty())
        m_items[place] = item;
    else if (place >= 0)
        m_items.removeIf([&](const QString& other) { return !other.isEmpty() && KeyOf(other) == key; });
    else if (!value.isEmpty() && m_items == QStringList{QString()})
        m_items = QStringList{item};
    else if (!value.isEmpty())
        m_items.append(item);
}

QStringList ItemText::Others(const QStringList& keys) const {
    QStringList others;
    for (const QString& item : m_items)
        if (!item.isEmpty() && !keys.contains(KeyOf(item)))
            others.append(item);
    return others;
}

} // namespace sysadmin::wire
