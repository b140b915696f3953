#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/CheckedText.h"

namespace sysadmin {

/// A link from the records that have a field to those that an index finds by its text.
struct BibLinkForm : Form {
    BibLinkForm();

    Layout Draw();
    std::optional<Finding> FormProblem() override;

    TextField txtCaption;
    ChoiceField cboDirection;
    CheckedText txtField;
    CheckedText txtIndicator1;
    CheckedText txtIndicator2;
    CheckedText txtSubfield;
    ChoiceField cboIndex;
    FlagField chkStaff;
    FlagField chkPublic;
    MultiLineField txtMeaning;

private:
    bool IsControlField() const;
    void SayMeaning();
};

/// Bibliographic record linking: which records the catalogue shows as hosts, parts, earlier and later titles
/// of a record, and how it finds them.
class frmSearch_BibLinking : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_BibLinking(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    GridRow ReadRow(const Table& table) override;
    void RefreshOwnControls() override;
    QString DeleteItemText(const Table& table, const GridRow& row) const override;

private:
    void LoadIndexes();
    void Try();

    BibLinkForm& m_form = KeepForm<BibLinkForm>();
    QPushButton* cmdTry = nullptr;
};

} // namespace sysadmin
