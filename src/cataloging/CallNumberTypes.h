#pragma once

#include "callslips/CallNumberOrder.h"
#include "core/data/PickLists.h"

namespace sysadmin {

/// The types of call numbers as entries of a choice.
inline QList<PickItem> CallNumberTypeItems() {
    QList<PickItem> items;
    for (const callslips::CallNumberType& type : callslips::CallNumberTypes())
        items.append({type.code, type.name});
    return items;
}

} // namespace sysadmin
