#include "requests/frmOpac_RequestFormsSettings.h"

#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"
#include "requests/RequestFormForm.h"

namespace sysadmin {

namespace {

FieldSpec LabelSpec() {
    return {.name = "txtFieldLabel",
            .tag = "FL",
            .caption = Form::tr("Field Label:"),
            .maxLength = requestforms::LabelLength,
            .required = true};
}

FieldSpec RequiredSpec() {
    return {.name = "chkFieldRequired", .tag = "FR", .caption = Form::tr("Field Required")};
}

FormDialogSpec Dialog() {
    return {.name = "frmOpac_RequestFormsSettings",
            .title = Form::tr("Opac Request Forms Settings"),
            .helpContext = 50206,
            .okName = "cmdSave",
            .okCaption = Form::tr("&Save")};
}

struct SimpleFieldForm : RowForm {
    TextField txtFieldLabel{*this, LabelSpec()};
    FlagField chkFieldRequired{*this, RequiredSpec()};
    Layout Draw() override { return Below({txtFieldLabel, chkFieldRequired}); }
};

QList<PickItem> OutsideItems() {
    QList<PickItem> items;
    for (const QString& field : requestforms::OutsideFields())
        items.append({field, field});
    return items;
}

struct MappedFieldForm : RowForm {
    ChoiceField cboClioField{*this,
                             {.name = "cboClioField",
                              .tag = "CTAG",
                              .caption = tr("CLIO Field:"),
                              .required = true,
                              .options = OutsideItems()}};
    TextField txtFieldLabel{*this, LabelSpec()};
    TextField txtMapping{*this,
                         {.name = "txtMapping",
                          .tag = "CMAP",
                          .caption = tr("Mapping:"),
                          .maxLength = requestforms::MappingLength}};
    FlagField chkFieldRequired{*this, RequiredSpec()};
    ChoiceField cboOpacChange{*this,
                              {.name = "cboOpacChange",
                               .tag = "COC",
                               .caption = tr("OPAC Change:"),
                               .required = true,
                               .initial = PatronMay::Edit,
                               .options = PatronChanges()}};

    explicit MappedFieldForm(const std::function<QString()>& formType) {
        When([this, formType] {
            return requestforms::PatronFilledTypes.contains(formType()) &&
                   requestforms::IsPatronField(cboClioField.Draft());
        }).Disable(txtMapping, cboOpacChange);
        // A label that nobody entered is what the outside system calls the field.
        for (const QString& field : requestforms::OutsideFields())
            When([this, field] { return cboClioField.Draft() == field; }).Do([this, field] {
                if (txtFieldLabel.IsBlank() || requestforms::OutsideFields().contains(txtFieldLabel.Draft()))
                    txtFieldLabel.SetDraft(field);
            });
    }
    Layout Draw() override {
        return Below({cboClioField, txtFieldLabel, txtMapping, chkFieldRequired, cboOpacChange});
    }
};

} // namespace

const QList<PickItem>& PatronChanges() {
    static const QList<PickItem> changes{{PatronMay::NotSee, Form::tr("No Edit/No Display")},
                                         {PatronMay::See, Form::tr("No Edit/Display")},
                                         {PatronMay::Edit, Form::tr("Editable")}};
    return changes;
}

QList<GridColumn> SimpleFieldColumns() {
    return {{.caption = Form::tr("Required"), .width = 80, .yesNo = true, .tag = "FR"},
            {.caption = Form::tr("Label"), .tag = "FL"}};
}

QList<GridColumn> MappedFieldColumns() {
    return {{.caption = Form::tr("CLIO Field"), .width = 100, .tag = "CTAG"},
            {.caption = Form::tr("Label"), .tag = "FL"},
            {.caption = Form::tr("Mapping"), .width = 75, .tag = "CMAP"},
            {.caption = Form::tr("Reqd"), .width = 50, .yesNo = true, .tag = "FR"},
            {.caption = Form::tr("OPAC"), .width = 125, .tag = "COC"},
            {.caption = Form::tr("Status"), .width = 65}};
}

RowAsker AskSimpleField() {
    return AskInForm(Dialog(), SimpleFieldColumns(), std::make_shared<SimpleFieldForm>());
}

RowAsker AskMappedField(const std::function<QString()>& formType) {
    return AskInForm(Dialog(), MappedFieldColumns(), std::make_shared<MappedFieldForm>(formType));
}

} // namespace sysadmin
