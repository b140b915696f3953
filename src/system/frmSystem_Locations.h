#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct LocationForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), Twips(1200)}}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names"), Twips(3090)},
                       .changedTag = "NNm"}};
    TextField txtSpine{
        *this,
        {.name = "txtSpine", .tag = "Spn", .caption = tr("Spine Label Name:"), .maxLength = NameLength}};
    TextField txtOPACName{
        *this,
        {.name = "txtOPACName", .tag = "Dsp", .caption = tr("OPAC Display Name:"), .maxLength = NameLength}};
    FlagField chkOPAC{*this, {.name = "chkOPAC", .tag = "OPAC", .caption = tr("Suppress in OPAC")}};
    ChoiceField cboOwningLib{*this,
                             {.name = "cboOwningLib",
                              .tag = "Lb",
                              .caption = tr("Owning Library:"),
                              .column = {.caption = tr("Owning Library"), .width = Twips(3240), .tag = "LN"},
                              .source = {.request = "LstLib",
                                         .textTag = "LN",
                                         .pickList = "cboOwningLib",
                                         .none = tr("(none)"),
                                         .caption = "Load System Locations",
                                         .unableToLoad = tr("System Locations")}}};
    TextField fpCatalogPolicyGroup{*this,
                                   {.name = "fpCatalogPolicyGroup",
                                    .tag = "CtGrp",
                                    .caption = tr("Current Cataloging Policy Group:"),
                                    .displayOnly = true}};
    TextField fpAcqSerialsPolicyGroup{*this,
                                      {.name = "fpAcqSerialsPolicyGroup",
                                       .tag = "ASGrp",
                                       .caption = tr("Current Acquisition/Serials Policy Group:"),
                                       .displayOnly = true}};
    TextField fpCirculationPolicyGroup{*this,
                                       {.name = "fpCirculationPolicyGroup",
                                        .tag = "CrGrp",
                                        .caption = tr("Current Circulation Policy Group:"),
                                        .displayOnly = true}};
};

/// Locations: the places that hold items and serve patrons. Their addresses are edited in a dialog.
class frmSystem_Locations : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_Locations(Application& application, QWidget* parent);

protected:
    void LoadList(Table& table) override;
    bool ConfirmRowDelete(Table& table, const GridRow& row) override;
    void RefreshOwnControls() override;

private:
    void OnSubjectChanged(const QString& subject);
    void ReloadList();
    void EditAddresses();

    LocationForm& m_form = KeepForm<LocationForm>();
    QPushButton* cmdAddress = nullptr;
    bool m_isListOld = false; // another screen changed what the list shows while an edit was open
};

} // namespace sysadmin
