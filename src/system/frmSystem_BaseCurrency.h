#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

struct BaseCurrencyForm : Form {
    TextField txtCountryName{
        *this,
        {.name = "txtCountryName", .tag = "CtNm", .caption = tr("Country Name:"), .maxLength = NameLength}};
    TextField txtCurrencyName{*this,
                              {.name = "txtCurrencyName",
                               .tag = "CrNm",
                               .caption = tr("Currency Name:"),
                               .maxLength = NameLength,
                               .required = true}};
    TextField txtCurrencyCode{*this,
                              {.name = "txtCurrencyCode",
                               .tag = "CrCd",
                               .caption = tr("Currency Code:"),
                               .maxLength = CurrencyCodeLength,
                               .required = true}};
    NumberField txtBaseDecimals{*this,
                                {.name = "txtBaseDecimals",
                                 .tag = "Dec",
                                 .caption = tr("Base Decimals:"),
                                 .required = true,
                                 .initial = "2",
                                 .most = 4}};
    TextField txtDecimalDelimiter{*this,
                                  {.name = "txtDecimalDelimiter",
                                   .tag = "Dlm",
                                   .caption = tr("Decimal Delimiter:"),
                                   .maxLength = 1,
                                   .required = true,
                                   .initial = "."}};
};

/// The library's base currency. Amounts of money everywhere follow its number of decimals.
class frmSystem_BaseCurrency : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSystem_BaseCurrency(Application& application, QWidget* parent);

protected:
    bool CheckBeforeSave() override;
    void AfterSave() override;

private:
    BaseCurrencyForm& m_form = KeepForm<BaseCurrencyForm>();
};

} // namespace sysadmin
