#pragma once

class QComboBox;

namespace sysadmin {

/// Esc closes the box's open list and nothing else: by itself the box would close it and hand the key on to
/// the screen's shortcuts.
void KeepEscapeInList(QComboBox& box);

} // namespace sysadmin
