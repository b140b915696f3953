#pragma once

#include "framework/RankedGrid.h"

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;

namespace sysadmin {

class Application;
class FormView;
class ListGrid;
struct SortOrderForm;

/// Asks for the order of a list of rules: rows move by the buttons, by dragging and by Alt with an arrow key
/// (Home and End: to the ends). Saving sends the whole order in one request; when the server refuses it the
/// dialog stays open with the order made. After a refusal because others have changed the rules the order
/// made is carried over to the rules as they are now, and may be saved again.
class frmSortOrder : public QDialog {
    Q_OBJECT

public:
    /// `grid` outlives the dialog; a saved order is written into it.
    frmSortOrder(Application& application, clsGrid& grid, QWidget* parent);
    ~frmSortOrder() override;

    /// Saves; closes when the server has taken the order.
    void accept() override;

private:
    void ShowPriority();
    void CarryOver();

    Application& m_application;
    clsGrid& m_grid;
    std::unique_ptr<SortOrderForm> m_form;
    std::unique_ptr<FormView> m_view; // behind the form: it goes first
    ListGrid* vsf = nullptr;
    QLabel* lblPriority = nullptr;
    QPushButton* cmdSaveRule = nullptr;
    /// Others changed the rules: ranks from before mean other rules now. `Merged`: they are read again.
    enum class Others { Quiet, Changed, Merged } m_others = Others::Quiet;
};

} // namespace sysadmin
