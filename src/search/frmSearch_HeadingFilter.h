#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

/// What one index of headings leaves out.
struct HeadingFilterForm : Form {
    HeadingFilterForm();

    /// An index that can have a filter: its name, and its definition as it is stored.
    struct Index {
        QString name;
        QString definition;
    };
    QHash<QString, Index> indexes{}; ///< by code
    void OfferIndexes();

    ChoiceField cboIndex{*this, {.name = "cboIndex", .tag = "HC", .caption = tr("Index:"), .required = true}};
    RowsField vsfLeftOut;
    MultiLineField txtMeaning{*this, {.name = "txtMeaning", .caption = tr("In Words:"), .displayOnly = true}};

private:
    QString Refusal(const GridRow& row, const GridRow* former) const;
    void SayMeaning();
};

/// Heading filters: which kinds of headings and vocabularies the browse indexes leave out.
class frmSearch_HeadingFilter : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_HeadingFilter(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    void RefreshOwnControls() override;

private:
    void LoadIndexes();
    void Try();

    HeadingFilterForm& m_form = KeepForm<HeadingFilterForm>();
    QPushButton* cmdTry = nullptr;
};

} // namespace sysadmin
