#pragma once

namespace sysadmin::server {

/// What was found out or done for a request before its transaction.
class Prepared {
public:
    virtual ~Prepared() = default;
};

} // namespace sysadmin::server
