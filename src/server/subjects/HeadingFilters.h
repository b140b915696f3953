#pragma once

#include "server/Context.h"

namespace sysadmin::server {

/// Appends what the filter of a headings index leaves out; nothing where it has none.
void AddLeftOut(Context& context, qint64 index, ReplyFields& reply);

} // namespace sysadmin::server
