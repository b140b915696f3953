#include "cataloging/TryImportDialog.h"

#include "cataloging/AskForRecords.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int ImportTryTopic = 50438;
const QString Unreadable = "!"; // begins the keys of rows for records that could not be read

/// Number, or nothing for none: what there is stands out.
QString Counted(qsizetype count) {
    return count == 0 ? QString() : QString::number(count);
}

/// The sum of prices times copies, in hundredths.
qint64 TotalOf(const QList<TriedRecord>& records) {
    qint64 total = 0;
    for (const TriedRecord& record : records)
        for (const TriedLine& line : record.lines)
            total += qRound64(line.price.toDouble() * 100) * qMax(1, line.copies.toInt());
    return total;
}

} // namespace

TryImportDialog::TryImportDialog(Prompter& prompter, const ImportTrialRule& rule, const TriedLibrary& library,
                                 const DuplicateSearch& search, QWidget* parent)
    : QDialog(parent)
    , m_prompter(prompter)
    , m_rule(rule)
    , m_library(library)
    , m_search(search) {
    setObjectName("frmCataloging_BulkImportTryIt");
    setProperty(HelpContextProperty, ImportTryTopic);
    setWindowTitle(tr("Try an Import"));
    resize(980, 680);

    auto* tools = new QHBoxLayout;
    const auto addButton = [&](const QString& name, const QString& caption, auto act) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        tools->addWidget(button);
        return button;
    };
    addButton("cmdOpenRecords", tr("&Open..."), [this] { OpenRecords(); });
    auto* paste = addButton("cmdPasteRecords", tr("&Paste"), [this] { Paste(); });
    addButton("cmdOpenLibrary", tr("Records of the &Library..."), [this] { OpenLibrary(); });
    lblSource = new QLabel(this);
    lblSource->setObjectName("lblSource");
    lblSource->setWordWrap(true);
    tools->addWidget(lblSource, 1);
    auto* shortcut = new QShortcut(QKeySequence::Paste, this);
    connect(shortcut, &QShortcut::activated, paste, &QPushButton::click);

    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setWordWrap(true);
    QFont bold = lblSummary->font();
    bold.setBold(true);
    lblSummary->setFont(bold);

    auto* split = new QSplitter(Qt::Vertical, this);
    const auto addGrid = [&](const QString& name, const QString& accessible,
                             const QList<GridColumn>& columns) {
        auto* side = new QWidget(split);
        auto* below = new QVBoxLayout(side);
        below->setContentsMargins({});
        auto* grid = new ListGrid(name, columns, side);
        grid->setAccessibleName(accessible);
        grid->SetPrompter(m_prompter);
        if (name == u"vsfTriedRecords")
            below->addWidget(grid->FilterBox());
        below->addWidget(grid, 1);
        if (name == u"vsfTriedRecords")
            QWidget::setTabOrder(grid->FilterBox(), grid);
        return grid;
    };
    vsfTriedRecords = addGrid("vsfTriedRecords", tr("Records"),
                              {{.caption = tr("No."), .width = 50},
                               {.caption = tr("Title")},
                               {.caption = tr("Outcome"), .width = 200},
                               {.caption = tr("MFHDs"), .width = 66},
                               {.caption = tr("Items"), .width = 60},
                               {.caption = tr("Order Lines"), .width = 90},
                               {.caption = tr("Defaults"), .width = 76},
                               {.caption = tr("Wrong"), .width = 66}});
    vsfTriedDetails = addGrid("vsfTriedDetails", tr("The selected record"),
                              {{.caption = tr("What"), .width = 130}, {.caption = tr("Details")}});
    vsfTriedDetails->SetSortable(false);
    connect(vsfTriedRecords, &ListGrid::SelectionMoved, this, &TryImportDialog::ShowRecord);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(tools);
    whole->addWidget(lblSummary);
    whole->addWidget(split, 1);
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    Try();
}

void TryImportDialog::OpenRecords() {
    QString name;
    if (const auto read = AskForRecords(m_prompter, this, tr("Records to Try"), marc::MostRecords, &name))
        Take(*read, name);
}

void TryImportDialog::OpenLibrary() {
    if (const auto read = AskForRecords(m_prompter, this, tr("Records of the Library"))) {
        m_libraryRead = *read;
        Try();
    }
}

void TryImportDialog::Paste() {
    const QString text = QApplication::clipboard()->text();
    if (!text.trimmed().isEmpty())
        Take(marc::ReadRecords(text), tr("Pasted"));
}

void TryImportDialog::Take(const marc::Result& read, const QString& source) {
    m_read = read;
    m_source = source;
    Try();
}

void TryImportDialog::Try() {
    DuplicateSearch search = m_search;
    for (const marc::Record& record : m_libraryRead.records)
        search.Add(record, tr("\"%1\"").arg(TrialTitle(record)));
    // A record of the file is there for those behind it.
    m_library.findSame = [&search](const marc::Record& record) {
        const TriedMatch found = search.Find(record);
        search.Add(record, tr("record %1 of the file").arg(record.number));
        return found;
    };
    m_tried = TryImport(m_read.records, m_rule, m_library);
    m_library.findSame = {};
    QList<GridRow> rows;
    for (const TriedRecord& record : m_tried)
        rows.append(
            {QString::number(record.number),
             {QString::number(record.number), record.title, OutcomeInWords(record),
              Counted(record.holdings.size()), Counted(record.ItemCount()), Counted(record.lines.size()),
              Counted(record.defaults.size()), Counted(record.problems.size())},
             {}});
    for (const QString& problem : m_read.problems)
        rows.append({Unreadable + QString::number(rows.size()),
                     {{}, problem, tr("Not read"), {}, {}, {}, {}, "1"},
                     {}});
    vsfTriedRecords->SetRows(rows);
    ShowSummary();
    ShowRecord();
}

void TryImportDialog::ShowSummary() {
    QStringList source;
    if (m_source.isEmpty())
        source.append(tr("Open a file of records, or paste records."));
    else if (m_read.hasMore)
        source.append(tr("%1, the first %2 records").arg(m_source).arg(marc::MostRecords));
    else
        source.append(m_source);
    if (!m_libraryRead.records.isEmpty())
        source.append(tr("The library: %1 records").arg(m_libraryRead.records.size()));
    lblSource->setText(source.join("; "));
    if (m_source.isEmpty()) {
        lblSummary->clear();
        return;
    }
    qsizetype holdings = 0, items = 0, lines = 0, wrong = m_read.problems.size(), loaded = 0;
    for (const TriedRecord& record : m_tried) {
        holdings += record.holdings.size();
        items += record.ItemCount();
        lines += record.lines.size();
        wrong += record.problems.isEmpty() ? 0 : 1;
        loaded +=
            record.outcome != TriedRecord::Outcome::Left && record.outcome != TriedRecord::Outcome::NotLoaded;
    }
    const qsizetype all = m_tried.size() + m_read.problems.size();
    QStringList words{tr("%1 of %2 records would be loaded").arg(loaded).arg(all),
                      tr("MFHDs: %1").arg(holdings), tr("items: %1").arg(items)};
    if (lines > 0) {
        const qint64 total = TotalOf(m_tried);
        words.append(tr("order lines: %1, %2.%3 %4")
                         .arg(lines)
                         .arg(total / 100)
                         .arg(total % 100, 2, 10, QChar('0'))
                         .arg(m_rule.orders.value("cCurrency")));
    }
    words.append(wrong == 0 ? tr("nothing is wrong") : tr("records with something wrong: %1").arg(wrong));
    lblSummary->setText(words.join("; ") + '.');
}

void TryImportDialog::ShowRecord() {
    QList<GridRow> rows;
    const QString key = vsfTriedRecords->SelectedKey();
    for (const TriedRecord& record : m_tried)
        if (QString::number(record.number) == key)
            for (const auto& [what, text] : TrialInWords(record, m_rule))
                rows.append({QString::number(rows.size()), {what, text}, {}});
    vsfTriedDetails->SetRows(rows);
}

} // namespace sysadmin

#include "moc_TryImportDialog.cpp"
