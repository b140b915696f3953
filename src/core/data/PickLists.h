#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

namespace sysadmin {

/// One entry of a pick-list: what is stored and what is shown.
struct PickItem {
    QString id;
    QString text;
    bool operator==(const PickItem&) const = default;
};

/// The items behind one that stands for no value and has this text; without a text there is none.
inline QList<PickItem> WithNone(QList<PickItem> items, const QString& none) {
    if (!none.isEmpty())
        items.prepend({{}, none});
    return items;
}

/// The pick-lists that several screens show, by their registered name ("cboItemType", "cboOwningLib", ...).
/// Who saves or deletes a record brings its lists up to date; choices on open screens that show one follow at
/// once.
class PickLists : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    /// Replaces a list whole.
    void Set(const QString& list, const QList<PickItem>& items);
    /// Adds the entry, or gives the entry of this id the new text. A list nobody has filled yet is left
    /// alone: its first reader loads it whole.
    void Put(const QStringList& lists, const PickItem& item);
    void Remove(const QStringList& lists, const QString& id);
    /// The entries, sorted by text; empty for a list that nobody has filled.
    QList<PickItem> Items(const QString& list) const { return m_lists.value(list); }
    bool Has(const QString& list) const { return m_lists.contains(list); }

signals:
    void Changed(const QString& list);

private:
    QHash<QString, QList<PickItem>> m_lists;
};

} // namespace sysadmin
