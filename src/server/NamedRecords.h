#pragma once

#include "server/Registry.h"

namespace sysadmin::server {

// Records as people and requests know them. Everything throws `StoreError`.

/// What people call the record: its name, or else its code, what is first to be read of it, or its place.
QString NameOf(const Table& table, const Row& row);
/// The key by which requests name the record; empty for a setting of which there is one.
QString KeyOf(const Registry& registry, const RequestRule& rule, const Row& row, qint64 id);
/// The id of the record that requests know by the key, `rule` being one that reads such records.
std::optional<qint64> IdOfKey(Context& context, const RequestRule& rule, const QString& key);

/// What a record that is gone held when it was removed; empty when that is not known.
Row RemovedRow(Database& database, const RecordName& record);

} // namespace sysadmin::server
