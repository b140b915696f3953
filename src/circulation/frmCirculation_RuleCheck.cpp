#include "circulation/frmCirculation_RuleCheck.h"

#include "circulation/LoanQuestion.h"
#include "core/Application.h"
#include "framework/ListGrid.h"
#include "framework/RowCount.h"
#include "wire/Status.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

frmCirculation_RuleCheck::frmCirculation_RuleCheck(Application& application, QWidget* parent)
    : FormScreen(application, "frmCirculation_RuleCheck", tr("Check the Rules"), Area::Circulation, parent) {
    const bool several = application.clusters.Count() > 1;
    vsf = new ListGrid("vsf",
                       {{.caption = tr("Cluster"), .width = 100, .hidden = !several},
                        {.caption = tr("Policy Group"), .width = 150},
                        {.caption = tr("Finding"), .width = 136},
                        {.caption = tr("Place"), .width = 270},
                        {.caption = tr("Explanation")}},
                       this);
    vsf->setAccessibleName(tr("Findings"));
    vsf->KeepColumns(application.prefs, objectName());
    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setWordWrap(true);
    cmdOpen = MakeButton("cmdOpen", tr("&Open..."));
    cmdTestLoan = MakeButton("cmdTestLoan", tr("&Test a Loan"));
    auto* cmdCheck = MakeButton("cmdCheck", tr("Check &Again"));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblSummary);
    AddListWithButtons(*whole, *vsf, {cmdOpen, cmdTestLoan, cmdCheck, cmdClose});

    connect(vsf, &ListGrid::SelectionMoved, this, &frmCirculation_RuleCheck::RefreshButtons);
    connect(vsf, &ListGrid::RowActivated, this, &frmCirculation_RuleCheck::Open);
    connect(cmdOpen, &QPushButton::clicked, this, &frmCirculation_RuleCheck::Open);
    connect(cmdTestLoan, &QPushButton::clicked, this, &frmCirculation_RuleCheck::TestLoan);
    connect(cmdCheck, &QPushButton::clicked, this, &frmCirculation_RuleCheck::Check);
    connect(cmdClose, &QPushButton::clicked, this, &frmCirculation_RuleCheck::CloseScreen);
    connect(&application.notices, &Notices::SubjectChanged, this,
            &frmCirculation_RuleCheck::OnSubjectChanged);
    vsf->SetMenuButtons({cmdOpen, cmdTestLoan, cmdCheck});
    BindKey(Qt::Key_F5, cmdCheck);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
    RefreshButtons();
}

void frmCirculation_RuleCheck::Check() {
    const QString selected = vsf->SelectedKey();
    m_found.clear();
    QList<GridRow> rows;
    RuleFindings findings;
    if (const qint16 status = ReadRuleFindings(App(), findings); status != wire::status::Ok) {
        App().ReportRequestFailure(status, "Check the Rules", windowTitle());
        lblSummary->setText(tr("The rules could not be read."));
        vsf->SetRows({});
        return;
    }
    for (const RuleFinding& found : findings.found) {
        m_found.insert(found.Key(), found);
        rows.append({found.Key(),
                     {found.clusterName, found.group, loan::FindingText(found.finding.kind),
                      found.finding.place, found.finding.text},
                     {}});
    }
    vsf->ReplaceRows(rows);
    if (!vsf->SelectKey(selected) && !rows.isEmpty())
        vsf->SelectKey(vsf->Model().ShownKeys().value(0));
    lblSummary->setText(rows.isEmpty()
                            ? tr("%1 policy groups were looked over. Nothing was found.").arg(findings.groups)
                            : tr("%1 policy groups were looked over. %L2 findings: double-click one, "
                                 "or press Enter, to go to its place.")
                                  .arg(findings.groups)
                                  .arg(rows.size()));
    RefreshButtons();
}

void frmCirculation_RuleCheck::OnSubjectChanged(const QString& subject) {
    if (DependLoansOn(subject))
        lblSummary->setText(tr("The settings have changed since this check. Check again (F5)."));
}

const RuleFinding* frmCirculation_RuleCheck::Selected() const {
    const auto found = m_found.constFind(vsf->SelectedKey());
    return found == m_found.constEnd() ? nullptr : &*found;
}

void frmCirculation_RuleCheck::Open() {
    const RuleFinding* selected = Selected();
    if (!selected)
        return;
    const RuleFinding found = *selected; // what it opens may check anew
    if (found.Open(App(), this))
        Check();
}

void frmCirculation_RuleCheck::TestLoan() {
    if (const RuleFinding* found = Selected(); found && found->finding.patronGroup != 0)
        OpenLoanTest(App(), this, QuestionOf(found->rule.group, found->rule.entry));
}

void frmCirculation_RuleCheck::RefreshButtons() {
    const RuleFinding* found = Selected();
    cmdOpen->setEnabled(found);
    cmdTestLoan->setEnabled(found && found->finding.patronGroup != 0);
}

} // namespace sysadmin

#include "moc_frmCirculation_RuleCheck.cpp"
