#pragma once

#include "circulation/MatrixEntries.h"

#include <QWidget>

class QAction;
class QPushButton;

namespace sysadmin {

class Application;
class ListGrid;
class MatrixPages;

/// A list of loan rules with its buttons.
class MatrixList : public QWidget {
    Q_OBJECT

public:
    MatrixList(Application& application, MatrixPages& pages, MatrixKind kind, QWidget* parent);

private:
    QPushButton* AddButton(const QString& name, const QString& caption, void (MatrixList::*act)());
    void Fill();
    void RefreshButtons();
    QList<MatrixEntry> Selected() const;
    void Add();
    void Modify();
    void Copy();
    void ModifyMultiple();
    void Remove();
    void TestLoan();
    void SelectAll();
    void UnselectAll();
    void ShowMap();

    Application& m_application;
    MatrixPages& m_pages;
    MatrixKind m_kind;
    ListGrid* m_grid;
    QPushButton* m_cmdAdd;
    QPushButton* m_cmdModify;
    QPushButton* m_cmdCopy;
    QPushButton* m_cmdModifyMultiple;
    QPushButton* m_cmdRemove;
    QPushButton* m_cmdSelectAll;
    QPushButton* m_cmdUnselectAll;
    QAction* m_mnuTestLoan;
    QPushButton* m_cmdMap;
};

} // namespace sysadmin
