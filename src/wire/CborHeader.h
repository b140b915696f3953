#pragma once

#include <QtEndian>

namespace sysadmin::wire {

/// What stands in front of every item of a message: its kind and, for a text or an array, its length.
struct CborHeader {
    enum Major { Unsigned = 0, Negative = 1, Text = 3, Array = 4 };
    enum class Result { Complete, Incomplete, Broken };

    int major = 0;
    quint64 value = 0;
    int size = 0; ///< bytes of the header itself

    /// Reads the header at the beginning of some bytes.
    Result Read(const char* bytes, qint64 available) {
        if (available < 1)
            return Result::Incomplete;
        const auto first = uchar(bytes[0]);
        major = first >> 5;
        const int info = first & 0x1f;
        // 28 to 30 mean nothing, 31 is a length that is told only at the end: a limit could not be checked
        // first.
        if (info > 27)
            return Result::Broken;
        size = info < 24 ? 1 : 1 + (1 << (info - 24));
        if (available < size)
            return Result::Incomplete;
        switch (info) {
        case 24:
            value = uchar(bytes[1]);
            break;
        case 25:
            value = qFromBigEndian<quint16>(bytes + 1);
            break;
        case 26:
            value = qFromBigEndian<quint32>(bytes + 1);
            break;
        case 27:
            value = qFromBigEndian<quint64>(bytes + 1);
            break;
        default:
            value = quint64(info);
        }
        return Result::Complete;
    }

    static constexpr int MostBytes = 9;
    /// Writes the shortest header of this kind and value; answers where it ends.
    static char* Write(char* to, Major major, quint64 value) {
        const auto kind = uchar(major << 5);
        if (value < 24) {
            *to = char(kind | uchar(value));
            return to + 1;
        }
        if (value <= 0xff) {
            *to = char(kind | 24);
            to[1] = char(value);
            return to + 2;
        }
        if (value <= 0xffff) {
            *to = char(kind | 25);
            qToBigEndian(quint16(value), to + 1);
            return to + 3;
        }
        if (value <= 0xffff'ffff) {
            *to = char(kind | 26);
            qToBigEndian(quint32(value), to + 1);
            return to + 5;
        }
        *to = char(kind | 27);
        qToBigEndian(value, to + 1);
        return to + 9;
    }
};

} // namespace sysadmin::wire
