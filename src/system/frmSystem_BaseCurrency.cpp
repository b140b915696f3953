#include "system/frmSystem_BaseCurrency.h"

#include "core/Application.h"

namespace sysadmin {

frmSystem_BaseCurrency::frmSystem_BaseCurrency(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSystem_BaseCurrency", tr("System Base Currency"), Area::System,
                         parent) {
    Build({.subject = tr("Base Currency"),
           .word = "BsCur",
           .frameNoun = tr("Base Currency"),
           .existsTag = "CrCd",
           .loadCaption = "Load System Base Currency",
           .saveCaption = "Data Change"},
          m_form);
}

bool frmSystem_BaseCurrency::CheckBeforeSave() {
    if (!SingleRecordScreen::CheckBeforeSave())
        return false;
    if (const QString& delimiter = m_form.txtDecimalDelimiter.Draft(); delimiter == "." || delimiter == ",")
        return true;
    Tell(tr("\"Decimal Delimiter\" must be a period or a comma."));
    View().FocusField(m_form.txtDecimalDelimiter);
    return false;
}

void frmSystem_BaseCurrency::AfterSave() {
    App().profile.SetMoneyDecimals(m_form.txtBaseDecimals.Value());
}

} // namespace sysadmin

#include "moc_frmSystem_BaseCurrency.cpp"
