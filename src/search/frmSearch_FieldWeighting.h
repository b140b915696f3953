#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "search/FieldWeightWords.h"

namespace sysadmin {

class WeightShares;

/// The weights of the fields of one keyword index.
struct FieldWeightForm : Form {
    FieldWeightForm();

    Layout Draw();
    std::optional<Finding> FormProblem() override;
    /// The indexes that can be chosen: `indexes`.
    void OfferIndexes();
    /// Gives a weight to each field of the index that has none.
    void FillIn();
    QList<WeightShare> Shares() const;

    QHash<QString, WeightedIndex> indexes{}; ///< by code
    bool isLocked = false;                   ///< the operator may only look

    ChoiceField cboIndex{*this, {.name = "cboIndex", .tag = "Cd", .caption = tr("Index:"), .required = true}};
    RowsField vsfWeights;
    MultiLineField txtMeaning{*this, {.name = "txtMeaning", .caption = tr("In Words:"), .displayOnly = true}};

private:
    const QList<wire::weights::WordField>& WordFields() const;
    QString Refusal(const GridRow& row, const GridRow* former) const;
    void SayMeaning();
};

/// Field weighting: how much the fields of a keyword index count for the relevance of what is found.
class frmSearch_FieldWeighting : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_FieldWeighting(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    GridRow ReadRow(const Table& table) override;
    void RefreshOwnControls() override;

private:
    bool LoadIndexes();
    void ShowShares();
    void CheckWeights();
    void OpenIndex(const QString& code);

    FieldWeightForm& m_form = KeepForm<FieldWeightForm>();
    WeightShares* picShares = nullptr;
    QPushButton* cmdCheck = nullptr;
};

} // namespace sysadmin
