#pragma once

#include "server/files/Compare.h"
#include "server/files/LibrarySettings.h"
#include "server/store/Records.h"

namespace sysadmin::server {

/// What is done with a record that refers to one that is not there.
enum class Unknown {
    Refuse, ///< told as a problem
    Skip,   ///< left out
};

/// Makes a library what a comparison with it says, within the transaction that is open: added and changed
/// records, removed ones, and the entries in the history if `records` has an author. Secrets and what the
/// server keeps for itself stay.
///
/// Answers what stands against it, with file and line. Then the library is half changed: whoever called
/// undoes the transaction. Throws `StoreError`.
QList<FileProblem> Apply(Records& records, FileForm& form, LibrarySettings& library,
                         const Comparison& comparison, Unknown unknown = Unknown::Refuse);

} // namespace sysadmin::server
