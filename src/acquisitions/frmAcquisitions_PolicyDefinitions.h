#pragma once

#include "acquisitions/PolicyLocations.h"
#include "framework/DetailedRows.h"
#include "framework/MaintenanceScreen.h"
#include "wire/Counts.h"

namespace sysadmin {

/// What holds for orders from vendors of a type.
struct VendorPolicyForm : Form {
    static constexpr int MostDiscount = 100;

    NumberField txtDiscount{
        *this, {.name = "txtDiscount", .tag = "5b", .caption = tr("Discount %:"), .most = MostDiscount}};
    NumberField txtClaimCount{
        *this,
        {.name = "txtClaimCount", .tag = "5g", .caption = tr("Claim Count:"), .most = wire::MostCount}};
    NumberField txtClaimInterval{*this,
                                 {.name = "txtClaimInterval",
                                  .tag = "5f",
                                  .caption = tr("Claim Interval:"),
                                  .unit = tr("Days"),
                                  .most = wire::MostCount}};
    NumberField txtCancelInterval{*this,
                                  {.name = "txtCancelInterval",
                                   .tag = "5h",
                                   .caption = tr("Cancel Interval:"),
                                   .unit = tr("Days"),
                                   .most = wire::MostCount}};
    TextField txtShipVia{
        *this, {.name = "txtShipVia", .tag = "5i", .caption = tr("Ship VIA:"), .maxLength = TextLength}};
    ChoiceField cboDescriptions{*this,
                                {.name = "cboDescriptions",
                                 .tag = "5c",
                                 .caption = tr("Default Order Type:"),
                                 .source = {.request = "LstPOTp",
                                            .idTag = "T",
                                            .textTag = "D",
                                            .none = tr("(none)"),
                                            .unableToLoad = tr("Acquisitions PO Types")}}};
};

/// An acquisitions policy group.
struct AcqPolicyForm : Form {
    AcqPolicyForm(AcqLocationForm& location, VendorPolicyForm& vendor);

    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Acq/Serials Group Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")},
                       .changedTag = "NNm"}};
    ChoiceField cboDuplication{*this,
                               {.name = "cboDuplication",
                                .tag = "SDI",
                                .caption = tr("Duplicate Detection Profile:"),
                                .source = {.request = "LstCatDp",
                                           .idTag = "DID",
                                           .textTag = "DNm",
                                           .none = tr("(none)"),
                                           .unableToLoad = tr("Duplicate Detection Profiles")}}};
    AcqLocationsField locations;
    DetailedRowsField vsfVendor; ///< a row per vendor type
};

/// Acquisitions policy groups: the locations that order, receive and pay together, and what holds for each
/// type of vendor.
class frmAcquisitions_PolicyDefinitions : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_PolicyDefinitions(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    bool FillForm(Table& table, const GridRow& row) override;
    bool PrepareNew(Table& table) override;
    void RefreshOwnControls() override;

private:
    struct Lists;
    void Take(Lists& lists);
    void Show(const Lists& lists);

    AcqLocationForm& m_location = KeepForm<AcqLocationForm>();
    VendorPolicyForm& m_vendor = KeepForm<VendorPolicyForm>();
    AcqPolicyForm& m_form = KeepForm<AcqPolicyForm>(m_location, m_vendor);
    bool m_tellsLack = false; ///< that locations lack defaults, once the group is shown
};

} // namespace sysadmin
