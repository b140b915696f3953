#pragma once

#include "server/files/FileForm.h"

namespace sysadmin::server {

class Database;

/// Writes a library's settings into a folder, one file for each of the tables, and makes the folder when it
/// is missing. A file that says the same already is left alone. Answers why that cannot be; empty when all is
/// well. Throws `StoreError`.
QString WriteFolder(Database& database, FileForm& form, const QStringList& tables, const QString& folder);

/// What a folder of files says.
struct FolderSettings {
    Settings tables = {};
    QList<FileProblem> problems = {};
    QStringList ignored = {}; ///< files of what is no setting
    QString error = {};       ///< why nothing could be read
};

/// Reads the files of these tables from a folder; a table without a file is not among the result.
FolderSettings ReadFolder(FileForm& form, const QStringList& tables, const QString& folder);

} // namespace sysadmin::server
