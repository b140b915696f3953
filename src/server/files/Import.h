#pragma once

#include "server/files/Compare.h"

#include <QDateTime>

namespace sysadmin::server {

class Database;
class Library;
class LibrarySettings;

/// Who imports, and when (UTC).
struct ImportedBy {
    QString operatorId;
    QDateTime now;
};

/// In what a library differs from the settings: what an import of them would do. Throws `StoreError`.
Comparison CompareWith(Database& database, FileForm& form, const Settings& settings);

/// Makes the library what the comparison with it says, within the transaction that is open. What stands
/// against it goes into the comparison's problems: then the library is half changed, and whoever called
/// undoes the transaction. Throws `StoreError`.
void Import(Records& records, FileForm& form, LibrarySettings& present, const ImportedBy& by,
            Comparison& comparison);

enum class ImportMode {
    Try, ///< everything is done and undone again
    Do,
};

/// Makes a library what the settings say, whole or not at all: not when anything stands against it, which the
/// answer tells then. The tables that are not among the settings stay. Changes stand in the history as one
/// request. A server that serves the same library goes on meanwhile; its clients are told what changed.
/// Throws `StoreError`.
Comparison ImportSettings(const Library& library, Database& database, FileForm& form,
                          const Settings& settings, ImportMode mode);

} // namespace sysadmin::server
