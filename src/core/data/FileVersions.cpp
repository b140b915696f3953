#include "core/data/FileVersions.h"

#include <QIODevice>
#include <QtEndian>

namespace sysadmin {

namespace {

/// Little-endian numbers at offsets of a file. Whatever lies outside is 0, and the file has failed.
class Bytes {
public:
    explicit Bytes(QIODevice& file)
        : m_file(file) {}

    quint16 Half(qint64 offset) { return quint16(Read(offset, 2)); }
    quint32 Word(qint64 offset) { return Read(offset, 4); }
    bool HasFailed() const { return m_failed; }

private:
    quint32 Read(qint64 offset, int size) {
        uchar bytes[4] = {};
        if (offset < 0 || offset > m_file.size() - size || !m_file.seek(offset) ||
            m_file.read(reinterpret_cast<char*>(bytes), size) != size) {
            m_failed = true;
            return 0;
        }
        return qFromLittleEndian<quint32>(bytes);
    }

    QIODevice& m_file;
    bool m_failed = false;
};

/// Where the sections lie, in the file and in memory.
struct Headers {
    qint64 sections = 0;
    int sectionCount = 0;
    quint32 resources = 0; ///< address in memory
};

std::optional<Headers> ReadHeaders(Bytes& bytes) {
    constexpr quint16 Program = 0x5a4d;            // "MZ"
    constexpr quint32 PortableProgram = 0x4550;    // "PE", two NULs
    constexpr quint16 Usual = 0x10b, Wide = 0x20b; // 32 and 64 bits
    if (bytes.Half(0) != Program)
        return std::nullopt;
    const qint64 begin = bytes.Word(0x3c);
    if (bytes.Word(begin) != PortableProgram)
        return std::nullopt;
    const qint64 optional = begin + 24;
    const quint16 kind = bytes.Half(optional);
    if (kind != Usual && kind != Wide)
        return std::nullopt;
    const qint64 directories = optional + (kind == Wide ? 112 : 96);
    constexpr quint32 ResourceDirectory = 2;
    if (bytes.Word(directories - 4) <= ResourceDirectory) // how many there are
        return std::nullopt;
    return Headers{.sections = optional + bytes.Half(begin + 20),
                   .sectionCount = bytes.Half(begin + 6),
                   .resources = bytes.Word(directories + 8 * ResourceDirectory)};
}

/// Where in the file the byte lies that is at this address in memory; -1: nowhere.
qint64 Place(Bytes& bytes, const Headers& headers, quint32 address) {
    constexpr int SectionSize = 40;
    for (int i = 0; i < headers.sectionCount && !bytes.HasFailed(); ++i) {
        const qint64 section = headers.sections + SectionSize * i;
        const quint32 begin = bytes.Word(section + 12);
        const quint32 size = bytes.Word(section + 16);
        if (address >= begin && address - begin < size)
            return qint64(bytes.Word(section + 20)) + (address - begin);
    }
    return -1;
}

/// What an entry of a directory of resources leads to: the entry with this id, or the first one. 0: there is
/// none. The highest bit says that it is a directory again.
quint32 Entry(Bytes& bytes, qint64 directory, std::optional<quint32> id) {
    const int count = bytes.Half(directory + 12) + bytes.Half(directory + 14); // named ones, those with an id
    for (int i = 0; i < count && !bytes.HasFailed(); ++i) {
        const qint64 entry = directory + 16 + 8 * i;
        if (!id || bytes.Word(entry) == *id)
            return bytes.Word(entry + 4);
    }
    return 0;
}

/// Where the version resource begins; -1: there is none. Resources stand in directories by kind, by name and
/// by language; of names and languages the first one counts.
qint64 FindVersion(Bytes& bytes, const Headers& headers) {
    constexpr quint32 VersionKind = 16;
    constexpr quint32 IsDirectory = 0x80000000;
    const qint64 root = headers.resources > 0 ? Place(bytes, headers, headers.resources) : -1;
    if (root < 0)
        return -1;
    const quint32 names = Entry(bytes, root, VersionKind);
    if (!(names & IsDirectory))
        return -1;
    const quint32 languages = Entry(bytes, root + (names & ~IsDirectory), std::nullopt);
    if (!(languages & IsDirectory))
        return -1;
    const quint32 data = Entry(bytes, root + (languages & ~IsDirectory), std::nullopt);
    if (data == 0 || (data & IsDirectory))
        return -1;
    return Place(bytes, headers, bytes.Word(root + data));
}

QVersionNumber Version(quint32 high, quint32 low) {
    return QVersionNumber(QList<int>{int(high >> 16), int(high & 0xffff), int(low >> 16), int(low & 0xffff)});
}

} // namespace

std::optional<FileVersions> ReadFileVersions(QIODevice& file) {
    Bytes bytes(file);
    const std::optional<Headers> headers = ReadHeaders(bytes);
    const qint64 version = headers ? FindVersion(bytes, *headers) : -1;
    if (version < 0)
        return std::nullopt;
    // Length, the length of what follows the key, kind; then the key, "VS_VERSION_INFO", up to a multiple
    // of 4.
    constexpr qint64 KeyEnd = 40;
    constexpr quint16 FixedSize = 52;
    constexpr quint32 FixedMark = 0xfeef04bd;
    const qint64 fixed = version + KeyEnd;
    if (bytes.Half(version + 2) < FixedSize || bytes.Word(fixed) != FixedMark)
        return std::nullopt;
    const FileVersions versions{.file = Version(bytes.Word(fixed + 8), bytes.Word(fixed + 12)),
                                .product = Version(bytes.Word(fixed + 16), bytes.Word(fixed + 20))};
    return bytes.HasFailed() ? std::nullopt : std::optional(versions);
}

} // namespace sysadmin
