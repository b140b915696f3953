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

namespace sysadmin {

namespace {

constexpr int LeastWidth = 360;
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

} // namespace

/// The rules as rows that can be moved; the last cell is the rank before the move.
struct SortOrderForm : Form {
    explicit SortOrderForm(const clsGrid& grid)
        : columns(ColumnsOf(grid))
        , vsf(*this, {.name = "vsf", .accessible = grid.Caption}, columns,
              SpecOf(grid, int(columns.size()) - 1)) {
        QList<GridRow> rows;
        for (const clsRow& row : grid.clsRows) {
            QStringList cells = row.ColumnData;
            cells.resize(columns.size() - 1);
            rows.append({row.RowData, cells << QString::number(row.RowID), {}});
        }
        vsf.SetStoredRows(rows);
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
    resize(std::max(LeastWidth, wanted + room), UsualHeight);

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
    lblPriority->setText(
        m_isStale   ? tr("Others have changed the rules in the meantime: cancel, and set the order again.")
        : place < 0 ? tr("Priority:")
                    : tr("Priority: %L1 of %L2").arg(place + 1).arg(vsf->Model().rowCount()));
    cmdSaveRule->setEnabled(!m_isStale && vsf->Model().rowCount() > 0);
}

void frmSortOrder::accept() {
    if (!cmdSaveRule->isEnabled())
        return;
    m_form->vsf.Put(m_application.channel);
    if (const qint16 result = m_application.channel.SendRequest(m_grid.SendRequestName);
        result != wire::status::Ok) {
        m_isStale = result == wire::status::RecordChanged;
        m_application.ReportRequestFailure(result, "Move Rule Order Up", "Sorting");
        ShowPriority();
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
