#include "system/frmSystem_BaseCurrency.h"

#include "core/Application.h"

namespace sysadmin {

frmSystem_BaseCurrency::frmSystem_BaseCurrency(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSystem_BaseCurrency", tr("System Base Currency"), Area::System,
                         parent) {
    Build({.subject = tr("Base Currency"),
           .notice = "BsCur",
           .frameNoun = tr("Base Currency"),
           .getRequest = "GetBsCur",
           .addRequest = "AddBsCur",
           .updateRequest = "UpdBsCur",
           .existsTag = "CrCd",
           .loadCaption = "Load System Base Currency",
           .saveCaption = "Data Change"},
          m_form,
          Column({m_form.txtCountryName, m_form.txtCurrencyName, m_form.txtCurrencyCode,
                  m_form.txtBaseDecimals, m_form.txtDecimalDelimiter}),
          {PutValue(m_form.txtCountryName), PutValue(m_form.txtCurrencyName),
           PutValue(m_form.txtCurrencyCode), PutValue(m_form.txtBaseDecimals),
           PutValue(m_form.txtDecimalDelimiter)});
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
