#pragma once

#include "core/data/PickLists.h"

#include <algorithm>

namespace sysadmin {

/// Indexes as entries of a choice, "Name (CODE)", by name. `indexes` holds them by code.
template <class Indexes>
QList<PickItem> IndexItems(const Indexes& indexes) {
    QList<PickItem> items;
    for (auto index = indexes.begin(); index != indexes.end(); ++index)
        items.append({index.key(), QString("%1 (%2)").arg(index->name, index.key())});
    std::sort(items.begin(), items.end(),
              [](const PickItem& one, const PickItem& other) { return one.text < other.text; });
    return items;
}

} // namespace sysadmin
