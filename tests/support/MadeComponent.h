#pragma once

#include <QByteArray>
#include <QVersionNumber>
#include <QtEndian>

namespace sysadmin {

/// The bytes of a library for Windows that holds nothing but a version resource, laid out by hand. Where its
/// parts lie is public, so that tests can spoil them.
class MadeComponent {
public:
    static constexpr int Headers = 0x80, Resources = 0x400, Address = 0x3000, Version = Resources + 0x100;
    static constexpr int Size = 0x800;

    MadeComponent(const QVersionNumber& file, const QVersionNumber& product, bool wide = false)
        : bytes(Size, 0) {
        constexpr quint32 Directory = 0x80000000;
        Put16(0, 0x5a4d);
        Put32(0x3c, Headers);
        Put32(Headers, 0x4550);
        Put16(Headers + 6, 2); // sections, the second with the resources
        const int optional = Headers + 24;
        const int directories = optional + (wide ? 112 : 96);
        Put16(Headers + 20, quint16(directories + 16 * 8 - optional));
        Put16(optional, wide ? 0x20b : 0x10b);
        Put32(directories - 4, 16);
        Put32(directories + 16, Address);
        Put32(directories + 20, 0x200);
        PutSection(directories + 16 * 8, 0x1000, 0x200, 0x200);
        PutSection(directories + 16 * 8 + 40, Address, 0x400, Resources);
        // Kinds: a named one, icons, versions.
        Put16(Resources + 12, 1);
        Put16(Resources + 14, 2);
        PutEntry(Resources + 16, Directory | 0x1f0, 0xf0);
        PutEntry(Resources + 24, 3, 0xf0);
        PutEntry(Resources + 32, 16, Directory | 0x30);
        Put16(Resources + 0x30 + 14, 1);
        PutEntry(Resources + 0x30 + 16, 1, Directory | 0x50);
        Put16(Resources + 0x50 + 14, 1);
        PutEntry(Resources + 0x50 + 16, 0x409, 0x70);
        Put32(Resources + 0x70, Address + 0x100);
        Put32(Resources + 0x74, 92);
        Put16(Version, 92);
        Put16(Version + 2, 52);
        const QByteArray key = "VS_VERSION_INFO";
        for (int i = 0; i < key.size(); ++i)
            Put16(Version + 6 + 2 * i, quint16(key[i]));
        Put32(Version + 40, 0xfeef04bd);
        PutVersion(Version + 48, file);
        PutVersion(Version + 56, product);
    }

    void Put16(int offset, quint16 value) { qToLittleEndian(value, bytes.data() + offset); }
    void Put32(int offset, quint32 value) { qToLittleEndian(value, bytes.data() + offset); }

    QByteArray bytes;

private:
    void PutSection(int at, quint32 address, quint32 size, quint32 place) {
        Put32(at + 8, size);
        Put32(at + 12, address);
        Put32(at + 16, size);
        Put32(at + 20, place);
    }
    void PutEntry(int at, quint32 id, quint32 target) {
        Put32(at, id);
        Put32(at + 4, target);
    }
    void PutVersion(int at, const QVersionNumber& version) {
        Put32(at, quint32(version.segmentAt(0)) << 16 | quint32(version.segmentAt(1)));
        Put32(at + 4, quint32(version.segmentAt(2)) << 16 | quint32(version.segmentAt(3)));
    }
};

} // namespace sysadmin
