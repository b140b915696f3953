#include "security/ConfigurationWords.h"

#include "core/Application.h"
#include "core/MainWindow.h"

#include <algorithm>

namespace sysadmin {

namespace {

/// "service_desk" as people write it.
QString Plain(const QString& name) {
    QString text = QString(name).replace('_', ' ');
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace

const SubjectPlace* ConfigurationWords::ScreenOf(const QString& table) const {
    const auto known = m_tables.constFind(table);
    return known == m_tables.constEnd() || known->word.isEmpty() || !m_application.mainWindow
               ? nullptr
               : m_application.mainWindow->PlaceOf(known->word);
}

QString ConfigurationWords::SubjectOf(const QString& table) const {
    if (const SubjectPlace* place = ScreenOf(table))
        return place->screen;
    const QString whole = m_tables.value(table).whole;
    return Plain(whole.isEmpty() ? table : whole);
}

QString ConfigurationWords::RowOf(const ConfigurationDifference& difference) const {
    // What names its record stands there already.
    const QStringList parts = difference.name.split(" / ");
    const QString own = parts.size() > 1 ? parts.mid(1).join(" / ") : difference.name;
    return own.isEmpty() ? Plain(difference.table) : Plain(difference.table) + ": " + own;
}

QString ConfigurationWords::TagOf(const QString& table, const QString& column) const {
    return m_tables.value(table).columns.value(column).tag;
}

QString ConfigurationWords::FieldOf(const QString& table, const QString& column) const {
    const SubjectPlace* place = ScreenOf(table);
    const QString caption = place ? place->fields.value(TagOf(table, column)).caption : QString();
    return caption.isEmpty() ? Plain(column) : caption;
}

QString ConfigurationWords::ValueOf(const QString& table, const QString& column, const QString& value) const {
    if (m_tables.value(table).columns.value(column).isFlag)
        return value == u"Y" ? tr("Yes") : value == u"N" ? tr("No") : value;
    const SubjectPlace* place = ScreenOf(table);
    const QString said = place ? place->fields.value(TagOf(table, column)).values.value(value) : QString();
    return said.isEmpty() ? QString(value).replace("\r\n", " ").replace('\n', ' ') : said;
}

QString ConfigurationWords::PlaceOf(const ConfigurationDifference& difference) const {
    QString place = SubjectOf(difference.table);
    if (!difference.wholeName.isEmpty())
        place += ": " + difference.wholeName;
    return m_tables.value(difference.table).whole.isEmpty() ? place : place + ", " + RowOf(difference);
}

QString ConfigurationWords::PlaceOf(const ConfigurationProblem& problem,
                                    const QList<ConfigurationDifference>& differences) const {
    const auto difference =
        std::find_if(differences.begin(), differences.end(), [&](const ConfigurationDifference& one) {
            return one.table == problem.table && one.line == problem.line && problem.line > 0;
        });
    if (difference != differences.end())
        return PlaceOf(*difference);
    if (m_tables.contains(problem.table))
        return SubjectOf(problem.table);
    return problem.line > 0 ? tr("%1.csv, line %2").arg(problem.table).arg(problem.line)
                            : problem.table + ".csv";
}

} // namespace sysadmin
