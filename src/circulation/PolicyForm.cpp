#include "circulation/PolicyForm.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/PutList.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

namespace {

/// The settings of the whole group, in the order in which they travel.
QList<FieldDeclaration> GroupSettings() {
    const auto flag = [](const char* name, const char* tag, const QString& caption) {
        return Declare<FlagField>({.name = name, .tag = tag, .caption = caption});
    };
    const auto minutes = [](const char* name, const char* tag, const QString& caption, const QString& what) {
        return Declare<LimitField>({.name = name,
                                    .tag = tag,
                                    .caption = caption,
                                    .unit = Form::tr("Minutes"),
                                    .initial = "0",
                                    .most = wire::MostCount},
                                   what);
    };
    return {
        flag("chkCountClosedLoan", "CCL", Form::tr("Count Closed Days/Hours/Minutes For Loan")),
        flag("chkFixedDueTimeOvernight", "AFDFOL", Form::tr("Apply Fixed Due Time For Overnight Loans")),
        flag("chkCountClosedFine", "CCF", Form::tr("Count Closed Days/Hours/Minutes For Fine")),
        flag("chkIncludeLostFee", "I", Form::tr("Include Lost Item Processing Fee")),
        Declare<MoneyField>(
            {.name = "txtLostFee", .tag = "LF", .caption = Form::tr("Lost Item Processing Fee:")}),
        flag("chkIncludeMaxFine", "IMF", Form::tr("Include Max Fine Amount For Lost Item")),
        minutes("txtEarlyPickup", "EP", Form::tr("Short Loan Early Pickup Window:"),
                Form::tr("Short Loan Early Pickup Window")),
        minutes("txtUnclaimedInterval", "UI", Form::tr("Short Loan Unclaimed Interval:"),
                Form::tr("Short Loan Unclaimed Interval")),
        flag("chkExtendRecallDueDate", "ExtRecDueDate", Form::tr("Extend Recall Due Date")),
        flag("chkRenewIfRecall", "RR", Form::tr("Renew If Recall")),
        flag("chkRenewIfHold", "HR", Form::tr("Renew if Hold")),
        flag("chkRenewIfOverdue", "OR", Form::tr("Renew If  Overdue")),
        flag("chkReturnRemovesFines", "LIR_ROD", Form::tr("Lost Item Return: remove overdue fines")),
        flag("chkReturnRemovesReplacement", "LIR_RRF", Form::tr("Lost Item Return: remove replacement fee")),
        flag("chkReturnRemovesProcessing", "LIR_RPF", Form::tr("Lost Item Return: remove processing fee")),
        flag("chkReturnDecrementsLost", "LIR_LIF",
             Form::tr("Lost Item Return: decrement patron lost item count")),
        Declare<ChoiceField>({.name = "cboFinePosting",
                              .tag = "POS_LIF",
                              .caption = Form::tr("Posting Type for crediting returned lost item fines:")}),
        flag("chkTransitFulfills", "TLH_HSR",
             Form::tr("Title-level hold:  item in transit to hold shelf fulfills request")),
        flag("chkTitleHoldsCirc", "TLHC", Form::tr("Allow title level holds on bibs with no items - Circ")),
        flag("chkTitleHoldsOPAC", "TLHO", Form::tr("Allow title level holds on bibs with no items - OPAC")),
    };
}

std::vector<std::unique_ptr<Field>> MakeSettings(Form& form) {
    std::vector<std::unique_ptr<Field>> fields;
    for (const FieldDeclaration& field : GroupSettings())
        fields.push_back(field.make(form, field.spec));
    return fields;
}

RowsSpec PatronRows(const PolicyDialogs& dialogs) {
    const GridColumn name{.caption = Form::tr("Patron Group"), .tag = "1A"};
    return {.marker = "1",
            .puts = QList<RowTag>{PutState("1B"), PutKey("1")} + dialogs.patron->Puts(1),
            .codes = {.unchanged = "4"},
            .onlyChanged = true,
            .modify = {"cmdRules", Form::tr("R&ules...")},
            .ask = AskPatronRules(QList<GridColumn>{name} + dialogs.patron->Columns(), dialogs.patron),
            .asksInView = true};
}

RowsSpec ItemRows(const PolicyDialogs& dialogs) {
    const GridColumn name{.caption = Form::tr("Item Type"), .tag = "I2"};
    return {.marker = "I1",
            .puts = QList<RowTag>{PutState("I3"), PutKey("I1")} + dialogs.item->Puts(1),
            .codes = {.unchanged = "4"},
            .onlyChanged = true,
            .modify = {"cmdItemSettings", Form::tr("Settings")},
            .ask = AskItemSettings(QList<GridColumn>{name} + dialogs.item->Columns(), dialogs.item),
            .several = true,
            .asksInView = true};
}

} // namespace

PolicyForm::PolicyForm(const PolicyDialogs& dialogs)
    : locations(*this, *dialogs.location)
    , calendars(*this)
    , vsfPatrons(*this, {.name = "vsfPatrons", .accessible = tr("Patron groups")},
                 {.caption = tr("Patron Group"), .width = 220, .tag = "1A"}, *dialogs.patron,
                 PatronRows(dialogs))
    , vsfItems(*this, {.name = "vsfItems", .accessible = tr("Item types")},
               {.caption = tr("Item Type"), .width = 200, .tag = "I2"}, *dialogs.item, ItemRows(dialogs))
    , settings(MakeSettings(*this))
    , alerts(*this, locations) {
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field == &locations)
            ShowOpacDesk();
    });
    connect(this, &Form::Edited, this, [this](const Field* field) {
        if (field == &cboOPACCircDesk)
            locations.SetOpacDesk(cboOPACCircDesk.Draft());
    });
}

void PolicyForm::LoadAvailable(RequestChannel& channel) {
    locations.Load(channel);
    calendars.Load(channel);
    vsfPatrons.Begin(ReadPairs(channel, "1", "1A"));
    vsfItems.Begin(ReadPairs(channel, "I1", "I2"));
}

void PolicyForm::ShowOpacDesk() {
    QList<PickItem> desks{{"", tr("(none)")}};
    QString chosen;
    for (const GridRow& row : locations.Lists().Selected()) {
        if (locations.Setting(row, "CL") == u"Y")
            desks.append({row.key, locations.NameOf(row)});
        if (locations.Setting(row, "OD") == u"Y")
            chosen = row.key;
    }
    if (desks != cboOPACCircDesk.Items())
        cboOPACCircDesk.SetItems(desks);
    if (chosen != cboOPACCircDesk.Draft())
        cboOPACCircDesk.SetStored(chosen);
}

QSet<QString> PolicyForm::ShortLoans() const {
    QSet<QString> itemTypes;
    for (const GridRow& row : vsfItems.Rows())
        for (int column = 0; column < vsfItems.Columns().size(); ++column)
            if (vsfItems.Columns()[column].tag == u"I5" && row.cells.value(column) == u"Y")
                itemTypes.insert(row.key);
    return itemTypes;
}

QList<PutStep> PolicyForm::SettingPuts() const {
    QList<PutStep> puts;
    for (const std::unique_ptr<Field>& field : settings)
        puts.append(PutValue(*field));
    return puts;
}

Layout PolicyForm::SettingsPage() const {
    return Page(
        tr("&Settings"),
        {Flow(2,
              {Frame("fraLoans", tr("Loans and Fines"),
                     {"chkCountClosedLoan", "chkFixedDueTimeOvernight", "chkCountClosedFine"}),
               Frame("fraLostItems", tr("Lost Items"),
                     {"chkIncludeLostFee", "txtLostFee", "chkIncludeMaxFine"}),
               Frame("fraShortLoans", tr("Short Loans"), {"txtEarlyPickup", "txtUnclaimedInterval"}),
               Frame("fraRenewals", tr("Recalls and Renewals"),
                     {"chkExtendRecallDueDate", "chkRenewIfRecall", "chkRenewIfHold", "chkRenewIfOverdue"}),
               Frame("fraReturns", tr("Returned Lost Items"),
                     {"chkReturnRemovesFines", "chkReturnRemovesReplacement", "chkReturnRemovesProcessing",
                      "chkReturnDecrementsLost", "cboFinePosting"}),
               Frame("fraTitleHolds", tr("Title-Level Holds"),
                     {"chkTransitFulfills", "chkTitleHoldsCirc", "chkTitleHoldsOPAC"})})});
}

} // namespace sysadmin
