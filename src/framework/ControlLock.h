#pragma once

class QWidget;

namespace sysadmin {

/// Locks a control that has no read-only state of its own (check box, option, drop-down list) or frees it: a
/// locked one can take the focus and be read, keeps its full contrast, and takes no input.
void LockControl(QWidget& control, bool locked);
bool IsLocked(const QWidget& control);

} // namespace sysadmin
