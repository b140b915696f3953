#pragma once

#include "server/Library.h"
#include "server/Prepared.h"
#include "server/files/Copy.h"

namespace sysadmin::server {

class LibrarySettings;

/// Where people meet the records of a table.
class TablePlaces {
public:
    explicit TablePlaces(const Registry& registry)
        : m_registry(registry) {}

    /// The table of the records of which those of this one are parts; the table itself where they are none.
    QString WholeOf(QString table) const;
    /// The word of the requests about the records; empty for what other programs maintain.
    QString WordOf(const QString& table) const;
    /// Whose rights count for the table.
    Area AreaOf(const QString& table) const;
    /// The tag under which requests carry the column; empty where that is another one each time.
    QString TagOf(const QString& table, const QString& column) const;

private:
    const Registry& m_registry;
};

/// What a job that compares or copies settings works on, and what it found.
struct ConfigurationWork : Prepared {
    /// `memory` is a share of what such jobs may hold.
    ConfigurationWork(const Library& opened, const Rights& held, std::shared_ptr<void> memory);

    /// Takes the files and the chosen records that a request carries.
    void ReadFiles(const wire::Fields& request);
    /// The settings of the tables of which there are files, as they are now.
    Settings Present(LibrarySettings& present) const;
    /// Adds to the plan's problems what the operator has no right to change.
    void AddRightProblems();

    const Library& library;
    FileForm form;
    TablePlaces places;
    Rights rights;
    std::shared_ptr<void> share;
    Settings settings = {};
    CopyPlan plan = {};
    QList<FileProblem> fileProblems = {}; ///< with them nothing is compared
    QStringList leftOut = {};             ///< files that hold no settings
    QSet<QString> notSeen = {};           ///< tables that the operator may not view
    QMap<QString, QString> files = {};    ///< what is exported
    QList<RecordKey> chosen = {};
};

/// Tells whether two plans do the same.
QString DigestOf(const Comparison& comparison);

} // namespace sysadmin::server
