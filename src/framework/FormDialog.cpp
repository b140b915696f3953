#include "framework/FormDialog.h"

#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "framework/forms/ValueFields.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

FormDialog::FormDialog(Prompter& prompter, Form& form, const Layout& layout, const FormDialogSpec& spec,
                       QWidget* parent)
    : QDialog(parent)
    , m_prompter(prompter)
    , m_form(form)
    , m_spec(spec) {
    setObjectName(spec.name);
    setWindowTitle(spec.title);
    setProperty(HelpContextProperty, spec.helpContext);
    form.SetSeveral(spec.several);
    m_before = form.TakeDrafts();
    m_view = std::make_unique<FormView>(form, layout, this, spec.makeSlot);
    m_view->SetReadOnly(spec.readOnly);
    auto* buttons = new QDialogButtonBox(this);
    if (!spec.readOnly) {
        m_ok = buttons->addButton(spec.okCaption.isEmpty() ? tr("&OK") : spec.okCaption,
                                  QDialogButtonBox::AcceptRole);
        m_ok->setObjectName(spec.okName);
        m_ok->setDefault(true);
    }
    buttons->addButton(spec.readOnly ? tr("&Close") : tr("&Cancel"), QDialogButtonBox::RejectRole)
        ->setObjectName(spec.cancelName);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(m_view.get(), 1);
    whole->addWidget(buttons);
    for (ListGrid* grid : findChildren<ListGrid*>())
        grid->SetPrompter(prompter);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    connect(&form, &Form::Changed, this, &FormDialog::RefreshButtons);
    connect(m_view.get(), &FormView::ProblemLeft, this, &FormDialog::TellProblem);
    RefreshButtons();
    if (const Field* field = form.Find(spec.focus))
        m_view->FocusField(*field);
    else
        m_view->FocusFirst();
}

FormDialog::~FormDialog() {
    if (m_spec.several)
        m_form.SetSeveral(false);
}

void FormDialog::RefreshButtons() {
    if (m_ok)
        m_ok->setEnabled(m_form.IsComplete() && (!m_spec.several || !m_form.Chosen().isEmpty()));
}

void FormDialog::TellProblem(const Form::Finding& problem) {
    m_prompter.ShowBox(this, problemBox ? problemBox(problem) : Box{.text = problem.text});
    m_view->FocusField(*problem.field);
}

void FormDialog::accept() {
    if (m_spec.readOnly) {
        reject();
        return;
    }
    m_form.LeaveFields();
    if (!m_form.IsComplete())
        return;
    if (const std::optional<Form::Finding> problem = m_form.FirstProblem()) {
        TellProblem(*problem);
        return;
    }
    if (const QString refusal = m_spec.check ? m_spec.check() : QString(); !refusal.isEmpty()) {
        Box box{.text = refusal};
        if (!m_spec.refusalTitle.isEmpty())
            box.title = m_spec.refusalTitle;
        m_prompter.ShowBox(this, box);
        m_view->FocusFirst();
        return;
    }
    QDialog::accept();
}

void FormDialog::reject() {
    m_form.GiveDrafts(m_before);
    QDialog::reject();
}

void RowForm::TakeRow(const GridRow* row, const QList<GridColumn>& columns) {
    Clear();
    const Loading loading(*this);
    for (qsizetype i = 0; row && i < columns.size(); ++i)
        if (auto* value = dynamic_cast<ValueField*>(FindByTag(columns[i].tag)))
            value->SetStored(row->cells.value(i));
}

GridRow RowForm::MakeRow(const GridRow* former, const QList<GridColumn>& columns) const {
    GridRow row = former ? *former : GridRow();
    while (row.cells.size() < columns.size())
        row.cells.Own().append(QString());
    for (qsizetype i = 0; i < columns.size(); ++i)
        if (const auto* value = dynamic_cast<const ValueField*>(FindByTag(columns[i].tag)))
            row.cells[i] = value->Draft().trimmed();
    return row;
}

RowAsker AskInForm(const FormDialogSpec& spec, const QList<GridColumn>& columns,
                   std::shared_ptr<RowForm> form) {
    const auto ask = [form, columns](const FormDialogSpec& asked, QWidget* parent, Prompter& prompter,
                                     const GridRow* former, const RowCheck& check) {
        form->TakeRow(former, columns);
        FormDialogSpec own = asked;
        if (!former && !asked.newCaption.isEmpty())
            own.okCaption = asked.newCaption;
        own.check = [&]() -> QString {
            if (const QString refusal = form->Refusal(); !refusal.isEmpty())
                return refusal;
            if (const QString refusal = asked.check ? asked.check() : QString(); !refusal.isEmpty())
                return refusal;
            return check(form->MakeRow(former, columns), former);
        };
        FormDialog dialog(prompter, *form, form->Draw(), own, parent);
        form->Begin(dialog, prompter, former);
        return prompter.RunDialog(dialog) ? std::optional(form->MakeRow(former, columns)) : std::nullopt;
    };
    return {.dialog = spec, .ask = ask, .form = form};
}

} // namespace sysadmin

#include "moc_FormDialog.cpp"
