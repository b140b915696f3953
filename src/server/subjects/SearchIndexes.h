#pragma once

#include "server/Context.h"
#include "wire/SearchIndexes.h"

namespace sysadmin::server {

/// One family of search indexes: where it is stored.
struct IndexFamily {
    wire::indexes::Family family;
    QString table;
};
const QList<IndexFamily>& IndexFamilies();

/// Another table that names an index by its code: the column that follows when the code changes, and keeps
/// the index from being deleted.
struct IndexReference {
    QString table;
    QString column;
    bool goesToo = false; ///< it is a part of what is said about the index, and is deleted with it
};
const QList<IndexReference>& IndexReferences();

/// The code, as it is stored, of an index that is not made of other ones; none where there is no such index.
std::optional<QString> ComponentCode(Context& context, const QString& code);

/// Whether there is an index with the code, in whatever family.
bool HasIndex(Context& context, const QString& code);

} // namespace sysadmin::server
