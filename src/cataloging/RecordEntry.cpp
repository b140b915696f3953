#include "cataloging/RecordEntry.h"

#include "cataloging/AskForRecords.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr qsizetype MostProblems = 3;

} // namespace

RecordEntry::RecordEntry(Prompter& prompter, QWidget* parent)
    : QWidget(parent)
    , m_prompter(prompter) {
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    auto* top = new QHBoxLayout;
    auto* caption = new QLabel(tr("&Record (paste one, or open a file):"), this);
    caption->setObjectName("lblRecord");
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
    whole->addWidget(txtRecord, 1);
    lblProblems = new QLabel(this);
    lblProblems->setObjectName("lblProblems");
    lblProblems->setTextFormat(Qt::PlainText);
    lblProblems->setWordWrap(true);
    lblProblems->hide();
    whole->addWidget(lblProblems);
    setFocusProxy(txtRecord);
    connect(cmdOpen, &QPushButton::clicked, this, &RecordEntry::OpenFile);
    connect(cboRecord, &QComboBox::currentIndexChanged, this, &RecordEntry::ShowRecord);
    connect(txtRecord, &QPlainTextEdit::textChanged, this, [this] {
        m_isFromFile = false;
        Take(marc::ReadRecords(txtRecord->toPlainText()));
    });
}

void RecordEntry::SetText(const QString& text) {
    txtRecord->setPlainText(text);
}

bool RecordEntry::HasRecord() const {
    return cboRecord->currentIndex() >= 0;
}

marc::Record RecordEntry::Record() const {
    return m_records.value(cboRecord->currentIndex());
}

void RecordEntry::OpenFile() {
    const auto read = AskForRecords(m_prompter, this, tr("Open MARC Records"));
    if (!read)
        return;
    m_isFromFile = true;
    Take(*read);
}

void RecordEntry::Take(const marc::Result& result) {
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

void RecordEntry::ShowRecord() {
    if (m_isFromFile) { // else the text is the operator's own
        const QSignalBlocker quiet(txtRecord);
        txtRecord->setPlainText(marc::ToText(Record()));
    }
    emit RecordChanged();
}

} // namespace sysadmin

#include "moc_RecordEntry.cpp"
