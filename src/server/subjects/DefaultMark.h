#pragma once

#include "server/Context.h"

namespace sysadmin::server {

// The mark "is_default", which one record of a table has, always.

/// Looks over a record that is about to be written: the first one gets the mark. 13 when the record would
/// lose it: it is only moved, by marking another one.
qint16 KeepDefaultMark(Context& context, const QString& table, const Row& before, Row& after);
/// Takes the mark from all others when the record has it.
void MoveDefaultMark(Context& context, const QString& table, qint64 id);
/// 72 when the record has the mark and there are others.
qint16 CheckDefaultRemoval(Context& context, const QString& table, const Row& record);

} // namespace sysadmin::server
