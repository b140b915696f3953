#pragma once

#include "server/files/FileForm.h"

namespace sysadmin::server {

/// A table's settings as its file: comma-separated text (RFC 4180, UTF-8), one record a line below a line of
/// headings.
QByteArray WriteTableFile(const SettingsTable& settings);

/// The settings that a table's file says. The columns may stand in any order; those that are missing are not
/// among those of the result. What is wrong with the file goes into `problems`, each with its line.
SettingsTable ReadTableFile(FileForm& form, const QString& table, const QByteArray& file,
                            QList<FileProblem>& problems);

} // namespace sysadmin::server
