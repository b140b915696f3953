#pragma once

#include "server/Prepared.h"
#include "server/remote/RemoteResult.h"
#include "server/store/Records.h"

#include <optional>

namespace sysadmin::server {

/// A service of a search database: where it is, under which tags and in which columns.
struct DatabaseService {
    QString addressTag;
    QString portTag;
    QString address;
    QString port;
};

/// The public catalogue's service (of a Z39.50 target its only one), circulation, call slips,
/// administration, TPDS and TXWS.
const QList<DatabaseService>& DatabaseServices();

/// A character set in which targets send their records; its id is its place, counted from 1.
struct CharacterSet {
    QString name;      ///< for people
    QString converter; ///< as the converter of texts knows it
};
const QList<CharacterSet>& CharacterSets();
/// The id of one, 0, or nothing.
bool IsCharacterSet(const QString& value);

/// Whether the settings server of a database that is to take part in universal borrowing can be reached:
/// tried before the definition is saved.
struct ReachTried : Prepared {
    std::optional<Outcome> outcome; ///< none while it is being tried
};

/// Makes the library's own database if it is missing.
void MakeLocalDatabase(Records& records);

} // namespace sysadmin::server
