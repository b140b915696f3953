#include "security/CompareDialog.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr QChar DifferenceMark = u'\u2260';
constexpr int MarkWidth = 36;

using Values = QHash<QPair<QString, QString>, QString>; // by section and id

Values ValuesOf(const ComparedRecord& record) {
    Values values;
    for (const ComparedItem& item : record)
        values[{item.section, item.id}] = item.value;
    return values;
}

} // namespace

CompareDialog::CompareDialog(const QString& caption, const PickItem& left, const QList<PickItem>& others,
                             Describer describe, QWidget* parent)
    : QDialog(parent)
    , m_leftItem(left)
    , m_describe(std::move(describe))
    , m_left(m_describe(left.id)) {
    setObjectName("frmCompare");
    setProperty(HelpContextProperty, 50741);
    setWindowTitle(tr("Compare %1").arg(caption));
    resize(860, 560);

    auto* whole = new QVBoxLayout(this);
    auto* line = new QHBoxLayout;
    auto* label = new QLabel(tr("Compare \"%1\" &with:").arg(left.text), this);
    m_other = new QComboBox(this);
    m_other->setObjectName("cboOther");
    for (const PickItem& other : others)
        m_other->addItem(other.text, other.id);
    label->setBuddy(m_other);
    line->addWidget(label);
    line->addWidget(m_other, 1);
    m_onlyDifferences = new QCheckBox(tr("Only &differences"), this);
    m_onlyDifferences->setObjectName("chkOnlyDifferences");
    line->addWidget(m_onlyDifferences);
    whole->addLayout(line);

    m_grid = new ListGrid("vsfComparison",
                          {{QString(DifferenceMark), MarkWidth},
                           {tr("Section"), 110},
                           {tr("Item")},
                           {left.text, 150},
                           {tr("Compared with"), 150}},
                          this);
    m_grid->setAccessibleName(tr("Comparison"));
    m_grid->SetSortable(false);
    m_grid->horizontalHeader()->setMinimumSectionSize(MarkWidth);
    m_grid->horizontalHeader()->resizeSection(0, MarkWidth);
    whole->addWidget(m_grid->FilterBox());
    whole->addWidget(m_grid, 1);
    m_summary = new QLabel(this);
    m_summary->setObjectName("lblSummary");
    whole->addWidget(m_summary);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    whole->addWidget(buttons);

    setTabOrder(m_onlyDifferences, m_grid->FilterBox());
    setTabOrder(m_grid->FilterBox(), m_grid);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_other, &QComboBox::currentIndexChanged, this, &CompareDialog::ReadOther);
    connect(m_onlyDifferences, &QCheckBox::toggled, this, &CompareDialog::ShowComparison);
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] { m_grid->FocusFilter(); });
    AssignMnemonics(*this);
    if (m_left)
        ReadOther();
}

void CompareDialog::ReadOther() {
    m_right = m_describe(m_other->currentData().toString());
    ShowComparison();
}

void CompareDialog::ShowComparison() {
    if (!m_right) { // could not be read, which was reported: what stood here belongs to another record
        m_grid->SetRows({});
        m_summary->clear();
        return;
    }
    const Values left = ValuesOf(*m_left);
    const Values right = ValuesOf(*m_right);
    ComparedRecord items = *m_left;
    for (const ComparedItem& item : *m_right)
        if (!left.contains({item.section, item.id}))
            items.append(item);
    // Sections stay together in the order in which they first come.
    QStringList sections;
    for (const ComparedItem& item : items)
        if (!sections.contains(item.section))
            sections.append(item.section);
    std::stable_sort(items.begin(), items.end(), [&](const ComparedItem& a, const ComparedItem& b) {
        return sections.indexOf(a.section) < sections.indexOf(b.section);
    });

    QList<GridRow> rows;
    int differences = 0;
    for (const ComparedItem& item : items) {
        const QString first = left.value({item.section, item.id}, tr("No"));
        const QString second = right.value({item.section, item.id}, tr("No"));
        const bool differs = first != second;
        differences += differs;
        if (differs || !m_onlyDifferences->isChecked())
            rows.append(
                {QString::number(rows.size()),
                 {differs ? QString(DifferenceMark) : QString(), item.section, item.name, first, second},
                 {}});
    }
    m_grid->SetRows(rows);
    m_summary->setText(differences == 0   ? tr("There is no difference.")
                       : differences == 1 ? tr("1 difference.")
                                          : tr("%1 differences.").arg(differences));
}

void CompareSelected(Application& application, QWidget* parent, const QString& caption, const ListGrid& grid,
                     const CompareDialog::Describer& describe) {
    const GridRow selected = *grid.SelectedRow();
    QList<PickItem> others;
    for (const GridRow& row : grid.Model().Rows())
        if (row.key != selected.key)
            others.append({row.key, row.cells.value(0)});
    CompareDialog dialog(caption, {selected.key, selected.cells.value(0)}, others, describe, parent);
    if (dialog.IsReady())
        application.prompter.RunDialog(dialog);
}

} // namespace sysadmin
