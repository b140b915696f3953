#pragma once

#include "framework/forms/GridRow.h"
#include "wire/HeadingFilters.h"

namespace sysadmin {

/// What a filter leaves out travels under these tags, entry by entry.
inline const QStringList LeftOutTags{"HK", "HV", "HS"};

/// The entry that a row of the list shows.
wire::headings::LeftOut LeftOutOf(const GridRow& row);

/// "topical terms of Medical Subject Headings (second indicator 2)".
QString InWords(const wire::headings::LeftOut& entry);

/// Why the entry leaves nothing out of an index of this definition (the text of the tag "Ix"), in a sentence
/// without a full stop; empty when it does.
QString WhyWithoutEffect(const wire::headings::LeftOut& entry, const QString& definition);

/// A line for each entry: what is left out, and where it has no effect why.
QStringList LeftOutInWords(const QList<GridRow>& entries, const QString& definition);

} // namespace sysadmin
