#pragma once

#include <QString>

namespace sysadmin {

/// What came of the server's calling another system, as it travels.
struct RemoteOutcome {
    QString outcome{}; ///< "connected", "refused", ...
    QString detail{};  ///< the other side's own words
    QString place{};   ///< "host:port"
    QString timeout{}; ///< seconds

    /// Why the other side was not reached, in a sentence for the operator; empty where it was reached, or
    /// where it depends on what it is.
    QString Sentence() const;
};

} // namespace sysadmin
