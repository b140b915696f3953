#pragma once

#include "core/Prompter.h"
#include "framework/FormView.h"
#include "framework/forms/RowsField.h"

#include <QDialog>

class QPushButton;

namespace sysadmin {

/// Edits a form. OK leaves the form as the operator made it; Cancel and Esc leave it as it was. Nothing is
/// sent. With several records at once `Form::Chosen` says afterwards which fields are to be written.
class FormDialog : public QDialog {
    Q_OBJECT

public:
    /// The form outlives the dialog.
    FormDialog(Prompter& prompter, Form& form, const Layout& layout, const FormDialogSpec& spec,
               QWidget* parent);
    ~FormDialog() override;

    FormView& View() { return *m_view; }
    /// The box that tells what is wrong with a field, where that is not the text alone.
    std::function<Box(const Form::Finding&)> problemBox{};
    void accept() override;
    void reject() override;

private:
    void RefreshButtons();
    void TellProblem(const Form::Finding& problem);

    Prompter& m_prompter;
    Form& m_form;
    FormDialogSpec m_spec;
    QList<std::any> m_before;
    QPushButton* m_ok = nullptr;
    std::unique_ptr<FormView> m_view; // the last: it goes before what it tells of its end
};

/// A form for one row of a list; its fields carry the tags of the columns that they edit.
class RowForm : public Form {
public:
    virtual Layout Draw() = 0;
    /// Takes the row, or what a new one begins with.
    virtual void TakeRow(const GridRow* row, const QList<GridColumn>& columns);
    /// The row as it is entered now.
    virtual GridRow MakeRow(const GridRow* former, const QList<GridColumn>& columns) const;
    /// The dialog is about to be shown; `former` is the row in it, null for a new one.
    virtual void Begin(FormDialog& /*dialog*/, Prompter& /*prompter*/, const GridRow* /*former*/) {}
    /// Says why what is entered is no row; empty when it is one.
    virtual QString Refusal() { return {}; }
};

/// Asks for a row in a form dialog. The form serves each time that the dialog is opened.
RowAsker AskInForm(const FormDialogSpec& spec, const QList<GridColumn>& columns,
                   std::shared_ptr<RowForm> form);

} // namespace sysadmin
