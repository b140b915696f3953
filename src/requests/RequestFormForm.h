#pragma once

#include "framework/VoucherFields.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"
#include "wire/RequestForms.h"

namespace sysadmin {

namespace requestforms = wire::requestforms;

/// The cells of a form's field.
namespace SimpleColumn {
constexpr int Required = 0; ///< Y or N
constexpr int Label = 1;
} // namespace SimpleColumn
namespace MappedColumn {
constexpr int OutsideField = 0;
constexpr int Label = 1;
constexpr int Mapping = 2;
constexpr int Required = 3; ///< Y or N
constexpr int Change = 4;   ///< what the patron may do: "1" to "3"
constexpr int State = 5;    ///< whether the field is new or changed
} // namespace MappedColumn

/// What a patron may do with a field that is exchanged: the codes.
namespace PatronMay {
inline const QString NotSee = "1";
inline const QString See = "2";
inline const QString Edit = "3";
} // namespace PatronMay

/// An e-mail address, or nothing.
class EmailField : public TextField {
public:
    using TextField::TextField;
    QString Problem() const override;
};

/// A request form of the public catalogue.
struct RequestFormForm : Form {
    RequestFormForm();

    bool IsExchanged() const { return requestforms::IsExchanged(cboFormType.Draft()); }
    bool IsCallSlip() const { return txtFormCode.Draft() == requestforms::CallSlipCode; }
    bool HasVouchers() const { return cboFormType.Draft() == requestforms::EmailVoucher; }
    /// The fields that go with the form's type.
    const RowsField& FormFields() const { return IsExchanged() ? vsfFieldLabel : vsfFieldLabel1; }
    std::optional<Finding> FormProblem() override;
    /// Whoever enters a new form is helped with the labels of books and articles.
    bool isNew = false;

    TextField txtFormCode{*this,
                          {.name = "txtFormCode",
                           .tag = "C",
                           .caption = tr("Form Code:"),
                           .maxLength = requestforms::CodeLength,
                           .required = true}};
    ChoiceField cboFormType{
        *this, {.name = "cboFormType", .tag = "FT", .caption = tr("Form Type:"), .required = true}};
    TextField txtFormName{*this,
                          {.name = "txtFormName",
                           .tag = "N",
                           .caption = tr("Form Name:"),
                           .maxLength = requestforms::NameLength,
                           .required = true}};
    EmailField txtEmail{*this,
                        {.name = "txtEmail",
                         .tag = "E",
                         .caption = tr("E-mail:"),
                         .maxLength = requestforms::EmailLength,
                         .toolTip = tr("Where requests are sent")}};
    LetterField optOutput{
        *this,
        {.name = "optOutput",
         .tag = "OT",
         .caption = tr("Request Output:"),
         .initial = "E",
         .options = {{"E", tr("Send Request by E-mail")}, {"F", tr("Output Request to a Flat-File")}}}};
    FlagField chkSuppress{*this, {.name = "chkSuppress", .tag = "OS", .caption = tr("OPAC Suppress")}};
    MultiLineField txtInstructions{*this,
                                   {.name = "txtInstructions",
                                    .tag = "In",
                                    .caption = tr("Instructions:"),
                                    .maxLength = requestforms::InstructionsLength}};
    RowsField vsfFieldLabel1; ///< of most forms: labels
    RowsField vsfFieldLabel;  ///< of forms that are exchanged with an outside system
    PickedField patronGroups{*this,
                             {.name = "fraPatronGroups"},
                             {.availableGrid = "vsfAvailablePatron",
                              .availableCaption = tr("Available Patron"),
                              .selectedGrid = "vsfSelectedPatron",
                              .selectedCaption = tr("Selected Patron"),
                              .select = "cmdSelectPatron",
                              .selectAll = "cmdSelectAllPatrons",
                              .discard = "cmdDiscardPatron",
                              .discardAll = "cmdDiscardAllPatrons"},
                             {.tags = {"API", "APN", "SPI", "SPN"}}};
    PickedField databases{*this,
                          {.name = "fraDatabases"},
                          {.availableGrid = "vsfAvailableDatabases",
                           .availableCaption = tr("Available Databases"),
                           .selectedGrid = "vsfSelectedDatabases",
                           .selectedCaption = tr("Selected Databases"),
                           .select = "cmdSelectDatabase",
                           .selectAll = "cmdSelectAllDatabases",
                           .discard = "cmdDiscardDatabase",
                           .discardAll = "cmdDiscardAllDatabases"},
                          {.tags = {"ADC", "ADN", "SDC", "SDN"}}};
    PickedField ubDatabases{*this,
                            {.name = "fraUbDatabases"},
                            {.availableGrid = "vsfAvailableUbDatabases",
                             .availableCaption = tr("Available UB Databases"),
                             .selectedGrid = "vsfSelectedUbDatabases",
                             .selectedCaption = tr("Selected UB Databases"),
                             .select = "cmdSelectUbDatabase",
                             .selectAll = "cmdSelectAllUbDatabases",
                             .discard = "cmdDiscardUbDatabase",
                             .discardAll = "cmdDiscardAllUbDatabases"},
                            {.tags = {"AUDC", "AUDN", "SUDC", "SUDN"}}};
    VoucherFields vouchers{*this, "P"};

private:
    void FollowType();
    void FillLabels(const QStringList& labels);
    void TakeLabels(const RowsField& from, RowsField& into);
};

} // namespace sysadmin
