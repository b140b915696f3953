#include "search/frmSearch_DatabaseTest.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "wire/SearchDatabases.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {} // namespace

frmSearch_DatabaseTest::frmSearch_DatabaseTest(Application& application, const QString& code,
                                               const QString& name, const QList<PickItem>& searchCodes,
                                               bool isTarget, QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_code(code) {
    setObjectName("frmSearch_DatabaseTest");
    setWindowTitle(tr("Test Connection"));
    setProperty(HelpContextProperty, 50613);
    auto* whole = new QVBoxLayout(this);
    auto* heading = new QLabel(code + " - " + name, this);
    heading->setObjectName("lblDatabase");
    heading->setTextFormat(Qt::PlainText);
    whole->addWidget(heading);
    if (isTarget) {
        auto* entry = new QFormLayout;
        m_cboSearchCode = new QComboBox(this);
        m_cboSearchCode->setObjectName("cboSearchCode");
        for (const PickItem& searchCode : searchCodes)
            m_cboSearchCode->addItem(searchCode.text, searchCode.id);
        m_txtTerm = new QLineEdit(ConnectionTest::UsualTerm, this);
        m_txtTerm->setObjectName("txtTerm");
        m_txtTerm->setMaxLength(wire::databases::NameLength);
        entry->addRow(tr("Search Code:"), m_cboSearchCode);
        entry->addRow(tr("Search For:"), m_txtTerm);
        whole->addLayout(entry);
    }
    m_lblState = new QLabel(this);
    m_lblState->setObjectName("lblState");
    m_lblState->setWordWrap(true);
    m_lblState->setTextFormat(Qt::PlainText);
    m_lblState->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    whole->addWidget(m_lblState);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName("barProgress");
    m_progress->setRange(0, 0);
    m_progress->setAccessibleName(tr("The test is running"));
    QSizePolicy policy = m_progress->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(policy);
    m_progress->setTextVisible(false);
    m_progress->hide();
    whole->addWidget(m_progress);
    m_txtResult = new QPlainTextEdit(this);
    m_txtResult->setObjectName("txtResult");
    m_txtResult->setAccessibleName(tr("What was answered"));
    m_txtResult->setReadOnly(true);
    m_txtResult->setTabChangesFocus(true);
    m_txtResult->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    whole->addWidget(m_txtResult, 1);
    auto* buttons = new QHBoxLayout;
    m_cmdTest = new QPushButton(tr("&Test"), this);
    m_cmdTest->setObjectName("cmdTest");
    m_cmdTest->setDefault(true);
    m_cmdClose = new QPushButton(tr("&Close"), this);
    m_cmdClose->setObjectName("cmdClose");
    m_cmdClose->setAutoDefault(false);
    buttons->addStretch();
    buttons->addWidget(m_cmdTest);
    buttons->addWidget(m_cmdClose);
    whole->addLayout(buttons);
    AssignMnemonics(*this);
    connect(m_cmdTest, &QPushButton::clicked, this, &frmSearch_DatabaseTest::Begin);
    connect(m_cmdClose, &QPushButton::clicked, this, &frmSearch_DatabaseTest::reject);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &frmSearch_DatabaseTest::Poll);
    resize(620, 460);
}

frmSearch_DatabaseTest::~frmSearch_DatabaseTest() {
    if (m_test)
        m_test->Cancel();
}

/// While a test runs, this ends the test; else the dialog.
void frmSearch_DatabaseTest::reject() {
    if (!m_test) {
        QDialog::reject();
        return;
    }
    m_timer.stop();
    m_test->Cancel();
    m_test.reset();
    SetRunning(false);
    m_lblState->setText(ConnectionResult{.outcome = "cancelled"}.Sentence());
}

void frmSearch_DatabaseTest::Begin() {
    m_test.emplace(m_application.channel, m_code,
                   m_cboSearchCode ? m_cboSearchCode->currentData().toString() : QString(),
                   m_txtTerm ? m_txtTerm->text().trimmed() : QString());
    m_lblState->setText(tr("The server is calling..."));
    m_txtResult->clear();
    SetRunning(true);
    Poll();
}

void frmSearch_DatabaseTest::Poll() {
    if (!m_test)
        return;
    const std::optional<ConnectionResult> result = m_test->Poll();
    if (m_test->IsRunning()) {
        m_timer.start(ConnectionTest::PollPause);
        return;
    }
    const qint16 status = m_test->Status();
    m_test.reset();
    SetRunning(false);
    if (status != 0) {
        m_lblState->clear();
        m_application.ReportRequestFailure(status, "Test Database Connection",
                                           tr("Search Database Definition"));
        return;
    }
    Show(*result);
    if (!result->AsksForTrust() || !m_application.prompter.ShowBox(this, {.text = result->TrustQuestion(),
                                                                          .icon = Box::Icon::Question,
                                                                          .buttons = Box::Buttons::YesNo,
                                                                          .careful = true}))
        return;
    if (const qint16 failure = SendTrust(m_application.channel, m_code, result->fingerprint); failure != 0)
        m_application.ReportRequestFailure(failure, "Test Database Connection",
                                           tr("Search Database Definition"));
    else
        Begin();
}

void frmSearch_DatabaseTest::Show(const ConnectionResult& result) {
    m_lblState->setText(result.Sentence());
    QStringList lines;
    const auto add = [&](const QString& caption, const QString& value) {
        if (!value.isEmpty())
            lines << caption + ' ' + value;
    };
    add(m_cboSearchCode ? tr("Target:") : tr("Library:"), result.name);
    add(tr("Version:"), result.version);
    add(tr("Hits:"), result.hits);
    add(tr("Milliseconds:"), result.milliseconds);
    if (!result.record.isEmpty())
        lines << QString() << tr("First record:") << result.record;
    m_txtResult->setPlainText(lines.join('\n'));
}

void frmSearch_DatabaseTest::SetRunning(bool running) {
    m_progress->setVisible(running);
    m_cmdTest->setEnabled(!running);
    if (m_cboSearchCode) {
        m_cboSearchCode->setEnabled(!running);
        m_txtTerm->setEnabled(!running);
    }
    m_cmdClose->setText(running ? tr("&Cancel") : tr("&Close"));
}

} // namespace sysadmin

#include "moc_frmSearch_DatabaseTest.cpp"
