#pragma once

#include "marc/Record.h"

#include <QStringList>

class QIODevice;

namespace sysadmin::marc {

inline constexpr int MostRecords = 100; ///< that are read unless told otherwise

/// What reading came to. A record that is broken is left out and has a sentence instead.
struct Result {
    QList<Record> records = {};
    QStringList problems = {}; ///< a sentence each: which record, where, what
    bool hasMore = false;      ///< the limit was reached before the end
};

/// Reads the first records (`limit` of them, broken ones counted) of an open file of any size: ISO 2709 (in
/// UTF-8 or MARC-8, as byte 9 of the leader says), MARCXML (one record or a collection, also inside other
/// elements), or text with a field on each line ("245 10 $a Title $b rest", "=245  10$aTitle$brest") and an
/// empty line between records. Which of them it is shows in the first bytes.
Result ReadRecords(QIODevice& device, int limit = MostRecords);
/// The same for pasted text.
Result ReadRecords(const QString& text, int limit = MostRecords);

} // namespace sysadmin::marc
