#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/ListFields.h"
#include "wire/TitleLists.h"

namespace sysadmin {

/// A bibliographic text: what title lists can show of a record.
struct BibText {
    QString code;
    QString name;
    QString field{}; ///< where in the record it comes from; empty: the catalogue makes it
    QString subfields{};
};

struct BibTextForm : Form {
    BibTextForm();

    TextField txtCode;
    TextField txtName;
    CheckedText txtField;
    CheckedText txtSubfields;
};

/// The columns of a title list in their order, each with its heading and its width.
class TitleColumns : public PickedField {
public:
    enum Cell { Name, Heading, Width };

    explicit TitleColumns(Form& form);

    void SetTexts(const QList<BibText>& texts) { m_texts = texts; }
    BibText TextOf(const QString& code) const;
    /// What is wrong with a column, in a sentence; empty when nothing is.
    QString ColumnProblem() const;

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;

private:
    QList<BibText> m_texts;
    std::shared_ptr<Form> m_settings;
};

struct TitleListForm : Form {
    TitleListForm();
    std::optional<Finding> FormProblem() override;

    ChoiceField cboKind;
    TitleColumns columns;
};

/// The bibliographic texts, and which of them title lists show in which order, under which headings.
class frmSearch_BibDisplay : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_BibDisplay(Application& application, QWidget* parent);

protected:
    bool FillForm(Table& table, const GridRow& row) override;
    void RefreshOwnControls() override;

private:
    BibTextForm& m_text;
    TitleListForm& m_list;
    QPushButton* m_cmdNew = nullptr;
};

} // namespace sysadmin
