#include "circulation/frmCirculation_PolDefLocationSettings.h"

#include "framework/forms/Rules.h"

namespace sysadmin {

namespace {

/// The ways in which an alert is shown, as it travels and as it is read.
const QList<PickItem>& Displays() {
    static const QList<PickItem> displays{{"1", Form::tr("Dialog")}, {"2", Form::tr("FYI")}};
    return displays;
}

PickedSpec AlertsSpec() {
    PickedSpec spec{.more = AlertColumns(), .availableMore = QList<GridColumn>()};
    spec.edits.insert(1, {.kind = CellEdit::Kind::Choice, .items = Displays()});
    for (const int column : {2, 3, 4})
        spec.edits.insert(column, {.kind = CellEdit::Kind::Check});
    return spec;
}

} // namespace

QList<GridColumn> AlertColumns() {
    return {{.caption = Form::tr("Display"), .width = 75, .items = Displays()},
            {.caption = Form::tr("Name"), .width = 54, .yesNo = true},
            {.caption = Form::tr("Barcode"), .width = 68, .yesNo = true},
            {.caption = Form::tr("Phone"), .width = 56, .yesNo = true}};
}

GridRow AlertRow(const QString& name, const clsLocationAlerts& alerts, int index) {
    return {alerts.GetAlertID(index),
            {name, alerts.GetDisplay(index), alerts.GetName(index), alerts.GetBarcode(index),
             alerts.GetPhone(index)},
            {}};
}

Box OpacDeskStays(const QString& location) {
    return {.text = Form::tr("You cannot remove the OPAC Circulation Desk") + "\r\n" + location + "\r\n" +
                    Form::tr("before removing this location.") + "\r\n" +
                    Form::tr("Please select a different OPAC Circulation Desk") + "\r\n" +
                    Form::tr("from the Circulation Policy Group."),
            .title = Form::tr("OPAC Circulation Desk")};
}

LocationSettingsForm::LocationSettingsForm()
    : movAlerts(*this, {.name = "movAlerts"},
                {.availableGrid = "vsfAvailableAlerts",
                 .availableCaption = tr("Available Alerts"),
                 .selectedGrid = "vsfSelectedAlerts",
                 .selectedCaption = tr("Selected Alerts"),
                 .select = "cmdSelectAlert",
                 .selectAll = "cmdSelectAllAlerts",
                 .discard = "cmdDiscardAlert",
                 .discardAll = "cmdDiscardAllAlerts"},
                AlertsSpec()) {
    for (LimitField* count : {&txtShelvingInterval, &txtInTransitInterval, &txtHoldLife, &txtRecallLife})
        TellWhenLeft(*count);
    connect(this, &Form::Edited, this, [this](const Field* field) {
        if (field == &chkPickUpLoc && !chkPickUpLoc.IsOn())
            AskAboutPickup();
        else if (field == &chkCirculationLocation && !chkCirculationLocation.IsOn())
            KeepOpacDesk();
    });
}

void LocationSettingsForm::AskAboutPickup() {
    if (!Dialog() || !m_start.isLastPickup || chkPickUpLoc.Stored() != u"Y")
        return;
    if (!GetPrompter().ShowBox(Dialog(), {.text = tr("This location is the last pickup location") + "\r\n" +
                                                  tr("in the Circulation Policy Group.") + "\r\n" +
                                                  tr("Do you want to continue?"),
                                          .icon = Box::Icon::Exclamation,
                                          .buttons = Box::Buttons::YesNo,
                                          .title = tr("Default Pickup Location"),
                                          .careful = true}))
        chkPickUpLoc.SetOn(true);
}

// The public catalogue's desk is a circulation desk.
void LocationSettingsForm::KeepOpacDesk() {
    if (!Dialog() || !m_start.isOpacDesk)
        return;
    GetPrompter().ShowBox(Dialog(), OpacDeskStays(m_start.location));
    chkCirculationLocation.SetOn(true);
}

void LocationSettingsForm::TakeRow(const GridRow* row, const QList<GridColumn>& columns) {
    SettingsForm::TakeRow(row, columns);
    chkShowAlertFineFee.SetStored(m_start.alerts.finesFees);
    chkShowAlertAvailable.SetStored(m_start.alerts.available);
    const clsLocationAlerts& alerts = m_start.alerts.alerts;
    QList<GridRow> available;
    QList<GridRow> selected;
    for (const PickItem& kind : m_start.alertKinds)
        available.append({kind.id, {kind.text, Displays().first().id, "N", "N", "N"}, {}});
    for (int i = 0; i < alerts.GetColCount(); ++i) {
        const QString id = alerts.GetAlertID(i);
        QString name = id;
        for (const PickItem& kind : m_start.alertKinds)
            if (kind.id == id)
                name = kind.text;
        available.removeIf([&](const GridRow& kind) { return kind.key == id; });
        selected.append(AlertRow(name, alerts, i));
    }
    movAlerts.LoadLists(available, selected);
}

PatronAlerts LocationSettingsForm::Alerts() const {
    PatronAlerts shown{chkShowAlertAvailable.IsOn() ? "Y" : "N", chkShowAlertFineFee.IsOn() ? "Y" : "N", {}};
    for (const GridRow& row : movAlerts.Lists().Selected())
        shown.alerts.AddData(
            {row.key, row.cells.value(1), row.cells.value(2), row.cells.value(3), row.cells.value(4)});
    return shown;
}

QString LocationSettingsForm::Refusal() {
    return cboShelvingInterval.IsBlank() ? tr("Shelving Interval Type must be selected") : QString();
}

Layout LocationSettingsForm::Draw() {
    return Headed({Tabs(
        "tabLocation",
        {Page(tr("&Settings"), {Beside({Frame("fraDesk", tr("Circulation Desk"),
                                              {chkCirculationLocation, chkCollectFine, chkCourtesyDischarge,
                                               chkPickUpLoc, chkAutomatedStorage, chkOPACSupress}),
                                        Frame("fraIntervals", tr("Intervals"),
                                              {Beside({txtShelvingInterval, cboShelvingInterval}),
                                               txtInTransitInterval, txtHoldLife, txtRecallLife})}),
                                Frame("fraDefaults", tr("Defaults"),
                                      {cboDefaultItemType, cboDefaultLocation, cboDefaultPrintLocation}),
                                Beside({Frame("fraDueDateSlip", tr("Due Date Slip Print"), {optDueDateSlip}),
                                        Frame("fraSlips", tr("Slips and Receipts"),
                                              {chkHoldSlipPrint, chkRoutingSlipPrint,
                                               chkDischargeReceiptPrint, chkPaymentReceiptPrint})})}),
         Page(tr("Al&erts"), {chkShowAlertFineFee, chkShowAlertAvailable, movAlerts})})});
}

RowAsker AskLocationSettings(const QList<GridColumn>& columns, std::shared_ptr<LocationSettingsForm> form) {
    return AskInForm({.name = "frmCirculation_PolDefLocationSettings",
                      .title = Form::tr("Location Settings"),
                      .helpContext = 50523,
                      .refusalTitle = Form::tr("Select Shelving Interval Type")},
                     columns, std::move(form));
}

} // namespace sysadmin
