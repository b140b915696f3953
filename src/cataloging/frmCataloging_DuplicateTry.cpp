#include "cataloging/frmCataloging_DuplicateTry.h"

#include "cataloging/AskForRecords.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "marc/ReadRecords.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int DuplicateTryTopic = 50445;

QString Threshold(const std::optional<int>& score) {
    return score ? QString::number(*score) : frmCataloging_DuplicateTry::tr("none");
}

} // namespace

frmCataloging_DuplicateTry::frmCataloging_DuplicateTry(Prompter& prompter, const DuplicateProfile& profile,
                                                       const QString& name, QWidget* parent)
    : QDialog(parent)
    , m_prompter(prompter)
    , m_profile(profile) {
    setObjectName("frmCataloging_DuplicateTry");
    setProperty(HelpContextProperty, DuplicateTryTopic);
    setWindowTitle(tr("Try %1").arg(name));
    resize(1000, 720);
    auto* whole = new QVBoxLayout(this);
    auto* records = new QHBoxLayout;
    m_txtIncoming = AddRecord(*records, "Incoming", tr("&Incoming Record:"));
    m_txtExisting = AddRecord(*records, "Existing", tr("Record in the &Database:"));
    whole->addLayout(records, 3);

    m_grid = new ListGrid("vsfMatches",
                          {{.caption = tr("Code"), .width = 70},
                           {.caption = tr("Index"), .width = 180},
                           {.caption = tr("Incoming")},
                           {.caption = tr("Database")},
                           {.caption = tr("Weight"), .width = 70},
                           {.caption = tr("Match"), .width = 60, .yesNo = true}},
                          this);
    m_grid->SetPrompter(prompter);
    m_grid->setAccessibleName(tr("Indexes"));
    whole->addWidget(m_grid, 2);

    m_lblOutcome = new QLabel(this);
    m_lblOutcome->setObjectName("lblOutcome");
    m_lblOutcome->setWordWrap(true);
    m_lblOutcome->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_lblOutcome->setText(tr("Paste or open two records and press Compare."));
    whole->addWidget(m_lblOutcome);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* compare = new QPushButton(tr("&Compare"), this);
    compare->setObjectName("cmdCompare");
    compare->setDefault(true);
    connect(compare, &QPushButton::clicked, this, &frmCataloging_DuplicateTry::Compare);
    auto* close = new QPushButton(tr("C&lose"), this);
    close->setObjectName("cmdClose");
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(compare);
    buttons->addWidget(close);
    whole->addLayout(buttons);
    AssignMnemonics(*this);
    m_txtIncoming->setFocus();
}

QPlainTextEdit* frmCataloging_DuplicateTry::AddRecord(QHBoxLayout& side, const QString& role,
                                                      const QString& caption) {
    auto* column = new QVBoxLayout;
    // In front of the text: the Tab key goes down.
    auto* open = new QPushButton(tr("Open..."), this);
    open->setObjectName("cmdOpen" + role);
    auto* text = new QPlainTextEdit(this);
    text->setObjectName("txt" + role);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlaceholderText("245 10 $a Title $b rest\n020    $a 9780000000000");
    text->setTabChangesFocus(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* label = new QLabel(caption, this);
    label->setBuddy(text);
    open->setAutoDefault(false);
    open->setAccessibleName(tr("Open: %1").arg(QString(caption).remove('&').remove(':')));
    connect(open, &QPushButton::clicked, this, [this, text] { Open(*text); });
    auto* head = new QHBoxLayout;
    head->addWidget(label, 1);
    head->addWidget(open);
    column->addLayout(head);
    column->addWidget(text, 1);
    side.addLayout(column, 1);
    return text;
}

/// The first record of a file, as lines.
void frmCataloging_DuplicateTry::Open(QPlainTextEdit& text) {
    QString name;
    const auto read = AskForRecords(m_prompter, this, tr("Open a Record"), 1, &name);
    if (read && read->records.isEmpty())
        m_prompter.ShowBox(this,
                           {.text = read->problems.value(0, tr("There is no record in %1.").arg(name))});
    else if (read)
        text.setPlainText(marc::ToText(read->records.first()));
}

void frmCataloging_DuplicateTry::Compare() {
    QList<marc::Record> records;
    for (QPlainTextEdit* text : {m_txtIncoming, m_txtExisting}) {
        const marc::Result read = marc::ReadRecords(text->toPlainText(), 1);
        if (read.records.isEmpty()) {
            m_grid->SetRows({});
            m_lblOutcome->setText(read.problems.value(
                0, text == m_txtIncoming ? tr("There is no incoming record.")
                                         : tr("There is no record of the database to compare with.")));
            text->setFocus();
            return;
        }
        records.append(read.records.first());
    }
    Show(ScoreDuplicate(m_profile, records[0], records[1]));
}

void frmCataloging_DuplicateTry::Show(const DuplicateScore& score) {
    QList<GridRow> rows;
    for (const IndexMatch& match : score.matches)
        rows.append({match.code,
                     {match.code, match.name, match.incoming.join("; "), match.existing.join("; "),
                      QString::number(match.weight), match.matches ? "Y" : "N"},
                     {}});
    m_grid->SetRows(rows);
    m_lblOutcome->setText(tr("Sum of the weights that match: %1. Warn at %2, replace at %3.")
                              .arg(score.sum)
                              .arg(Threshold(m_profile.warn), Threshold(m_profile.replace)) +
                          '\n' + score.outcome.join(' '));
}

} // namespace sysadmin

#include "moc_frmCataloging_DuplicateTry.cpp"
