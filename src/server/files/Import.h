#pragma once

#include "server/files/Compare.h"

namespace sysadmin::server {

class Database;
class Library;

/// In what a library differs from the settings: what an import of them would do. Throws `StoreError`.
Comparison CompareWith(Database& database, FileForm& form, const Settings& settings);

enum class Import {
    Try, ///< everything is done and undone again
    Do,
};

/// Makes a library what the settings say, whole or not at all: not when anything stands against it, which the
/// answer tells then. The tables that are not among the settings stay. Changes stand in the history as one
/// request. A server that serves the same library goes on meanwhile; its clients are told what changed.
/// Throws `StoreError`.
Comparison ImportSettings(const Library& library, Database& database, FileForm& form,
                          const Settings& settings, Import mode);

} // namespace sysadmin::server
