#pragma once

#include "server/Passwords.h"
#include "server/remote/RemoteResult.h"

#include <QUrl>

#include <memory>

namespace sysadmin::server {

/// A web address and who signs on there.
struct AddressCall {
    QUrl url;
    QString user;
    std::shared_ptr<const Secret> password{}; ///< null: none
};

/// Asks the address for its page and looks at the beginning of the answer alone. User and password go to
/// encrypted addresses only, and nothing goes to one whose certificate no authority vouches for.
RemoteResult AskAddress(const AddressCall& call, const Patience& patience);

} // namespace sysadmin::server
