#pragma once

#include "server/Context.h"

namespace sysadmin::server {

/// Appends the links between records that look in the index of this code.
void AddLinksTo(Context& context, const QString& index, ReplyFields& reply);

} // namespace sysadmin::server
