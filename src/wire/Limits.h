#pragma once

#include <QtGlobal>

namespace sysadmin::wire {

/// What a message may hold at the most, in bytes of its encoded form. A peer that sends more is cut off.
struct Limits {
    qint64 name = 64;
    qint64 tag = 32;
    qint64 value = 1024 * 1024;
    qint64 message = 64 * 1024 * 1024;

    /// The limits that hold until an operator has signed on.
    static constexpr Limits BeforeSignOn() { return {.message = 64 * 1024}; }
};

} // namespace sysadmin::wire
