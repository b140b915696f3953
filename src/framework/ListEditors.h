#pragma once

namespace sysadmin {

/// Makes the editors of fields that hold a list known: rows, picked lists, checked entries.
void RegisterListEditors();

} // namespace sysadmin
