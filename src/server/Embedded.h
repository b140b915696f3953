#pragma once

#include "wire/Endpoint.h"

namespace sysadmin::server {

/// Opens the library in a directory for use inside this process, and makes the sample library when there is
/// none. The factory makes the server's end of one connection after the other; it is empty, with one line,
/// when the library cannot be opened.
wire::EndpointFactory MakeEmbeddedEndpoint(const QString& directory, QString* error);

} // namespace sysadmin::server
