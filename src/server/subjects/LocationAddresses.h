#pragma once

#include "server/Context.h"

// The addresses of a location and their phones. They travel inside the location's record.

namespace sysadmin::server {

class Registry;

/// Declares what is stored.
void DeclareLocationAddresses(Registry& registry);

/// Appends the addresses, then their phones.
void PutAddresses(Context& context, qint64 location, wire::Fields& reply);
/// Appends the kinds of phones.
void PutPhoneTypes(Context& context, wire::Fields& reply);
/// Carries out the address actions of a request: "AdrRq" is 1 for a new address, 2 for a changed and 3 for a
/// removed one. The phones that follow an address (or name it) are all that it has afterwards, those marked 3
/// excepted.
qint16 ApplyAddresses(Context& context, const wire::Fields& request, qint64 location);

} // namespace sysadmin::server
