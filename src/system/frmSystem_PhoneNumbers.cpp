#include "system/frmSystem_PhoneNumbers.h"

#include "framework/FormDialog.h"
#include "framework/forms/ValueFields.h"

#include <algorithm>

namespace sysadmin {

namespace {

struct PhoneForm : RowForm {
    explicit PhoneForm(const PickLists& thePickLists)
        : pickLists(thePickLists)
        , cboPhoneType(*this, {.name = "cboPhoneType",
                               .tag = "PhTp",
                               .caption = tr("Phone Type:"),
                               .required = true,
                               .source = {.pickList = "cboPhoneType"}}) {}

    const PickLists& pickLists;
    ChoiceField cboPhoneType;
    TextField txtPhoneNumber{*this,
                             {.name = "txtPhoneNumber",
                              .tag = "PhNm",
                              .caption = tr("Phone Number:"),
                              .maxLength = PhoneLength,
                              .required = true}};

    Layout Draw() override { return Below({cboPhoneType, txtPhoneNumber}); }
    void TakeRow(const GridRow* row, const QList<GridColumn>& columns) override {
        cboPhoneType.SetItems(pickLists.Items(cboPhoneType.Spec().source.pickList));
        RowForm::TakeRow(row, columns);
        // The library's first type is the usual one; the list itself is in alphabetical order.
        const QList<PickItem>& types = cboPhoneType.Items();
        const auto usual =
            std::min_element(types.begin(), types.end(), [](const PickItem& a, const PickItem& b) {
                return a.id.toLongLong() < b.id.toLongLong();
            });
        if (cboPhoneType.IsBlank() && usual != types.end())
            cboPhoneType.SetStored(usual->id);
    }
};

} // namespace

QList<GridColumn> PhoneColumns() {
    return {{.caption = Form::tr("Type"), .width = 130, .tag = "PhTp"},
            {.caption = Form::tr("Number"), .tag = "PhNm"},
            {.caption = "PhID", .hidden = true, .tag = "PhID"},
            {.caption = "PhAID", .hidden = true, .tag = "PhAID"}};
}

RowAsker AskPhone(const PickLists& pickLists) {
    return AskInForm({.name = "frmSystem_PhoneNumbers",
                      .title = Form::tr("Phone Numbers"),
                      .helpContext = 50812,
                      .focus = "txtPhoneNumber"},
                     PhoneColumns(), std::make_shared<PhoneForm>(pickLists));
}

} // namespace sysadmin
