#pragma once

#include "server/files/Compare.h"

namespace sysadmin::server {

/// A difference as people read it: a line with file and line, below it a line for each value that changed.
QStringList LinesOf(const Difference& difference);
/// "1 added, 2 changed, none removed."
QString SumOf(const Comparison& comparison);
/// What new records lack because files hold no secrets: a line for each table with such records.
QStringList MissingSecrets(const FileForm& form, const Comparison& comparison);

} // namespace sysadmin::server
