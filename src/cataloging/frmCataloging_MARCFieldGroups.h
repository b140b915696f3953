#pragma once

#include "cataloging/FieldOrder.h"

#include <QDialog>

class QButtonGroup;
class QLineEdit;
class QPushButton;

namespace sysadmin {

class ListGrid;
class Prompter;

/// Edits one group of fields: which fields it takes, and by which sort options they are put into order.
class frmCataloging_MARCFieldGroups : public QDialog {
    Q_OBJECT

public:
    frmCataloging_MARCFieldGroups(const OrderingRules& catalogue, Prompter& prompter, bool isReadOnly,
                                  QWidget* parent);

    /// The group to edit, and what the operator made of it.
    void SetFieldOrderGroup(const FieldOrderGroup& group);
    const FieldOrderGroup& GetFieldOrderGroup() const { return m_group; }
    /// The operator left with Cancel.
    bool Cancelled() const { return result() != Accepted; }

    void accept() override;

private:
    void DrawPatterns();
    void DrawRules();
    ListGrid* MakeGrid(const QString& name, const QString& caption);
    QPushButton* MakeButton(const QString& name, const QString& caption,
                            void (frmCataloging_MARCFieldGroups::*act)());
    QLineEdit* MakeDigits(int index, int digits, const QString& accessible);
    void TakePattern();
    void ShowRules();
    void RefreshButtons();
    int SelectedPlace() const;
    /// Asks for the parameter of an option; empty when the operator gave up.
    QString AskParameter(const OrderingRule& option, const QString& shown);
    void Add();
    void EditRule();
    void Remove();
    void RemoveAll();
    void Move(int from, int to);

    const OrderingRules& m_catalogue;
    Prompter& m_prompter;
    const bool m_isReadOnly;
    FieldOrderGroup m_group;
    FieldPattern m_pattern;
    QButtonGroup* optTags = nullptr;
    QList<QLineEdit*> txtField{};
    ListGrid* vsfAvailable = nullptr;
    ListGrid* vsfSelected = nullptr;
    QPushButton* cmdAdd = nullptr;
    QPushButton* cmdRemove = nullptr;
    QPushButton* cmdRemoveAll = nullptr;
    QPushButton* cmdEditParameter = nullptr;
    QPushButton* cmdUp = nullptr;
    QPushButton* cmdDown = nullptr;
    QPushButton* cmdSave = nullptr;
};

} // namespace sysadmin
