#pragma once

#include "circulation/PolicyLocations.h"
#include "circulation/PolicySettings.h"
#include "core/Prompter.h"

namespace sysadmin {

/// The columns of an alert that is shown, behind its name.
QList<GridColumn> AlertColumns();
/// An alert that a location shows as a row of a list.
GridRow AlertRow(const QString& name, const clsLocationAlerts& alerts, int index);
/// Says that the public catalogue's circulation desk stays one of the group's.
Box OpacDeskStays(const QString& location);

/// "Location Settings": a location of a policy group as circulation desk and pickup location, and the alerts
/// about patrons that it shows.
class LocationSettingsForm : public SettingsForm {
public:
    LocationSettingsForm();

    /// What the dialog begins with besides the row; set before it is opened.
    struct Start {
        QList<PickItem> alertKinds{};
        PatronAlerts alerts{};
        QString location{};
        bool isOpacDesk = false;
        bool isLastPickup = false;
    };
    void SetStart(const Start& start) { m_start = start; }
    /// The alerts as they are entered.
    PatronAlerts Alerts() const;

    Layout Draw() override;
    void TakeRow(const GridRow* row, const QList<GridColumn>& columns) override;
    QString Refusal() override;

    FlagField chkCirculationLocation{
        *this, {.name = "chkCirculationLocation", .tag = "CL", .caption = tr("Circulation Location")}};
    FlagField opacDesk{*this, {.tag = "OD", .caption = tr("OPAC Circulation Desk")}}; // chosen on the screen
    FlagField chkCollectFine{*this, {.name = "chkCollectFine", .tag = "CF", .caption = tr("Collect Fines")}};
    FlagField chkCourtesyDischarge{
        *this, {.name = "chkCourtesyDischarge", .tag = "CD", .caption = tr("Courtesy Discharge")}};
    ChoiceField cboShelvingInterval{
        *this,
        {.name = "cboShelvingInterval",
         .tag = "ST",
         .initial = "D",
         .accessible = tr("Unit of the shelving interval"),
         .options = {{"D", tr("Days")}, {"H", tr("Hours")}, {"M", tr("Minutes")}}}};
    LimitField txtShelvingInterval{*this,
                                   {.name = "txtShelvingInterval",
                                    .tag = "S",
                                    .caption = tr("Shelving Interval:"),
                                    .initial = "0",
                                    .most = wire::MostCount},
                                   tr("Shelving Interval")};
    LimitField txtInTransitInterval{*this,
                                    {.name = "txtInTransitInterval",
                                     .tag = "IT",
                                     .caption = tr("In Transit Interval:"),
                                     .unit = tr("Days"),
                                     .initial = "0",
                                     .most = wire::MostCount},
                                    tr("In Transit Interval")};
    FlagField chkOPACSupress{
        *this, {.name = "chkOPACSupress", .tag = "OS", .caption = tr("OPAC Suppress for Item on the Fly")}};
    ChoiceField cboDefaultItemType{
        *this, {.name = "cboDefaultItemType", .tag = "DI", .caption = tr("Default Item Type:")}};
    ChoiceField cboDefaultLocation{
        *this, {.name = "cboDefaultLocation", .tag = "DL", .caption = tr("Default Location:")}};
    LetterField optDueDateSlip{*this,
                               {.name = "optDueDateSlip",
                                .tag = "DP",
                                .initial = "N",
                                .accessible = tr("Due Date Slip Print"),
                                .options = {{"A", tr("All Charges in One Receipt")},
                                            {"Y", tr("Per Single Charge")},
                                            {"N", tr("No Due Date Slip")}}}};
    FlagField chkHoldSlipPrint{*this,
                               {.name = "chkHoldSlipPrint", .tag = "HP", .caption = tr("Hold Slip Print")}};
    FlagField chkRoutingSlipPrint{
        *this, {.name = "chkRoutingSlipPrint", .tag = "RP", .caption = tr("Routing Slip Print")}};
    FlagField chkDischargeReceiptPrint{
        *this, {.name = "chkDischargeReceiptPrint", .tag = "DRP", .caption = tr("Discharge Receipt Print")}};
    FlagField chkPaymentReceiptPrint{
        *this, {.name = "chkPaymentReceiptPrint", .tag = "PP", .caption = tr("Payment Receipt Print")}};
    ChoiceField cboDefaultPrintLocation{
        *this, {.name = "cboDefaultPrintLocation", .tag = "SP", .caption = tr("Default Print Location:")}};
    FlagField chkPickUpLoc{*this, {.name = "chkPickUpLoc", .tag = "PL", .caption = tr("Pick Up Location")}};
    FlagField chkAutomatedStorage{
        *this, {.name = "chkAutomatedStorage", .tag = "AS", .caption = tr("Automated Storage")}};
    LimitField txtHoldLife{*this,
                           {.name = "txtHoldLife",
                            .tag = "H",
                            .caption = tr("Hold Life:"),
                            .unit = tr("Days"),
                            .initial = "0",
                            .most = wire::MostCount},
                           tr("Hold Life")};
    LimitField txtRecallLife{*this,
                             {.name = "txtRecallLife",
                              .tag = "R",
                              .caption = tr("Recall Life:"),
                              .unit = tr("Days"),
                              .initial = "0",
                              .most = wire::MostCount},
                             tr("Recall Life")};

    // The alerts are no columns of the row: they have a request of their own.
    FlagField chkShowAlertFineFee{
        *this, {.name = "chkShowAlertFineFee", .caption = tr("Show alert when patron has fines/fees.")}};
    FlagField chkShowAlertAvailable{
        *this,
        {.name = "chkShowAlertAvailable", .caption = tr("Show alert when patron has available items.")}};
    PickedField movAlerts;

private:
    void AskAboutPickup();
    void KeepOpacDesk();

    Start m_start;
};

/// Asks for the settings in "frmCirculation_PolDefLocationSettings".
RowAsker AskLocationSettings(const QList<GridColumn>& columns, std::shared_ptr<LocationSettingsForm> form);

} // namespace sysadmin
