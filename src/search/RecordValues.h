#pragma once

#include <QStringList>

namespace sysadmin {

namespace marc {
struct Record;
}

/// Whether a field with this tag is one of a pattern ("245"; "24X" and "6XX" stand for several, "*" for all).
bool IsFieldOf(const QString& tag, const QString& pattern);

/// The texts that a record holds in a field ("245"; "24X" and "6XX" stand for several, "*" for all), one for
/// each occurrence, made of these subfields in the record's order; no subfields: of all.
QStringList ValuesOf(const marc::Record& record, const QString& field, const QString& subfields);

/// Records that show what definitions come to; their titles are invented.
const QList<marc::Record>& SampleTitles();

} // namespace sysadmin
