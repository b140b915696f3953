#include "search/frmSearch_TryRecord.h"

#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "marc/ReadRecords.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

frmSearch_TryRecord::frmSearch_TryRecord(Prompter& prompter, const RecordTrial& trial, QWidget* parent)
    : QDialog(parent)
    , m_trial(trial) {
    setObjectName("frmSearch_TryRecord");
    setWindowTitle(trial.title);
    setProperty(HelpContextProperty, trial.helpContext);
    resize(860, 600);
    auto* whole = new QVBoxLayout(this);
    auto* caption = new QLabel(tr("&MARC Record:"), this);
    txtRecord = new QPlainTextEdit(trial.sample, this);
    txtRecord->setObjectName("txtRecord");
    txtRecord->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtRecord->setPlaceholderText("245 10 $a Title $b rest\n022    $a 0000-0000");
    txtRecord->setTabChangesFocus(true);
    txtRecord->setLineWrapMode(QPlainTextEdit::NoWrap);
    caption->setBuddy(txtRecord);
    whole->addWidget(caption);
    whole->addWidget(txtRecord, 1);
    vsfFound = new ListGrid("vsfFound", trial.columns, this);
    vsfFound->SetPrompter(prompter);
    vsfFound->SetSortable(false);
    vsfFound->setAccessibleName(trial.listName);
    whole->addWidget(vsfFound, 1);
    lblOutcome = new QLabel(this);
    lblOutcome->setObjectName("lblOutcome");
    lblOutcome->setWordWrap(true);
    lblOutcome->setTextFormat(Qt::PlainText);
    whole->addWidget(lblOutcome);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("&Close"), QDialogButtonBox::RejectRole)->setObjectName("cmdClose");
    whole->addWidget(buttons);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(txtRecord, &QPlainTextEdit::textChanged, this, &frmSearch_TryRecord::Show);
    txtRecord->setFocus();
    Show();
}

/// What cannot be read is said in place of what is found.
void frmSearch_TryRecord::Show() {
    const marc::Result read = marc::ReadRecords(txtRecord->toPlainText(), 1);
    const QList<GridRow> rows =
        read.records.isEmpty() ? QList<GridRow>() : m_trial.find(read.records.first());
    vsfFound->SetRows(rows);
    if (!read.problems.isEmpty())
        lblOutcome->setText(read.problems.join('\n'));
    else if (read.records.isEmpty())
        lblOutcome->setText(tr("There is no record. Paste one: a line for each field, or MARCXML."));
    else
        lblOutcome->setText(rows.isEmpty() ? m_trial.nothing : m_trial.foundWord.arg(rows.size()));
}

} // namespace sysadmin

#include "moc_frmSearch_TryRecord.cpp"
