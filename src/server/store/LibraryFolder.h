#pragma once

#include <QString>

#include <utility>

namespace sysadmin::server {

/// Which file a path leads to: the same as long as the file is neither removed nor replaced. All zero when
/// there is none, and where the system keeps files that are open from going away.
using FileIdentity = std::pair<quint64, quint64>;
FileIdentity IdentityOf(const QString& path);
/// What to say when a library's file is not the one that was opened.
QString FileIsGone(const QString& file);

/// Makes the folder of a library ready: makes it when it is missing and may be made, and closes it and the
/// library's files to everybody but the owner. Why that cannot be, in one line; empty when it is done.
/// `file` is the library's database.
QString PrepareLibraryFolder(const QString& file, bool mayMake);

/// Who else may get at the library's files, in one line; empty when nobody may.
QString OpenToOthers(const QString& file);

} // namespace sysadmin::server
