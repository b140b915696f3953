#include "framework/frmHealth.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "framework/ListGrid.h"
#include "framework/RowCount.h"
#include "framework/forms/ShownDate.h"
#include "wire/Status.h"

#include <QLabel>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int HealthTopic = 50906;
const QString ScreenKey = "Tools_Health";

} // namespace

frmHealth::frmHealth(Application& application, const QList<HealthCheck>& checks, QWidget* parent)
    : FormScreen(application, "frmHealth", tr("Health"), Area::AnyOperator, parent) {
    for (const HealthCheck& check : checks)
        if (application.profile.HasAccess(check.area))
            m_checks.append(check);
    vsf = new ListGrid("vsf",
                       {{.caption = tr("Check"), .width = 150},
                        {.caption = tr("Place"), .width = 260},
                        {.caption = tr("Finding")}},
                       this);
    vsf->setAccessibleName(tr("Findings"));
    vsf->KeepColumns(application.prefs, objectName());
    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setWordWrap(true);
    auto* cmdOpen = MakeButton("cmdOpen", tr("&Open..."));
    auto* cmdCall = MakeButton("cmdCall", tr("Call Other S&ystems"));
    cmdCall->setToolTip(tr("Tries whether the search databases on other systems answer"));
    auto* cmdCheck = MakeButton("cmdCheck", tr("Check &Again"));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblSummary);
    AddListWithButtons(*whole, *vsf, {cmdOpen, cmdCall, cmdCheck, cmdClose});

    cmdCall->setVisible(std::any_of(m_checks.begin(), m_checks.end(),
                                    [](const HealthCheck& check) { return check.callsOthers; }));
    const auto refresh = [this, cmdOpen] { cmdOpen->setEnabled(vsf->SelectedRow()); };
    connect(vsf, &ListGrid::SelectionMoved, this, refresh);
    connect(vsf, &ListGrid::RowActivated, this, &frmHealth::Open);
    connect(cmdOpen, &QPushButton::clicked, this, &frmHealth::Open);
    connect(cmdCall, &QPushButton::clicked, this, [this] { LookOver(true); });
    connect(cmdCheck, &QPushButton::clicked, this, [this] { LookOver(false); });
    connect(cmdClose, &QPushButton::clicked, this, &frmHealth::CloseScreen);
    vsf->SetMenuButtons({cmdOpen, cmdCheck});
    BindKey(Qt::Key_F5, cmdCheck);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
    refresh();
}

void frmHealth::LookOver(bool callOthers) {
    m_failed.clear();
    for (const HealthCheck& check : std::as_const(m_checks)) {
        if (check.callsOthers != callOthers)
            continue;
        QList<HealthFinding> found;
        m_findings.remove(check.key);
        const qint16 result = check.run(App(), found);
        if (result == wire::status::CommunicationsFailure) { // the others would fail, too
            App().ReportRequestFailure(result, "Health", windowTitle());
            m_failed.append(check.caption);
            break;
        }
        if (result == wire::status::Ok)
            m_findings.insert(check.key, found);
        else
            m_failed.append(check.caption);
    }
    ShowFindings();
}

QString frmHealth::Key(const HealthCheck& check, const HealthFinding& finding) const {
    return check.key + ' ' + finding.key;
}

void frmHealth::ShowFindings() {
    const QString selected = vsf->SelectedKey();
    QList<GridRow> rows;
    QStringList clean;
    QStringList lines;
    for (const HealthCheck& check : std::as_const(m_checks)) {
        const auto found = m_findings.constFind(check.key);
        if (found == m_findings.constEnd())
            continue;
        for (const HealthFinding& finding : *found)
            rows.append({Key(check, finding), {check.caption, finding.place, finding.text}, {}});
        if (found->isEmpty())
            clean.append(check.caption);
        else
            lines.append(tr("%1: %L2").arg(check.caption).arg(found->size()));
    }
    vsf->ReplaceRows(rows);
    if (!vsf->SelectKey(selected) && !rows.isEmpty())
        vsf->SelectKey(vsf->Model().ShownKeys().value(0));
    QStringList sentences{
        rows.isEmpty() ? tr("Nothing was found.")
        : rows.size() == 1
            ? tr("1 finding: double-click it, or press Enter, to go to its place.")
            : tr("%L1 findings: double-click one, or press Enter, to go to its place.").arg(rows.size())};
    if (!clean.isEmpty() && !rows.isEmpty())
        sentences.append(tr("Nothing was found in: %1.").arg(clean.join(", ")));
    if (!m_failed.isEmpty())
        sentences.append(tr("Could not be looked over: %1.").arg(m_failed.join(", ")));
    lblSummary->setText(sentences.join(' '));
    if (App().mainWindow)
        App().mainWindow->ShowHealth(
            tr("Looked over at %1").arg(ShownTime(QTime::currentTime().toString("HH:mm"))), lines);
}

void frmHealth::Open() {
    const QString selected = vsf->SelectedKey();
    for (const HealthCheck& check : std::as_const(m_checks))
        for (const HealthFinding& finding : m_findings.value(check.key))
            if (Key(check, finding) == selected) {
                const auto open = finding.open; // what it opens may look the settings over anew
                open(this);
                return;
            }
}

void AddHealthScreen(ScreenCatalogue& catalogue, const QList<HealthCheck>& checks) {
    catalogue.Contribute(
        ScreenKey,
        ScreenMaker{HealthTopic, false, [checks](Application& application, QWidget* parent) -> Screen* {
                        return new frmHealth(application, checks, parent);
                    }});
}

} // namespace sysadmin

#include "moc_frmHealth.cpp"
