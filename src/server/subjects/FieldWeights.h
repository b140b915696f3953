#pragma once

#include "server/Context.h"

namespace sysadmin::server {

/// Appends the weights of a keyword index of this code; nothing where it has none.
void AddWeightsOf(Context& context, const QString& index, ReplyFields& reply);

} // namespace sysadmin::server
