#pragma once

#include <QVersionNumber>

#include <optional>

class QIODevice;

namespace sysadmin {

/// The versions that a Windows program or library carries, four numbers each.
struct FileVersions {
    QVersionNumber file;
    QVersionNumber product;
};

/// Reads them from the version resource of a file in the portable executable format, on every system. None
/// when the file carries none, or is no such file. Reads only what it needs, from wherever the file's own
/// tables point to within it.
std::optional<FileVersions> ReadFileVersions(QIODevice& file);

} // namespace sysadmin
