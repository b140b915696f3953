#pragma once

#include <QtGlobal>

namespace sysadmin::wire {

/// What a message may hold at the most; sizes in bytes of the encoded form. A peer that sends more is cut
/// off.
struct Limits {
    qint64 name = 64;
    qint64 tag = 32;
    qint64 value = 1024 * 1024;
    qint64 message = 64 * 1024 * 1024;
    /// Fields in a message: an empty field is two bytes on the wire, but far more in memory.
    qint64 fields = 4 * 1024 * 1024;

    /// The limits that hold until an operator has signed on.
    static constexpr Limits BeforeSignOn() { return {.message = 64 * 1024, .fields = 256}; }
};

} // namespace sysadmin::wire
