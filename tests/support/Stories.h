#pragma once

#include <QList>
#include <QString>

#include <string>

namespace sysadmin::testing {

/// A test that is written down line by line in a text file. What a line means is the matter of whoever reads
/// it; everywhere a story begins with "story TITLE (NOTE)", "#" begins a remark, and "and" goes on with the
/// line before.
struct Story {
    QString file; ///< its whole path
    QString title;
    QString note;
    QList<std::pair<int, QString>> lines; ///< with their numbers in the file
};

/// The stories of the folder's text files, in order. `folder`: from the top of the source tree.
QList<Story> ReadStories(const QString& folder);

/// A name that a test may have.
std::string NameOf(const Story& story);

} // namespace sysadmin::testing
