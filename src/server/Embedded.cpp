#include "server/Embedded.h"

#include "server/ServerConnection.h"

namespace sysadmin::server {

wire::EndpointFactory MakeEmbeddedEndpoint(const QString& directory, QString* error) {
    LibraryOptions options;
    options.address = StoreAddress::InDirectory(directory);
    options.whenMissing = LibraryOptions::WhenMissing::MakeSample;
    const auto library = Library::Open(options, error);
    if (!library)
        return {};
    return [library](const QString& peer) { return std::make_unique<ServerConnection>(library, peer); };
}

} // namespace sysadmin::server
