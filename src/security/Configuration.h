#pragma once

#include "core/data/RequestChannel.h"

#include <QCoreApplication>
#include <QHash>
#include <QMap>

#include <optional>

class QWidget;

namespace sysadmin {

class Application;

/// A library's settings as its server writes them: the text of each table's file.
using ConfigurationFiles = QMap<QString, QString>;

/// A column of a table of settings.
struct ConfigurationColumn {
    QString tag; ///< of the requests that carry it; may be empty
    bool isFlag = false;
};

struct ConfigurationTable {
    QString word;  ///< of the requests about its records; empty: other programs maintain them
    QString whole; ///< the table of the records of which its rows are parts; empty: they are none
    QHash<QString, ConfigurationColumn> columns;
};

/// A record that differs between a library and files.
struct ConfigurationDifference {
    struct Value {
        QString column;
        QString before; ///< in the library
        QString after;  ///< in the files
    };

    QChar kind; ///< A, C or R: what a copy does, it adds, changes, removes the record
    QString table;
    QString key;
    QString name;
    QString wholeKey; ///< of the record of which it is a part, or its own
    QString wholeName;
    int line = 0;
    QString because; ///< why it comes along with what was chosen
    QList<Value> values{};
};

/// Something that is wrong with files, or stands against a copy.
struct ConfigurationProblem {
    QString table;
    int line = 0;
    QString text;
};

/// In what a library differs from files, or what a copy would do.
struct ConfigurationDifferences {
    QMap<QString, ConfigurationTable> tables{};
    QList<ConfigurationDifference> differences{};
    QList<ConfigurationProblem> problems{};
    QStringList leftOut{}; ///< files that hold no settings
    int notSeen = 0;       ///< tables that the operator may not view
    QStringList missing{}; ///< what new records lack
    QString digest{};

    /// Whether anything differs in the table.
    bool Has(const QString& table) const { return tables.contains(table); }
};

/// A record as a choice names it: table and key.
using ConfigurationKey = std::pair<QString, QString>;

/// Asks a settings server for its configuration and for comparisons with files; the operator may give up any
/// time. Failures are reported.
class ConfigurationServer {
    Q_DECLARE_TR_FUNCTIONS(ConfigurationServer)

public:
    /// `library` is what the server's library is called in reports.
    ConfigurationServer(Application& application, RequestChannel& channel, QString library);

    const QString& Library() const { return m_library; }

    std::optional<ConfigurationFiles> Export(QWidget* parent);
    std::optional<ConfigurationDifferences> Compare(QWidget* parent, const ConfigurationFiles& files);
    /// What a copy of these records would do, and what stands against it.
    std::optional<ConfigurationDifferences> Try(QWidget* parent, const ConfigurationFiles& files,
                                                const QList<ConfigurationKey>& chosen);
    /// Copies them, if that still does what the digest says. The status; `words` get those of the requests
    /// about the records that changed. A failure is not reported.
    qint16 Copy(const ConfigurationFiles& files, const QList<ConfigurationKey>& chosen, const QString& digest,
                QStringList& words);

private:
    void PutFiles(const ConfigurationFiles& files);
    void PutChosen(const QList<ConfigurationKey>& chosen);
    bool Ask(QWidget* parent, const QString& request, const QString& text,
             const std::function<void()>& putAll);

    Application& m_application;
    RequestChannel& m_channel;
    QString m_library;
};

/// The files of a folder; none, with the reason, when they cannot be read.
std::optional<ConfigurationFiles> ReadConfiguration(const QString& folder, QString& problem);
/// Writes files into a folder; empty, or the reason why not. Files of tables that are not among them stay.
QString WriteConfiguration(const ConfigurationFiles& files, const QString& folder);

} // namespace sysadmin
