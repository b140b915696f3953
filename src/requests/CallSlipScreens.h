#pragma once

#include <QString>

namespace sysadmin {

class ScreenCatalogue;

/// The shared list of the queues. Item types are put into "cboPrintGroups", which is why it is another one.
inline const QString QueueList = "CallSlipQueues";

/// Contributes the screens of queues, rules and no-fill reasons.
void AddCallSlipScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
