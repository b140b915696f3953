#include "core/data/PickLists.h"

#include <algorithm>

namespace sysadmin {

namespace {

void SortByText(QList<PickItem>& items) {
    std::stable_sort(items.begin(), items.end(), [](const PickItem& a, const PickItem& b) {
        return a.text.compare(b.text, Qt::CaseInsensitive) < 0;
    });
}

auto FindItem(QList<PickItem>& items, const QString& id) {
    return std::find_if(items.begin(), items.end(), [&](const PickItem& item) { return item.id == id; });
}

} // namespace

void PickLists::Set(const QString& list, const QList<PickItem>& items) {
    QList<PickItem> sorted = items;
    SortByText(sorted);
    m_lists[list] = sorted;
    emit Changed(list);
}

void PickLists::Put(const QStringList& lists, const PickItem& item) {
    for (const QString& list : lists) {
        const auto found = m_lists.find(list);
        if (found == m_lists.end())
            continue;
        const auto place = FindItem(*found, item.id);
        if (place == found->end())
            found->append(item);
        else
            place->text = item.text;
        SortByText(*found);
        emit Changed(list);
    }
}

void PickLists::Remove(const QStringList& lists, const QString& id) {
    for (const QString& list : lists) {
        const auto found = m_lists.find(list);
        if (found == m_lists.end())
            continue;
        const auto place = FindItem(*found, id);
        if (place == found->end())
            continue;
        found->erase(place);
        emit Changed(list);
    }
}

} // namespace sysadmin

#include "moc_PickLists.cpp"
