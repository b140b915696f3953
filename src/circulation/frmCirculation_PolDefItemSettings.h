#pragma once

#include "circulation/PolicySettings.h"

#include <array>

namespace sysadmin {

/// "Item Settings": how a policy group treats the items of one item type.
class ItemSettingsForm : public SettingsForm {
public:
    ItemSettingsForm();
    Layout Draw() override;

    FlagField chkShortLoan{*this,
                           {.name = "chkShortLoan",
                            .tag = "I5",
                            .caption = tr("Short &Loan"),
                            .column = {tr("Short Loan"), 90}}};
    MoneyField txtReplacementCost{*this,
                                  {.name = "txtReplacementCost",
                                   .tag = "I4",
                                   .caption = tr("R&eplacement Cost:"),
                                   .initial = "0.00",
                                   .column = {tr("Replacement Cost"), 130}}};
    LimitField txtOrderQuantity{*this,
                                {.name = "txtOrderQuantity",
                                 .tag = "I6",
                                 .caption = tr("Order &Quantity:"),
                                 .initial = "0",
                                 .column = {tr("Order Quantity"), 110},
                                 .most = wire::MostCount},
                                tr("Order Quantity")};
    LimitField txtRecorderPoints{*this,
                                 {.name = "txtRecorderPoints",
                                  .tag = "I7",
                                  .caption = tr("Reor&der Point:"),
                                  .initial = "0",
                                  .column = {tr("Reorder Point"), 110},
                                  .most = wire::MostCount},
                                 tr("Reorder Point")};
    /// Requests on items that are not there: by status, of each four kinds of request.
    std::array<FlagField, 12> chkAllowRequest;
};

/// Asks for the settings in "frmCirculation_PolDefItemSettings".
RowAsker AskItemSettings(const QList<GridColumn>& columns, std::shared_ptr<ItemSettingsForm> form);

/// Asks for settings of all rows with these keys in "frmCirculation_PolDefItemSettingsMultiple" and writes
/// those that were chosen.
void AskItemSettingsMultiple(SettingsRows& items, const QStringList& keys, ItemSettingsForm& form,
                             QWidget* parent, Prompter& prompter);

} // namespace sysadmin
