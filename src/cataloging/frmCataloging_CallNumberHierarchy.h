#pragma once

#include "cataloging/CallNumberSearch.h"
#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A hierarchy with its places, the best one first.
struct CallNumberForm : Form {
    CallNumberForm();

    /// What is entered now, to be tried.
    CallNumberHierarchy Draft() const;

    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")},
                       .changedTag = "NNm"}};
    FlagField chkDefault{
        *this,
        {.name = "chkDefault",
         .tag = "DF",
         .caption = tr("Default"),
         .toolTip = tr("There is always one: marking another hierarchy takes the mark from this one."),
         .column = {.caption = tr("Default"), .width = 80, .yesNo = true, .mark = "*"}}};
    RowsField vsfPlaces;
};

/// Hierarchies of the places in bibliographic records from which new holdings records take their call
/// numbers.
class frmCataloging_CallNumberHierarchy : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCataloging_CallNumberHierarchy(Application& application, QWidget* parent);

protected:
    bool ConfirmRowDelete(Table& table, const GridRow& row) override;

private:
    void TryIt();

    CallNumberForm& m_form = KeepForm<CallNumberForm>();
};

} // namespace sysadmin
