#pragma once

#include "server/store/Table.h"

namespace sysadmin::server {

/// The rule that a query finds no rows; the rows that it finds break it, by their ids. 0 stands for one that
/// is missing.
StoredRule FindsNone(const QString& sql, const QString& otherwise, const QStringList& others = {});

/// The rule that the rows that a query finds stay, by their ids.
StoredRule MustStay(const QString& sql, const QString& otherwise);

/// The rule that a column holds the places of all rows, from 1 and without gaps.
StoredRule PlacesInOrder(const QString& table, const QString& column);

} // namespace sysadmin::server
