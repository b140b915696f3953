#pragma once

#include "server/Children.h"

namespace sysadmin::server {

/// The tags of a place in a record by whose text records are matched.
struct MatchTags {
    QString field;
    QString subfields;
    QString normalisation;
};

/// Ranked places in a record, each with how its text is made comparable; none twice.
Children MatchRows(const QString& table, const QString& owner, const MatchTags& tags);

} // namespace sysadmin::server
