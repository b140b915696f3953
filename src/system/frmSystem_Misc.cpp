#include "system/frmSystem_Misc.h"

namespace sysadmin {

frmSystem_Misc::frmSystem_Misc(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSystem_Misc", tr("System Miscellaneous"), Area::System, parent) {
    Build({.subject = tr("System Miscellaneous"),
           .notice = "Msc",
           .frameNoun = tr("System Miscellaneous"),
           .frameEnd = {},
           .getRequest = "GetMsc",
           .updateRequest = "UpdMsc",
           .loadCaption = "Load System Miscellaneous",
           .saveCaption = "Save System Miscellaneous"},
          m_form,
          Column({m_form.chkCircHistory, m_form.chkMediaHistory, m_form.chkDistHistory,
                  m_form.chkDisplayHeadSubSep}),
          {PutValue(m_form.chkCircHistory), PutValue(m_form.chkMediaHistory), PutValue(m_form.chkDistHistory),
           PutValue(m_form.chkDisplayHeadSubSep)});
}

} // namespace sysadmin
