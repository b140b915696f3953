#include "circulation/frmCirculation_PolDefItemSettings.h"

#include "framework/forms/Rules.h"

namespace sysadmin {

namespace {

FieldSpec Request(int number, const char* tag, const QString& caption) {
    return {.name = "chkAllowRequest_" + QString::number(number), .tag = tag, .caption = caption};
}

QString OpacHold() {
    return Form::tr("OPAC hold");
}
QString OpacRecall() {
    return Form::tr("OPAC recall");
}
QString CircHold() {
    return Form::tr("Circ hold");
}
QString CircRecall() {
    return Form::tr("Circ recall");
}

} // namespace

ItemSettingsForm::ItemSettingsForm()
    : chkAllowRequest{{{*this, Request(0, "OHM", OpacHold())},
                       {*this, Request(1, "ORM", OpacRecall())},
                       {*this, Request(2, "CHM", CircHold())},
                       {*this, Request(3, "CRM", CircRecall())},
                       {*this, Request(4, "OHLS", OpacHold())},
                       {*this, Request(5, "ORLS", OpacRecall())},
                       {*this, Request(6, "CHLS", CircHold())},
                       {*this, Request(7, "CRLS", CircRecall())},
                       {*this, Request(8, "OHLL", OpacHold())},
                       {*this, Request(9, "ORLL", OpacRecall())},
                       {*this, Request(10, "CHLL", CircHold())},
                       {*this, Request(11, "CRLL", CircRecall())}}} {
    TellWhenLeft(txtOrderQuantity);
    TellWhenLeft(txtRecorderPoints);
}

Layout ItemSettingsForm::Draw() {
    const auto requests = [this](const char* name, const QString& status, size_t first) {
        QList<Layout> flags;
        for (size_t i = first; i < first + 4; ++i)
            flags.append(chkAllowRequest[i]);
        return Frame(name, tr("Allow request on items with '%1' status:").arg(status), {Beside(flags)});
    };
    return Headed({chkShortLoan, txtReplacementCost, txtOrderQuantity, txtRecorderPoints,
                   requests("fraMissing", tr("missing"), 0),
                   requests("fraLostSystem", tr("Lost - System Applied"), 4),
                   requests("fraLostLibrary", tr("Lost - Library Applied"), 8)});
}

RowAsker AskItemSettings(const QList<GridColumn>& columns, std::shared_ptr<ItemSettingsForm> form) {
    return AskInForm({.name = "frmCirculation_PolDefItemSettings",
                      .title = Form::tr("Item Settings"),
                      .helpContext = 50525,
                      .okName = "cmdSaveItem",
                      .cancelName = "cmdCancelItem"},
                     columns, std::move(form));
}

void AskItemSettingsMultiple(SettingsRows& items, const QStringList& keys, ItemSettingsForm& form,
                             QWidget* parent, Prompter& prompter) {
    GridRow first = *items.FindRow(keys.first());
    if (keys.size() > 1)
        first.cells[0] = Form::tr("%1 item types").arg(keys.size());
    form.TakeRow(&first, items.Columns());
    FormDialog dialog(prompter, form, form.Draw(),
                      {.name = "frmCirculation_PolDefItemSettingsMultiple",
                       .title = Form::tr("Item Settings"),
                       .helpContext = 50526,
                       .okName = "cmdSaveItem",
                       .cancelName = "cmdCancelItem",
                       .several = true},
                      parent);
    form.Begin(dialog, prompter, nullptr);
    if (!prompter.RunDialog(dialog))
        return;
    for (const Field* field : form.Chosen())
        for (int column = 0; column < items.Columns().size(); ++column)
            if (items.Columns()[column].tag == field->Tag())
                items.SetCells(keys, column, static_cast<const ValueField*>(field)->Draft().trimmed());
}

} // namespace sysadmin
