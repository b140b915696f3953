#include "circulation/MatrixList.h"

#include "circulation/LoanQuestion.h"
#include "circulation/MatrixDialog.h"
#include "circulation/MatrixRemoval.h"
#include "circulation/frmCirculation_Matrix.h"
#include "circulation/frmCirculation_MatrixMap.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/ListGrid.h"
#include "framework/RowCount.h"
#include "framework/Utility.h"
#include "framework/WrappingRow.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

/// So many are deleted without showing how far it is.
constexpr int FewEntries = 20;
constexpr int MostButtons = 8;
const QString Several = "!!!Multiple Entries!!!";

/// Controls of the short-loan page have the names of the other's with a mark behind them.
QString Named(const QString& name, MatrixKind kind) {
    return kind == MatrixKind::ShortLoan ? name + "SL" : name;
}

} // namespace

MatrixList::MatrixList(Application& application, MatrixPages& pages, MatrixKind kind, QWidget* parent)
    : QWidget(parent)
    , m_application(application)
    , m_pages(pages)
    , m_kind(kind)
    , m_grid(new ListGrid(Named("vsfMatrix", kind),
                          {{.caption = tr("Patron Group")}, {.caption = tr("Item Type")}}, this)) {
    m_grid->setAccessibleName(MatrixPages::Caption(kind).remove('&'));
    m_grid->SetMultiSelect(true);
    m_grid->SetPrompter(application.prompter);
    m_grid->sortByColumn(0, Qt::AscendingOrder);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    auto* buttons = new WrappingRow(MostButtons, this);
    whole->addWidget(m_grid->FilterBox());
    whole->addWidget(m_grid, 1);
    whole->addWidget(new RowCount(*m_grid, this));
    whole->addWidget(buttons);
    // The Tab key goes by the order of the children: from the filter to the list to the buttons.
    m_grid->raise();
    buttons->raise();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_cmdAdd = AddButton("cmdAddMatrix", tr("&Add..."), &MatrixList::Add);
    m_cmdModify = AddButton("cmdModifyMatrix", tr("&Modify..."), &MatrixList::Modify);
    m_cmdCopy = AddButton("cmdCopyMatrix", tr("Cop&y"), &MatrixList::Copy);
    m_cmdModifyMultiple =
        AddButton("cmdModifyMultipleMatrix", tr("Modi&fy Multiple..."), &MatrixList::ModifyMultiple);
    m_cmdRemove = AddButton("cmdRemoveMatrix", tr("&Remove"), &MatrixList::Remove);
    m_cmdSelectAll = AddButton("cmdSelectAllMatrix", tr("Selec&t All"), &MatrixList::SelectAll);
    m_cmdUnselectAll = AddButton("cmdUnselectAllMatrix", tr("&Unselect All"), &MatrixList::UnselectAll);
    m_cmdMap = AddButton("cmdMapMatrix", tr("Ma&p..."), &MatrixList::ShowMap);
    for (QPushButton* button : {m_cmdAdd, m_cmdModify, m_cmdCopy, m_cmdModifyMultiple, m_cmdRemove,
                                m_cmdSelectAll, m_cmdUnselectAll, m_cmdMap})
        buttons->Add(button);
    m_mnuTestLoan = new QAction(tr("Test a &Loan..."), this);
    m_mnuTestLoan->setObjectName("mnuTestLoan");
    connect(m_mnuTestLoan, &QAction::triggered, this, &MatrixList::TestLoan);
    m_grid->SetMenuActions({m_mnuTestLoan});
    m_grid->SetMenuButtons({m_cmdModify, m_cmdCopy, m_cmdModifyMultiple, m_cmdRemove});
    const auto press = [](QPushButton* button) {
        return [button] {
            if (button->isEnabled() && !button->isHidden())
                button->click();
        };
    };
    connect(m_grid, &ListGrid::RowActivated, this, press(m_cmdModify));
    connect(m_grid, &ListGrid::InsertPressed, this, press(m_cmdAdd));
    connect(m_grid, &ListGrid::DeletePressed, this, press(m_cmdRemove));
    connect(m_grid, &ListGrid::SelectionMoved, this, &MatrixList::RefreshButtons);
    connect(&pages, &MatrixPages::Loaded, this, &MatrixList::Fill);
    Fill();
}

QPushButton* MatrixList::AddButton(const QString& name, const QString& caption, void (MatrixList::*act)()) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(Named(name, m_kind));
    button->setAutoDefault(false); // Enter belongs to the window's own default button
    connect(button, &QPushButton::clicked, this, act);
    return button;
}

void MatrixList::Fill() {
    QList<GridRow> rows;
    for (const MatrixEntry& entry : m_pages.Entries(m_kind))
        rows.append({entry.id, {entry.patronName, entry.itemName}, {}});
    m_grid->ReplaceRows(rows);
    RefreshButtons();
}

void MatrixList::RefreshButtons() {
    const bool isStored = m_pages.Group().has_value();
    const bool mayEdit = isStored && m_pages.Group()->mayEdit;
    const qsizetype selected = m_grid->SelectedCount();
    m_grid->setEnabled(isStored);
    m_cmdAdd->setEnabled(mayEdit);
    m_cmdModify->setEnabled(isStored && selected == 1);
    m_mnuTestLoan->setEnabled(isStored && selected == 1);
    for (QPushButton* button : {m_cmdCopy, m_cmdModifyMultiple, m_cmdRemove})
        button->setEnabled(mayEdit && selected > 0);
    m_cmdSelectAll->setEnabled(isStored && m_grid->Model().rowCount() > 0);
    m_cmdUnselectAll->setEnabled(isStored && selected > 0);
    m_cmdMap->setEnabled(isStored);
}

QList<MatrixEntry> MatrixList::Selected() const {
    QHash<QString, MatrixEntry> entries;
    for (const MatrixEntry& entry : m_pages.Entries(m_kind))
        entries.insert(entry.id, entry);
    QList<MatrixEntry> selected;
    for (const QString& id : m_grid->SelectedKeys())
        selected.append(entries.value(id));
    return selected;
}

void MatrixList::Add() {
    if (AddMatrixEntries(m_application, window(), *m_pages.Group(), m_kind))
        m_pages.Load();
}

void MatrixList::Modify() {
    const QList<MatrixEntry> selected = Selected();
    if (selected.size() == 1 &&
        ModifyMatrixEntry(m_application, window(), *m_pages.Group(), selected.first(), m_kind))
        m_pages.Load();
}

void MatrixList::Copy() {
    const QList<MatrixEntry> selected = Selected();
    if (!selected.isEmpty() &&
        AddMatrixEntries(m_application, window(), *m_pages.Group(), m_kind, {}, selected.first()))
        m_pages.Load();
}

void MatrixList::ModifyMultiple() {
    const QList<MatrixEntry> selected = Selected();
    if (!selected.isEmpty() &&
        ModifyMatrixEntries(m_application, window(), *m_pages.Group(), selected, m_kind))
        m_pages.Load();
}

void MatrixList::Remove() {
    const QList<MatrixEntry> selected = Selected();
    const QString named = selected.size() == 1 ? selected.first().Name() : Several;
    if (selected.isEmpty() || !ConfirmDelete(m_application, this, tr("Policy Matrix"), named))
        return;
    MatrixRemoval removal(m_application, *m_pages.Group(), selected);
    if (selected.size() <= FewEntries) {
        while (removal.Step()) {
        }
    } else {
        frmCirculation_MatrixRemoval dialog(removal, window());
        m_application.prompter.RunDialog(dialog);
    }
    removal.ReportRefusals();
    m_pages.Load();
    m_grid->SelectKeys(removal.Refused());
    emit m_application.notices.SubjectChanged("Mat");
}

void MatrixList::TestLoan() {
    const QList<MatrixEntry> selected = Selected();
    if (selected.size() == 1)
        OpenLoanTest(m_application, this, QuestionOf(*m_pages.Group(), selected.first()));
}

void MatrixList::SelectAll() {
    m_grid->SelectKeys(m_grid->Model().ShownKeys());
}

void MatrixList::UnselectAll() {
    m_grid->clearSelection();
}

void MatrixList::ShowMap() {
    frmCirculation_MatrixMap map(m_application, *m_pages.Group(), window());
    if (!map.Load())
        return;
    m_application.prompter.RunDialog(map);
    if (map.IsChanged())
        m_pages.Load();
}

} // namespace sysadmin

#include "moc_MatrixList.cpp"
