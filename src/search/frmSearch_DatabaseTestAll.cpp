#include "search/frmSearch_DatabaseTestAll.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "wire/SearchDatabases.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

enum Column { CodeColumn, NameColumn, TypeColumn, StateColumn, HitsColumn, TimeColumn };

} // namespace

frmSearch_DatabaseTestAll::frmSearch_DatabaseTestAll(Application& application,
                                                     const QList<GridRow>& databases, QWidget* parent)
    : QDialog(parent)
    , m_application(application) {
    setObjectName("frmSearch_DatabaseTestAll");
    setWindowTitle(tr("Test All Connections"));
    setProperty(HelpContextProperty, 50614);
    auto* whole = new QVBoxLayout(this);
    auto* entry = new QFormLayout;
    m_txtTerm = new QLineEdit(ConnectionTest::UsualTerm, this);
    m_txtTerm->setObjectName("txtTerm");
    m_txtTerm->setMaxLength(wire::databases::NameLength);
    entry->addRow(tr("Search For:"), m_txtTerm);
    whole->addLayout(entry);
    m_grid = new ListGrid("vsfTests",
                          {{.caption = tr("Code"), .width = 100},
                           {.caption = tr("Name"), .width = 200},
                           {.caption = tr("Type"), .width = 70},
                           {.caption = tr("State")},
                           {.caption = tr("Hits"), .width = 80},
                           {.caption = tr("Milliseconds"), .width = 100}},
                          this);
    m_grid->SetPrompter(application.prompter);
    m_grid->setAccessibleName(tr("Tests"));
    QList<GridRow> rows;
    for (const GridRow& database : databases)
        rows.append({database.key,
                     {database.cells.value(0), database.cells.value(1), database.cells.value(2), {}, {}, {}},
                     {}});
    m_grid->SetRows(rows);
    whole->addWidget(m_grid, 1);
    m_lblState = new QLabel(this);
    m_lblState->setObjectName("lblState");
    auto* buttons = new QHBoxLayout;
    const auto makeButton = [&](const QString& name, const QString& caption) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        return button;
    };
    m_cmdTest = makeButton("cmdTest", tr("&Test All"));
    m_cmdTest->setDefault(true);
    m_cmdExport = makeButton("cmdExport", tr("E&xport..."));
    m_cmdClose = makeButton("cmdClose", tr("&Close"));
    buttons->addWidget(m_lblState, 1);
    for (QPushButton* button : {m_cmdTest, m_cmdExport, m_cmdClose})
        buttons->addWidget(button);
    whole->addLayout(buttons);
    AssignMnemonics(*this);
    connect(m_cmdTest, &QPushButton::clicked, this, &frmSearch_DatabaseTestAll::Begin);
    connect(m_cmdExport, &QPushButton::clicked, m_grid, &ListGrid::ExportCsv);
    connect(m_cmdClose, &QPushButton::clicked, this, &frmSearch_DatabaseTestAll::reject);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &frmSearch_DatabaseTestAll::Poll);
    resize(940, 480);
    Refresh();
}

frmSearch_DatabaseTestAll::~frmSearch_DatabaseTestAll() {
    for (auto& [code, test] : m_running)
        test.Cancel();
}

/// While tests run, this ends them; else the dialog.
void frmSearch_DatabaseTestAll::reject() {
    if (m_running.empty())
        QDialog::reject();
    else
        Stop();
}

void frmSearch_DatabaseTestAll::Begin() {
    m_waiting.clear();
    m_done = m_connected = 0;
    QList<GridRow> rows = m_grid->Model().Rows();
    for (GridRow& row : rows) {
        m_waiting << row.key;
        row.cells[StateColumn] = tr("Waiting");
        row.cells[HitsColumn].clear();
        row.cells[TimeColumn].clear();
    }
    m_grid->PutRows(rows);
    Poll();
}

void frmSearch_DatabaseTestAll::Poll() {
    while (m_running.size() < ConnectionTest::AtOnce && !m_waiting.isEmpty()) {
        const QString code = m_waiting.takeFirst();
        // Without a search code the server takes the first one of the target.
        m_running.try_emplace(code, m_application.channel, code, "*", m_txtTerm->text().trimmed());
    }
    for (auto test = m_running.begin(); test != m_running.end();) {
        const std::optional<ConnectionResult> result = test->second.Poll();
        if (test->second.IsRunning()) {
            ShowState(test->first, {.outcome = {}});
            ++test;
            continue;
        }
        if (const qint16 status = test->second.Status(); status != 0) {
            m_running.erase(test);
            Stop();
            m_application.ReportRequestFailure(status, "Test Database Connection",
                                               tr("Search Database Definition"));
            return;
        }
        ++m_done;
        m_connected += result->IsConnected() ? 1 : 0;
        ShowState(test->first, *result);
        test = m_running.erase(test);
    }
    if (!m_running.empty() || !m_waiting.isEmpty())
        m_timer.start(ConnectionTest::PollPause);
    Refresh();
}

void frmSearch_DatabaseTestAll::Stop() {
    m_timer.stop();
    QStringList codes = m_waiting;
    for (auto& [code, test] : m_running) {
        test.Cancel();
        codes << code;
    }
    m_running.clear();
    m_waiting.clear();
    for (const QString& code : codes)
        ShowState(code, {.outcome = "cancelled"});
    Refresh();
}

void frmSearch_DatabaseTestAll::ShowState(const QString& code, const ConnectionResult& result) {
    for (const GridRow& known : m_grid->Model().Rows()) {
        if (known.key != code)
            continue;
        GridRow row = known;
        row.cells[StateColumn] = result.outcome.isEmpty() ? tr("Calling...") : result.Sentence();
        row.cells[HitsColumn] = result.hits;
        row.cells[TimeColumn] = result.milliseconds;
        if (row != known)
            m_grid->PutRows({row});
        return;
    }
}

void frmSearch_DatabaseTestAll::Refresh() {
    const bool running = !m_running.empty();
    m_cmdTest->setEnabled(!running);
    m_txtTerm->setEnabled(!running);
    m_cmdExport->setEnabled(!running && m_done > 0);
    m_cmdClose->setText(running ? tr("&Cancel") : tr("&Close"));
    m_lblState->setText(m_done == 0 ? QString()
                                    : tr("%1 of %2 accept the connection.").arg(m_connected).arg(m_done));
}

} // namespace sysadmin

#include "moc_frmSearch_DatabaseTestAll.cpp"
