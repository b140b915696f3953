#include "cataloging/frmCataloging_MARCFieldOrderTest.h"

#include "cataloging/AskForRecords.h"
#include "cataloging/FieldReorder.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int HelpTopic = 50453;
constexpr qsizetype MostProblems = 3;

/// What the dialog begins with, so that there is something to see.
const char* const Example = "LDR    00000cam a2200000 i 4500\n"
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
    , m_configuration(configuration)
    , m_prompter(prompter) {
    setObjectName("frmCataloging_MARCFieldOrderTest");
    setWindowTitle(tr("Try the Field Order"));
    setProperty(HelpContextProperty, HelpTopic);
    auto* whole = new QVBoxLayout(this);
    const auto label = [this](const QString& name, const QString& text) {
        auto* made = new QLabel(text, this);
        made->setObjectName(name);
        made->setTextFormat(Qt::PlainText);
        made->setWordWrap(true);
        return made;
    };
    auto* top = new QHBoxLayout;
    QLabel* caption = label("lblRecord", tr("&Record (paste one, or open a file):"));
    auto* cmdOpen = new QPushButton(tr("&Open File..."), this);
    cmdOpen->setObjectName("cmdOpen");
    cmdOpen->setAutoDefault(false);
    cboRecord = new QComboBox(this);
    cboRecord->setObjectName("cboRecord");
    cboRecord->setAccessibleName(tr("Record"));
    cboRecord->setMinimumWidth(280);
    top->addWidget(caption, 1);
    top->addWidget(cboRecord);
    top->addWidget(cmdOpen);
    whole->addLayout(top);
    txtRecord = new QPlainTextEdit(this);
    txtRecord->setObjectName("txtRecord");
    txtRecord->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtRecord->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtRecord->setTabChangesFocus(true);
    txtRecord->setPlaceholderText("245 10 $a Title $b rest");
    caption->setBuddy(txtRecord);
    whole->addWidget(txtRecord, 2);
    lblProblems = label("lblProblems", {});
    whole->addWidget(lblProblems);
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
    connect(cmdOpen, &QPushButton::clicked, this, &frmCataloging_MARCFieldOrderTest::OpenFile);
    connect(cboRecord, &QComboBox::currentIndexChanged, this, &frmCataloging_MARCFieldOrderTest::ShowRecord);
    connect(txtRecord, &QPlainTextEdit::textChanged, this, [this] {
        m_isFromFile = false;
        Take(marc::ReadRecords(txtRecord->toPlainText()));
    });
    resize(980, 680);
    txtRecord->setPlainText(QString::fromUtf8(Example));
}

void frmCataloging_MARCFieldOrderTest::OpenFile() {
    const auto read = AskForRecords(m_prompter, this, tr("Open MARC Records"));
    if (!read)
        return;
    m_isFromFile = true;
    Take(*read);
}

void frmCataloging_MARCFieldOrderTest::Take(const marc::Result& result) {
    m_records = result.records;
    QStringList sentences = result.problems.mid(0, MostProblems);
    if (result.problems.size() > MostProblems)
        sentences.append(tr("And %1 more.").arg(result.problems.size() - MostProblems));
    if (result.hasMore)
        sentences.append(tr("Only the first %1 records were read.").arg(marc::MostRecords));
    lblProblems->setText(sentences.join('\n'));
    lblProblems->setVisible(!sentences.isEmpty());
    {
        const QSignalBlocker quiet(cboRecord);
        cboRecord->clear();
        for (const marc::Record& record : m_records) {
            const QString title = record.Title();
            cboRecord->addItem(QString::number(record.number) + (title.isEmpty() ? QString() : ": " + title));
        }
        cboRecord->setEnabled(m_records.size() > 1);
    }
    ShowRecord();
}

void frmCataloging_MARCFieldOrderTest::ShowRecord() {
    const int place = cboRecord->currentIndex();
    const marc::Record record = m_records.value(place);
    if (m_isFromFile) { // else the text is the operator's own
        const QSignalBlocker quiet(txtRecord);
        txtRecord->setPlainText(marc::ToText(record));
    }
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
    lblVerdict->setText(place < 0 ? tr("There is no record.")
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
