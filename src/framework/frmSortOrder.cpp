#include "framework/frmSortOrder.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/forms/RowsField.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int LeastDialogWidth = 360;
constexpr int UsualHeight = 460;

QList<GridColumn> ColumnsOf(const clsGrid& grid) {
    QList<GridColumn> columns;
    for (const clsColumn& column : grid.clsColumns)
        columns.append(
            {.caption = column.ColumnName, .width = column.ColumnWidth, .hidden = column.HiddenColumn});
    if (columns.isEmpty())
        columns = {{frmSortOrder::tr("Name")}, {frmSortOrder::tr("ID")}};
    columns.append({.caption = frmSortOrder::tr("Rank before"), .hidden = true});
    return columns;
}

RowsSpec SpecOf(const clsGrid& grid, int formerRank) {
    RowsSpec spec{.ranked = true,
                  .up = {"cmdUp", frmSortOrder::tr("&Up")},
                  .down = {"cmdDown", frmSortOrder::tr("Do&wn")}};
    if (!grid.IdTag.isEmpty())
        spec.puts.append(PutKey(grid.IdTag));
    spec.puts.append(PutRank(grid.RuleRankTag));
    if (!grid.PreviousRankTag.isEmpty())
        spec.puts.append(PutCell(grid.PreviousRankTag, formerRank));
    return spec;
}

QList<GridRow> RowsOf(const clsRows& rules, qsizetype cellCount) {
    QList<GridRow> rows;
    for (const clsRow& rule : rules) {
        QStringList cells = rule.ColumnData;
        cells.resize(cellCount);
        rows.append({rule.RowData, cells << QString::number(rule.RowID), {}});
    }
    return rows;
}

/// The stored rules in the order that was made of earlier ones; one that was not there stands behind the rule
/// behind which it is stored.
QList<GridRow> InOrderOf(const QList<GridRow>& ordered, const QList<GridRow>& stored) {
    QHash<QString, GridRow> left;
    for (const GridRow& row : stored)
        left.insert(row.key, row);
    QList<GridRow> rows;
    for (const GridRow& row : ordered)
        if (left.contains(row.key))
            rows.append(left.take(row.key));
    QString before;
    for (const GridRow& row : stored) {
        const auto isBefore = [&](const GridRow& each) { return each.key == before; };
        if (left.contains(row.key)) {
            const auto place = std::find_if(rows.cbegin(), rows.cend(), isBefore);
            rows.insert(place == rows.cend() ? 0 : place - rows.cbegin() + 1, row);
        }
        before = row.key;
    }
    return rows;
}

} // namespace

/// The rules as rows that can be moved; the last cell is the rank before the move.
struct SortOrderForm : Form {
    explicit SortOrderForm(const clsGrid& grid)
        : columns(ColumnsOf(grid))
        , vsf(*this, {.name = "vsf", .accessible = grid.Caption}, columns,
              SpecOf(grid, int(columns.size()) - 1)) {
        vsf.SetStoredRows(RowsOf(grid.clsRows, columns.size() - 1));
    }

    const QList<GridColumn> columns;
    RowsField vsf;
};

frmSortOrder::frmSortOrder(Application& application, clsGrid& grid, QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_grid(grid)
    , m_form(std::make_unique<SortOrderForm>(grid)) {
    grid.Changed = false;
    setObjectName("frmSortOrder");
    setProperty(HelpContextProperty, grid.HelpId);
    setWindowTitle(tr("Sort ") + grid.Caption);

    m_view = std::make_unique<FormView>(*m_form, Below({m_form->vsf}), this);
    vsf = m_view->findChild<ListGrid*>("vsf");
    vsf->SetPrompter(application.prompter);
    lblPriority = new QLabel(this);
    lblPriority->setObjectName("lblPriority");
    lblPriority->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(this);
    cmdSaveRule = buttons->addButton(tr("&Save"), QDialogButtonBox::AcceptRole);
    cmdSaveRule->setObjectName("cmdSaveRule");
    cmdSaveRule->setDefault(true);
    buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName("cmdCancelRule");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblPriority);
    whole->addWidget(m_view.get(), 1);
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    const int room = style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 60;
    const int wanted = grid.GridWidth > 0 ? grid.GridWidth : vsf->WidthOfContents();
    resize(std::max(LeastDialogWidth, wanted + room), UsualHeight);

    connect(buttons, &QDialogButtonBox::accepted, this, &frmSortOrder::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmSortOrder::reject);
    connect(vsf, &ListGrid::SelectionMoved, this, &frmSortOrder::ShowPriority);
    if (!grid.Selected.isEmpty())
        vsf->SelectKey(grid.Selected);
    vsf->setFocus();
    ShowPriority();
}

frmSortOrder::~frmSortOrder() = default;

void frmSortOrder::ShowPriority() {
    const int place = vsf->Model().DisplayRow(vsf->SelectedKey());
    QString text =
        place < 0 ? tr("Priority:") : tr("Priority: %L1 of %L2").arg(place + 1).arg(vsf->Model().rowCount());
    if (m_others == Others::Merged)
        text += "\n" +
                tr("Others have changed the rules in the meantime. These are the rules as they are now, in "
                   "your order: look at it, and save again.");
    else if (m_others == Others::Changed)
        text += "\n" + tr("Others have changed the rules in the meantime. Save again to read them anew.");
    lblPriority->setText(text);
    cmdSaveRule->setEnabled(vsf->Model().rowCount() > 0);
}

void frmSortOrder::CarryOver() {
    const sysadmin::clsRows rules = m_grid.Reread ? m_grid.Reread() : sysadmin::clsRows();
    m_others = rules.Count() > 0 ? Others::Merged : Others::Changed;
    if (m_others == Others::Merged) {
        const QString selected = vsf->SelectedKey();
        const QList<GridRow> stored = RowsOf(rules, m_form->columns.size() - 1);
        m_grid.clsRows = rules;
        m_form->vsf.SetStoredRows(InOrderOf(m_form->vsf.Rows(), stored));
        vsf->SelectKey(selected);
    }
    ShowPriority();
}

void frmSortOrder::accept() {
    if (!cmdSaveRule->isEnabled())
        return;
    if (m_others == Others::Changed) {
        CarryOver();
        return;
    }
    m_form->vsf.Put(m_application.channel);
    if (const qint16 result = m_application.channel.SendRequest(m_grid.SendRequestName);
        result != wire::status::Ok) {
        m_application.ReportRequestFailure(result, "Move Rule Order Up", "Sorting");
        if (result == wire::status::RecordChanged)
            CarryOver();
        return;
    }
    QHash<QString, clsRow> rows;
    for (const clsRow& row : m_grid.clsRows)
        rows.insert(row.RowData, row);
    while (m_grid.clsRows.Count() > 0)
        m_grid.clsRows.Remove(m_grid.clsRows.Count() - 1);
    for (const GridRow& row : m_form->vsf.Rows())
        m_grid.clsRows.Add(rows.value(row.key));
    m_grid.Changed = true;
    QDialog::accept();
}

} // namespace sysadmin

#include "moc_frmSortOrder.cpp"
