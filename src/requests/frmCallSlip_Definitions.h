#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct CallSlipQueueForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "C",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), 120}}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "N",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {.caption = tr("Names"), .tag = "Nm"}}};
    FlagField chkDefault{
        *this,
        {.name = "chkDefault",
         .tag = "D",
         .caption = tr("Default"),
         .toolTip = tr("There is always one: marking another queue takes the mark from this one."),
         .column = {.caption = tr("Default"), .width = 70, .yesNo = true, .mark = "*"}}};
    FlagField chkPatronInfo{
        *this,
        {.name = "chkPatronInfo", .tag = "PI", .caption = tr("Include patron info in call slip display")}};
    FlagField chkCatalogReview{
        *this,
        {.name = "chkCatalogReview", .tag = "CR", .caption = tr("Set cataloging review status on new item")}};
    FlagField chkCircReview{
        *this,
        {.name = "chkCircReview", .tag = "RR", .caption = tr("Set circulation review status on new item")}};
    LetterField optProcessing{*this,
                              {.name = "optProcessing",
                               .tag = "P",
                               .initial = "H",
                               .accessible = tr("Processing Code"),
                               .options = {{"C", tr("Autocharge to requesting patron")},
                                           {"H", tr("Place \"On Hold\" shelf")},
                                           {"T", tr("In Transit for Hold")}}}};
    NumberField txtExpire{
        *this, {.name = "txtExpire", .tag = "EP", .caption = tr("Expire period:"), .most = MostSlipPeriod}};
    ChoiceField cboExpireUnit{*this, UnitSpec("cboExpireUnit", "EI", tr("Unit of the expire period"))};
    NumberField txtArchive{
        *this, {.name = "txtArchive", .tag = "AP", .caption = tr("Archive Period:"), .most = MostSlipPeriod}};
    ChoiceField cboArchiveUnit{*this, UnitSpec("cboArchiveUnit", "AI", tr("Unit of the archive period"))};
    ChoiceField cboLocation{*this,
                            {.name = "cboLocation",
                             .tag = "L",
                             .caption = tr("Location:"),
                             .source = {.request = "AvlCSl",
                                        .idTag = "LI",
                                        .textTag = "LN",
                                        .none = tr("(none)"),
                                        .unableToLoad = tr("available Locations")}}};
    ChoiceField cboItemType{*this,
                            {.name = "cboItemType",
                             .tag = "I",
                             .caption = tr("Default Item Type:"),
                             .source = {.request = "AvlCSl",
                                        .idTag = "II",
                                        .textTag = "IN",
                                        .none = tr("(none)"),
                                        .unableToLoad = tr("available Item Type")}}};

private:
    static FieldSpec UnitSpec(const QString& name, const QString& tag, const QString& accessible);
};

/// Call slip queues: where requests for items in closed stacks are printed and processed.
class frmCallSlip_Definitions : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCallSlip_Definitions(Application& application, QWidget* parent);

private:
    CallSlipQueueForm& m_form = KeepForm<CallSlipQueueForm>();
};

} // namespace sysadmin
