#pragma once

#include "cataloging/FieldOrder.h"
#include "marc/Record.h"

namespace sysadmin {

/// A field in its new place, and what brought it there.
struct PlacedField {
    static constexpr int Control = -1; ///< a control field: they stay in front
    static constexpr int NoGroup = -2; ///< what no group takes comes last, as it stood

    qsizetype from = 0;  ///< its place in the record, from 0
    int group = NoGroup; ///< its place in the configuration, from 0, or one of the above
    /// The rule of the group, from 0, that brought it before the next one there that differs (the last ones:
    /// behind the one before); -1: none tells them apart, they stand as they stood.
    int rule = -1;
    bool isPaired = false; ///< an 880 that follows the field whose other writing it is
    bool operator==(const PlacedField&) const = default;
};

/// The fields of a record in the order of the configuration. A field belongs to the first group whose pattern
/// takes it; the first rule of a group counts first; what no rule tells apart stays as it stood. With pairing
/// an 880 stands behind its field, and one without such a field where the field would stand.
QList<PlacedField> Reorder(const marc::Record& record, const FieldOrderConfig& configuration);

} // namespace sysadmin
