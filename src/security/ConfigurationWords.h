#pragma once

#include "security/Configuration.h"

namespace sysadmin {

struct SubjectPlace;

/// Says tables, records and values of a configuration as the program's screens do.
class ConfigurationWords {
    Q_DECLARE_TR_FUNCTIONS(ConfigurationWords)

public:
    ConfigurationWords(Application& application, const QMap<QString, ConfigurationTable>& tables)
        : m_application(application)
        , m_tables(tables) {}

    /// The screen that maintains the table's records ("System > Locations"), or else what the table is
    /// called.
    QString SubjectOf(const QString& table) const;
    /// A row that is a part of a record: what it is and which ("Location phones: Fax").
    QString RowOf(const ConfigurationDifference& difference) const;
    /// The caption of a column.
    QString FieldOf(const QString& table, const QString& column) const;
    /// A value of it, on one line.
    QString ValueOf(const QString& table, const QString& column, const QString& value) const;
    /// Subject and record in one ("System > Locations: MAIN").
    QString PlaceOf(const ConfigurationDifference& difference) const;
    /// A problem with the record or, where that is not known, the file to which it belongs.
    QString PlaceOf(const ConfigurationProblem& problem,
                    const QList<ConfigurationDifference>& differences) const;

private:
    const SubjectPlace* ScreenOf(const QString& table) const;
    QString TagOf(const QString& table, const QString& column) const;

    Application& m_application;
    QMap<QString, ConfigurationTable> m_tables;
};

} // namespace sysadmin
