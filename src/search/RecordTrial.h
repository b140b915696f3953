#pragma once

#include "framework/forms/GridRow.h"

namespace sysadmin {

namespace marc {
struct Record;
}

/// How the rows of links are read: caption, direction, field, indicators, subfield, index, shown to whom.
inline const QStringList LinkTags{"Cp", "Dr", "FF", "I1", "I2", "SF", "IC", "SS", "SP"};

/// What the links find in a record, in their order: a row for each text that is looked for. Cells: caption,
/// direction, field, text, index, shown to staff, in the public catalogue.
QList<GridRow> LinksIn(const marc::Record& record, const QList<GridRow>& links);

/// The headings that an index of this definition (the text of the tag "Ix") takes from a record, and what its
/// filter makes of them. Cells: field with indicators, heading, outcome.
QList<GridRow> HeadingsIn(const marc::Record& record, const QString& definition,
                          const QList<GridRow>& leftOut);

} // namespace sysadmin
