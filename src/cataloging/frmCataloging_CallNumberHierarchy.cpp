#include "cataloging/frmCataloging_CallNumberHierarchy.h"

#include "cataloging/CallNumberTypes.h"
#include "cataloging/MarkField.h"
#include "cataloging/frmCataloging_CallNumberTry.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "core/data/StatusTable.h"
#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/Rules.h"
#include "wire/CallNumbers.h"
#include "wire/DuplicateDetection.h"
#include "wire/Status.h"

namespace sysadmin {

namespace callnumbers = wire::callnumbers;
namespace duplicates = wire::duplicates;
namespace status = wire::status;

namespace {

constexpr qint16 InImportRules = 71;

/// Columns of the places.
enum PlaceColumn { Tag, Indicator1, Indicator2, Subfields, Type };

QList<GridColumn> CallNumberPlaceColumns() {
    return {
        {.caption = Form::tr("Field"), .width = 48, .tag = "HF"},
        {.caption = Form::tr("Ind1"), .width = 44, .tag = "HI1"},
        {.caption = Form::tr("Ind2"), .width = 44, .tag = "HI2"},
        {.caption = Form::tr("Subfields"), .width = 74, .tag = "HS"},
        {.caption = Form::tr("Call Number Type"), .width = 200, .tag = "HT", .items = CallNumberTypeItems()}};
}

/// The type of the call numbers that a field usually holds; empty: one cannot tell.
QString UsualType(const QString& field) {
    static const QHash<QString, QString> types{{"050", "0"}, {"055", "0"}, {"090", "0"}, {"060", "2"},
                                               {"096", "2"}, {"082", "1"}, {"092", "1"}, {"086", "3"},
                                               {"001", "4"}, {"035", "4"}, {"099", "8"}};
    return types.value(field);
}

struct CallNumberPlaceForm : RowForm {
    CheckedText txtField{
        *this,
        {.name = "txtField", .tag = "HF", .caption = tr("Field:"), .maxLength = 3, .required = true},
        duplicates::IsField,
        tr("A field is three digits.")};
    MarkField txtInd1{*this, "txtInd1", "HI1", tr("Ind1:")};
    MarkField txtInd2{*this, "txtInd2", "HI2", tr("Ind2:")};
    CheckedText txtSubfields{*this,
                             {.name = "txtSubfields",
                              .tag = "HS",
                              .caption = tr("Subfields:"),
                              .maxLength = callnumbers::MostSubfields,
                              .initial = "ab",
                              .toolTip = tr("In the order in which they make the call number: the first is "
                                            "the class, the others the item part")},
                             callnumbers::IsSubfields,
                             tr("Subfields are digits and lower-case letters, each once (ab).")};
    ChoiceField cboType{*this,
                        {.name = "cboType",
                         .tag = "HT",
                         .caption = tr("Call Number Type:"),
                         .required = true,
                         .options = CallNumberTypeItems()}};

    CallNumberPlaceForm() {
        // A control field has neither indicators nor subfields.
        When([this] { return IsControl(); })
            .Disable(txtInd1, txtInd2, txtSubfields)
            .Set(txtInd1, duplicates::Any)
            .Set(txtInd2, duplicates::Any)
            .Clear(txtSubfields);
        WhenLeft(txtField, [this] {
            if (const QString type = UsualType(txtField.Draft()); !type.isEmpty() && cboType.IsBlank())
                cboType.SetDraft(type);
        });
    }
    Layout Draw() override {
        return Below({txtField, Beside({txtInd1, txtInd2}), txtSubfields, cboType,
                      Note(tr("* stands for any indicator, _ for a blank one."))});
    }
    QString Refusal() override {
        return callnumbers::GoTogether(txtField.Draft(), txtSubfields.Draft())
                   ? QString()
                   : tr("Please enter the subfields that make the call number.");
    }

private:
    bool IsControl() const { return txtField.Draft().startsWith("00") && txtField.Draft().size() == 3; }
};

RowsSpec PlaceRows() {
    RowsSpec rows{.marker = "HF",
                  .ranked = true,
                  .add = {"cmdAddPlace", Form::tr("Add...")},
                  .modify = {"cmdModifyPlace", Form::tr("Modify...")},
                  .remove = {"cmdRemovePlace", Form::tr("Remove")},
                  .up = {"cmdUp", Form::tr("Up")},
                  .down = {"cmdDown", Form::tr("Down")},
                  .ask = AskInForm({.name = "frmCataloging_CallNumberPlace",
                                    .title = Form::tr("Call Number Place"),
                                    .helpContext = 50456},
                                   CallNumberPlaceColumns(), std::make_shared<CallNumberPlaceForm>())};
    const QList<GridColumn> columns = CallNumberPlaceColumns();
    for (qsizetype i = 0; i < columns.size(); ++i)
        rows.puts.append(PutCell(columns[i].tag, int(i)));
    return rows;
}

} // namespace

CallNumberForm::CallNumberForm()
    : vsfPlaces(*this, {.name = "vsfPlaces", .tag = "HF", .accessible = tr("Places of call numbers")},
                CallNumberPlaceColumns(), PlaceRows()) {
    vsfPlaces.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        for (const GridRow& other : vsfPlaces.Rows())
            if (!(former && other.key == former->key) &&
                other.cells.Texts().mid(0, Type) == row.cells.Texts().mid(0, Type))
                return tr("This place is in the list already.");
        return vsfPlaces.Rows().size() >= callnumbers::MostPlaces && !former
                   ? tr("There are no more than %1 places in a hierarchy.").arg(callnumbers::MostPlaces)
                   : QString();
    };
}

CallNumberHierarchy CallNumberForm::Draft() const {
    CallNumberHierarchy hierarchy{.name = txtName.Draft().trimmed(), .isDefault = chkDefault.IsOn()};
    for (const GridRow& row : vsfPlaces.Rows())
        hierarchy.places.append({row.cells.value(Tag), row.cells.value(Indicator1),
                                 row.cells.value(Indicator2), row.cells.value(Subfields),
                                 row.cells.value(Type)});
    return hierarchy;
}

frmCataloging_CallNumberHierarchy::frmCataloging_CallNumberHierarchy(Application& application,
                                                                     QWidget* parent)
    : MaintenanceScreen(application, "frmCataloging_CallNumberHierarchy",
                        tr("Cataloging Call Number Hierarchies"), Area::Cataloging, parent) {
    AddTable({.subject = tr("Call Number Hierarchy"),
              .word = "CNH",
              .plural = "Cataloging Call Number Hierarchies",
              .pickLists = {HierarchyList},
              .pickTag = "Nm",
              .defaultFlag = &m_form.chkDefault},
             m_form,
             Below({m_form.txtName, m_form.chkDefault, m_form.vsfPlaces,
                    Button(
                        "cmdTry", tr("Tr&y It..."), [this] { TryIt(); }, [] { return true; })}));
    Finish();
}

// Import rules that name the hierarchy get the default one instead, but not before the operator knows that.
bool frmCataloging_CallNumberHierarchy::ConfirmRowDelete(Table& table, const GridRow& row) {
    if (!MaintenanceScreen::ConfirmRowDelete(table, row))
        return false;
    RequestChannel& channel = App().channel;
    channel.PutField("Look", "Y");
    channel.PutField("ID", row.key);
    const bool isThere = channel.SendRequest("GetCNH") == status::Ok;
    if (!isThere || !channel.GetFlag("RP"))
        return true; // what keeps it from being deleted is said by the server
    if (!App().prompter.ShowBox(
            this, {.text = TextOfStatus(InImportRules).message + "\r\n\r\n" + tr("Do you want that?"),
                   .icon = Box::Icon::Question,
                   .buttons = Box::Buttons::YesNo,
                   .careful = true}))
        return false;
    channel.PutField("ID", row.key);
    const qint16 result = channel.SendRequest("RplCNH");
    if (result != status::Ok)
        App().ReportRequestFailure(result, table.spec.deleteCaption, table.spec.subject);
    else
        Announce("Imp");
    return result == status::Ok;
}

void frmCataloging_CallNumberHierarchy::TryIt() {
    frmCataloging_CallNumberTry dialog(m_form.Draft(), App().prompter, this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCataloging_CallNumberHierarchy.cpp"
