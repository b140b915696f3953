#include "cataloging/AskForRecords.h"

#include "core/Prompter.h"
#include "framework/forms/Field.h"

#include <QFile>
#include <QFileInfo>

namespace sysadmin {

std::optional<marc::Result> AskForRecords(Prompter& prompter, QWidget* parent, const QString& title,
                                          int limit, QString* name) {
    const QString path = prompter.AskOpenFile(
        parent, title, Form::tr("MARC records (*.mrc *.marc *.iso *.xml *.mrk *.txt);;All files (*)"));
    if (path.isEmpty())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        prompter.ShowBox(parent, {.text = Form::tr("The file cannot be read: %1").arg(file.errorString())});
        return std::nullopt;
    }
    if (name)
        *name = QFileInfo(path).fileName();
    return marc::ReadRecords(file, limit);
}

} // namespace sysadmin
