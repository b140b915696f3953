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

constexpr int MarkWidth = 36;
constexpr int OtherRecordColumn = 4;

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
                           {QString(), 150}},
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
    m_grid->Model().SetCaption(OtherRecordColumn, m_other->currentText());
    setWindowTitle(tr("Compare \"%1\" with \"%2\"").arg(m_leftItem.text, m_other->currentText()));
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
    // Sections stay together in the order in which they first come; of a list what was added comes first,
    // then what is missing.
    QStringList sections;
    for (const ComparedItem& item : items)
        if (!sections.contains(item.section))
            sections.append(item.section);
    const auto place = [&](const ComparedItem& item) {
        const QPair<QString, QString> key{item.section, item.id};
        const int kind = !item.isMember ? 0 : !left.contains(key) ? 1 : !right.contains(key) ? 2 : 3;
        return std::pair(sections.indexOf(item.section), kind);
    };
    std::stable_sort(items.begin(), items.end(),
                     [&](const ComparedItem& a, const ComparedItem& b) { return place(a) < place(b); });

    QList<GridRow> rows;
    int differences = 0;
    QHash<QString, QPair<int, int>> members; // by section: added, missing
    for (const ComparedItem& item : items) {
        const QPair<QString, QString> key{item.section, item.id};
        QString first = left.value(key, tr("No"));
        QString second = right.value(key, tr("No"));
        const bool differs = first != second;
        if (item.isMember) {
            const bool added = !left.contains(key);
            const bool missing = !right.contains(key);
            first = added ? QString() : tr("Yes");
            second = added ? tr("Added") : missing ? tr("Missing") : tr("Yes");
            members[item.section].first += added;
            members[item.section].second += missing;
        }
        differences += differs;
        if (differs || !m_onlyDifferences->isChecked())
            rows.append(
                {QString::number(rows.size()),
                 {differs ? QString(DifferenceMark) : QString(), item.section, item.name, first, second},
                 {}});
    }
    m_grid->SetRows(rows);
    QStringList lists;
    for (const QString& section : sections)
        if (const auto [added, missing] = members.value(section); added + missing > 0)
            lists.append(tr("%1: %2 added, %3 missing").arg(section).arg(added).arg(missing));
    Summarise(differences, lists);
}

void CompareDialog::Summarise(int differences, const QStringList& lists) {
    const QString count = differences == 0   ? tr("There is no difference.")
                          : differences == 1 ? tr("1 difference.")
                                             : tr("%1 differences.").arg(differences);
    m_summary->setText(lists.isEmpty() ? count : count + "  " + lists.join("; ") + '.');
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

#include "moc_CompareDialog.cpp"
