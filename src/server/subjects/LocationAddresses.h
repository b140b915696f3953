#pragma once

#include "server/Children.h"

namespace sysadmin::server {

/// The addresses of a location and their phones, which travel inside the location's record. "AdrRq" says what
/// becomes of an address. The phones that follow an address (or name it) are all that it has afterwards.
Children LocationAddresses();

} // namespace sysadmin::server
