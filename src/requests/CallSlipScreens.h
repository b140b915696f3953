#pragma once

#include "framework/forms/PutList.h"

namespace sysadmin {

class ScreenCatalogue;
class ValueField;

/// The shared list of the queues. Item types are put into "cboPrintGroups", which is why it is another one.
inline const QString QueueList = "CallSlipQueues";

/// What an update carries besides the value itself: the new text under a tag of its own.
PutStep PutNewText(const QString& tag, const ValueField& field);

/// Contributes the screens of queues, rules and no-fill reasons.
void AddCallSlipScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
