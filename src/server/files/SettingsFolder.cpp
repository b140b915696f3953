#include "server/files/SettingsFolder.h"

#include "server/files/LibrarySettings.h"
#include "server/files/TableFile.h"

#include <QDir>
#include <QSaveFile>

namespace sysadmin::server {

QString WriteFolder(Database& database, FileForm& form, const QStringList& tables, const QString& folder) {
    const QDir directory(folder);
    if (!directory.mkpath("."))
        return "The folder " + folder + " cannot be made.";
    LibrarySettings library(database, form);
    for (const QString& table : tables) {
        const QString name = directory.filePath(table + ".csv");
        const QByteArray content = WriteTableFile(library.Read(table));
        if (QFile there(name); there.open(QIODevice::ReadOnly) && there.readAll() == content)
            continue;
        QSaveFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
            return "The file " + name + " cannot be written: " + file.errorString() + '.';
    }
    return {};
}

FolderSettings ReadFolder(FileForm& form, const QStringList& tables, const QString& folder) {
    FolderSettings read;
    const QDir directory(folder);
    if (!directory.exists()) {
        read.error = "There is no folder " + folder + '.';
        return read;
    }
    for (const QString& name : directory.entryList({"*.csv"}, QDir::Files, QDir::Name)) {
        const QString table = name.chopped(4);
        const auto known = form.GetTables().constFind(table);
        if (known == form.GetTables().constEnd()) {
            read.problems.append({table, 0, "No settings are called so."});
        } else if (known->content != Content::Settings) {
            read.ignored << name;
        } else if (tables.contains(table)) {
            QFile file(directory.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                read.problems.append({table, 0, "The file cannot be read: " + file.errorString() + '.'});
            else
                read.tables.insert(table, ReadTableFile(form, table, file.readAll(), read.problems));
        }
    }
    if (read.tables.isEmpty() && read.problems.isEmpty())
        read.error = "There are no such files in " + folder + "; \"sysadmin-server --export " + folder +
                     "\" writes a library's.";
    return read;
}

} // namespace sysadmin::server
