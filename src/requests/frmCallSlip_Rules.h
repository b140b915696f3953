#pragma once

#include "callslips/Routing.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

/// A call slip rule: criteria that may be left empty, half-open ranges, and the queue.
struct CallSlipRuleForm : Form {
    /// The ranges must have a beginning in front of their end, in call numbers that are some.
    std::optional<Finding> FormProblem() override;
    /// All values that there are of what every item has.
    std::array<QList<QString>, callslips::AttributeCount> Known() const;

    ChoiceField cboPrintGroups{*this, QueueSpec()};
    ChoiceField cboItemLocation{*this, LocationSpec("cboItemLocation", "PL", tr("Item Location:"), "LstLoc")};
    ChoiceField cboTempLocation{*this, LocationSpec("cboTempLocation", "TL", tr("Temporary Location:"))};
    ChoiceField cboItemType{*this, ItemTypeSpec("cboItemType", "IT", tr("Item Type:"), "LstItmTp")};
    ChoiceField cboTempItemType{*this, ItemTypeSpec("cboTempItemType", "TI", tr("Temporary Item Type:"))};
    ChoiceField cboHoldingsLocation{*this,
                                    LocationSpec("cboHoldingsLocation", "LI", tr("Holdings Location:"))};
    ChoiceField cboCallNumberType{*this,
                                  {.name = "cboCallNumberType",
                                   .tag = "CT",
                                   .caption = tr("Call Number Type:"),
                                   .source = {.request = "AvlCSR",
                                              .idTag = "ACT",
                                              .textTag = "ACN",
                                              .none = tr("(none)"),
                                              .caption = "Load Call Slip Types"}}};
    TextField txtCallNumberMin{*this,
                               {.name = "txtCallNumberMin",
                                .tag = "MND",
                                .caption = tr("Call Number Min ( >= )"),
                                .maxLength = CallNumberLength}};
    TextField txtCallNumberMax{*this,
                               {.name = "txtCallNumberMax",
                                .tag = "MXD",
                                .caption = tr("Call Number Max ( < )"),
                                .maxLength = CallNumberLength}};
    NumberField txtYearMin{
        *this, {.name = "txtYearMin", .tag = "YMN", .caption = tr("Year Min  ( >= )"), .most = MostSlipYear}};
    NumberField txtYearMax{
        *this, {.name = "txtYearMax", .tag = "YMX", .caption = tr("Year Max ( < )"), .most = MostSlipYear}};

private:
    static FieldSpec QueueSpec();
    static FieldSpec LocationSpec(const QString& name, const QString& tag, const QString& caption,
                                  const QString& request = {});
    static FieldSpec ItemTypeSpec(const QString& name, const QString& tag, const QString& caption,
                                  const QString& request = {});
};

/// Call slip rules: tried in their order, the first one that fits routes a request to its queue. Rules that
/// are never reached are marked.
class frmCallSlip_Rules : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCallSlip_Rules(Application& application, QWidget* parent);

    /// The rules of the list in their order, as they are tried.
    QList<callslips::Rule> Rules() const;

protected:
    void LoadList(Table& table) override;
    QString DeleteItemText(const Table& table, const GridRow& row) const override;
    void RefreshOwnControls() override;

private:
    QString Cell(const GridRow& row, const QString& tag) const;
    void MarkShadowed();
    void TryRequest();

    CallSlipRuleForm& m_form = KeepForm<CallSlipRuleForm>();
    QPushButton* cmdTry = nullptr;
};

} // namespace sysadmin
