#pragma once

#include <QStringList>

namespace sysadmin::wire {

/// A text of items separated by a blank, each KEY=VALUE or a word alone ("IX=C CS=TALL~AHED IDS=Y"): the form
/// in which the definitions of indexes are stored. Whatever is not asked for or set stays as it is, letter
/// for letter and in its place: items that nobody knows, further ones of the same key, blanks.
class ItemText {
public:
    explicit ItemText(const QString& text = {});

    /// The value of the first item with the key; empty where there is none.
    QString Value(const QString& key) const;
    bool Has(const QString& key) const;
    /// Gives the first item with the key another value, or adds it behind the others. An empty value takes
    /// all items of the key away. A value holds no blanks.
    void Set(const QString& key, const QString& value);
    /// The items with other keys than these, as they stand.
    QStringList Others(const QStringList& keys) const;
    QString Text() const { return m_items.join(' '); }

private:
    qsizetype Find(const QString& key) const;

    QStringList m_items; // empty ones between blanks that follow each other
};

} // namespace sysadmin::wire
