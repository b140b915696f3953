#pragma once

#include "framework/forms/GridRow.h"

namespace sysadmin {

class RequestChannel;

/// What other settings of the library say of an index, as the reply about it carries it.
struct IndexUses {
    QList<GridRow> leftOut; ///< entries of its heading filter
    QList<GridRow> links;   ///< that look in it: caption, field, subfield
    QList<GridRow> weights; ///< of its fields

    void Load(const RequestChannel& channel);
    /// A sentence for each of them. `definition` is the text of the tag "Ix" as it is edited now.
    QStringList InWords(const QString& definition) const;
};

} // namespace sysadmin
