#include "app/ProgramComponents.h"

#include "core/Prompter.h"
#include "framework/frmVersionInfo.h"
#include "server/StandsOn.h"

#include <QSysInfo>

namespace sysadmin {

void ShowProgramComponents(Prompter& prompter, QWidget* parent) {
    QList<frmVersionInfo::Row> rows{{ApplicationTitle(), SYSADMIN_VERSION}, {"Qt", qVersion()}};
    for (const auto& [name, version] : server::StandsOn())
        rows.append({name, version});
    rows.append({frmVersionInfo::tr("Operating system"),
                 QSysInfo::prettyProductName() + ", " + QSysInfo::currentCpuArchitecture()});
    frmVersionInfo dialog({.title = frmVersionInfo::tr("Components"),
                           .columns = {frmVersionInfo::tr("Component"), frmVersionInfo::tr("Version")},
                           .rows = rows},
                          prompter, parent);
    prompter.RunDialog(dialog);
}

} // namespace sysadmin
