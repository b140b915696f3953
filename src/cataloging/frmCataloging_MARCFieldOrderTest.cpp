#include "cataloging/frmCataloging_MARCFieldOrderTest.h"

#include "cataloging/FieldReorder.h"
#include "cataloging/RecordEntry.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int FieldOrderTestTopic = 50453;

/// What the dialog begins with, so that there is something to see.
const char* const UnorderedRecord =
    "LDR    00000cam a2200000 i 4500\n"
    "001    100001\n"
    "008    250310s2025    nyua     b    001 0 eng d\n"
    "700 1  $a Quist, Bram, $e illustrator.\n"
    "650  7 $a Owls. $2 fast\n"
    "650  0 $a Owls $z Northern marshes.\n"
    "504    $a Includes bibliographical references.\n"
    "500    $a Maps on lining papers.\n"
    "245 14 $6 880-01 $a The owls of the northern marshes / $c Ines Marlowe.\n"
    "100 1  $a Marlowe, Ines, $e author.\n"
    "020    $a 9780000000019\n"
    "880 14 $6 245-01/(N $a Совы северных болот.\n";

} // namespace

frmCataloging_MARCFieldOrderTest::frmCataloging_MARCFieldOrderTest(const OrderingRules& catalogue,
                                                                   const FieldOrderConfig& configuration,
                                                                   Prompter& prompter, QWidget* parent)
    : QDialog(parent)
    , m_catalogue(catalogue)
    , m_configuration(configuration) {
    setObjectName("frmCataloging_MARCFieldOrderTest");
    setWindowTitle(tr("Try the Field Order"));
    setProperty(HelpContextProperty, FieldOrderTestTopic);
    auto* whole = new QVBoxLayout(this);
    const auto label = [this](const QString& name, const QString& text) {
        auto* made = new QLabel(text, this);
        made->setObjectName(name);
        made->setTextFormat(Qt::PlainText);
        made->setWordWrap(true);
        return made;
    };
    m_entry = new RecordEntry(prompter, this);
    whole->addWidget(m_entry, 2);
    lblVerdict = label("lblVerdict", {});
    QFont bold = lblVerdict->font();
    bold.setBold(true);
    lblVerdict->setFont(bold);
    whole->addWidget(lblVerdict);
    auto* results = new QSplitter(this);
    results->setObjectName("splResults");
    const auto addGrid = [&](const QString& name, const QString& accessible,
                             const QList<GridColumn>& columns) {
        auto* grid = new ListGrid(name, columns, results);
        grid->setAccessibleName(accessible);
        grid->SetSortable(false);
        grid->SetPrompter(prompter);
        return grid;
    };
    vsfBefore = addGrid("vsfBefore", tr("Before"), {{tr("No."), 46}, {tr("Before")}});
    vsfAfter = addGrid("vsfAfter", tr("After"),
                       {{tr("Was"), 46}, {tr("After")}, {tr("Field Group"), 120}, {tr("Sort Rule"), 170}});
    results->setStretchFactor(0, 2);
    results->setStretchFactor(1, 3);
    whole->addWidget(results, 4);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_entry, &RecordEntry::RecordChanged, this, &frmCataloging_MARCFieldOrderTest::ShowRecord);
    resize(980, 680);
    m_entry->SetText(QString::fromUtf8(UnorderedRecord));
    m_entry->setFocus();
}

void frmCataloging_MARCFieldOrderTest::ShowRecord() {
    const marc::Record record = m_entry->Record();
    QList<GridRow> before;
    for (qsizetype i = 0; i < record.fields.size(); ++i)
        before.append({QString::number(i), {QString::number(i + 1), marc::ToText(record.fields[i])}, {}});
    vsfBefore->SetRows(before);
    QList<GridRow> after;
    int moved = 0;
    for (const PlacedField& field : Reorder(record, m_configuration)) {
        moved += field.from != after.size() ? 1 : 0;
        after.append({QString::number(field.from),
                      {QString::number(field.from + 1), marc::ToText(record.fields[field.from]),
                       GroupText(field), RuleText(field)},
                      {}});
    }
    vsfAfter->SetRows(after);
    lblVerdict->setText(!m_entry->HasRecord() ? tr("There is no record.")
                        : moved == 0
                            ? tr("All %1 fields stay where they are.").arg(after.size())
                            : tr("%1 of %2 fields stand in another place.").arg(moved).arg(after.size()));
}

QString frmCataloging_MARCFieldOrderTest::GroupText(const PlacedField& field) const {
    if (field.group == PlacedField::Control)
        return tr("(control field)");
    return field.group < 0
               ? tr("(no group)")
               : QString("%1: %2").arg(field.group + 1).arg(m_configuration.groups[field.group].match);
}

QString frmCataloging_MARCFieldOrderTest::RuleText(const PlacedField& field) const {
    if (field.isPaired)
        return tr("with its paired field");
    if (field.group < 0)
        return {};
    return field.rule < 0 ? tr("as it stood")
                          : m_configuration.groups[field.group].rules[field.rule].Text(m_catalogue);
}

} // namespace sysadmin

#include "moc_frmCataloging_MARCFieldOrderTest.cpp"
