#pragma once

#include "server/Subject.h"

namespace sysadmin::server {

/// The fields that every postal address has, from e-mail to standard number, in the order in which they
/// travel.
QList<SubjectField> PostalFields();

} // namespace sysadmin::server
