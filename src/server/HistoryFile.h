#pragma once

#include "server/store/Records.h"

namespace sysadmin::server {

/// Writes all changes of the history, newest first, into a CSV file: the columns that the clients export of a
/// record's history, and which record it is. A line for each field; passwords never. Why it cannot be
/// written, as a sentence; empty when it was, with the number of changed records. An existing file is
/// replaced when all is written. Throws `StoreError`.
QString WriteHistoryFile(Database& database, const Tables& tables, const QString& fileName, qint64* records);

} // namespace sysadmin::server
