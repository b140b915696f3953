#include "circulation/frmCirculation_LoanTest.h"

#include "circulation/LoanQuestion.h"
#include "circulation/LoanTimeline.h"
#include "circulation/RecordPlace.h"
#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "wire/Status.h"

#include <QAccessible>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSaveFile>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

const QString ScreenKey = "Tools_LoanTest";
const QString PolicyKey = "Circulation_PolicyDefinitions";
constexpr int LoanTestTopic = 50540;
const QString PictureName = "picture";

/// The entry of the id, or the first one.
QString Kept(const QList<PickItem>& items, const QString& id) {
    const bool isThere =
        std::any_of(items.begin(), items.end(), [&](const PickItem& item) { return item.id == id; });
    return isThere ? id : items.isEmpty() ? QString() : items.first().id;
}

void Offer(ChoiceField& field, const QList<PickItem>& items) {
    field.SetItems(items);
    field.SetDraft(Kept(items, field.Draft()));
}

} // namespace

frmCirculation_LoanTest::frmCirculation_LoanTest(Application& application, QWidget* parent)
    : FormScreen(application, "frmCirculation_LoanTest", tr("Test a Loan"), Area::Circulation, parent) {
    auto* whole = new QVBoxLayout(this);
    auto* sides = new QSplitter(this);
    sides->setObjectName("splSides");
    sides->setChildrenCollapsible(false);
    auto* view = MakeView(m_form, m_form.Draw(), this);
    QWidget* questions = view->InScrollArea(this);
    questions->setMinimumWidth(view->minimumSizeHint().width() +
                               style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 4);
    sides->addWidget(questions);
    sides->addWidget(BuildAnswerSide());
    sides->setStretchFactor(1, 1);
    whole->addWidget(sides, 1);
    picLoan = new LoanTimeline(this);
    whole->addWidget(picLoan);
    auto* buttons = new QHBoxLayout;
    cmdRule = MakeButton("cmdRule", tr("Show the &Rule..."));
    cmdCopy = MakeButton("cmdCopy", tr("Co&py as Text"));
    cmdPrint = MakeButton("cmdPrint", tr("Prin&t"));
    cmdPdf = MakeButton("cmdPdf", tr("Save as P&DF"));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));
    buttons->addStretch();
    for (QPushButton* button : {cmdRule, cmdCopy, cmdPrint, cmdPdf, cmdClose})
        buttons->addWidget(button);
    whole->addLayout(buttons);
    setTabOrder(txtAnswer, picLoan);

    connect(&m_form, &Form::Changed, this, &frmCirculation_LoanTest::Reckon);
    connect(cmdRule, &QPushButton::clicked, this, &frmCirculation_LoanTest::ShowRule);
    connect(cmdCopy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_shown.PlainText()); });
    connect(cmdPrint, &QPushButton::clicked, this, &frmCirculation_LoanTest::Print);
    connect(cmdPdf, &QPushButton::clicked, this, &frmCirculation_LoanTest::SavePdf);
    connect(cmdClose, &QPushButton::clicked, this, &frmCirculation_LoanTest::CloseScreen);
    connect(&application.notices, &Notices::SubjectChanged, this, &frmCirculation_LoanTest::Follow);
    auto* reload = new QShortcut(Qt::Key_F5, this);
    reload->setContext(Qt::WidgetWithChildrenShortcut);
    connect(reload, &QShortcut::activated, this, &frmCirculation_LoanTest::Reload);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
}

QWidget* frmCirculation_LoanTest::BuildAnswerSide() {
    auto* side = new QWidget(this);
    auto* lines = new QVBoxLayout(side);
    lines->setContentsMargins(8, 0, 0, 0);
    lblAnswer = new QLabel(side);
    lblAnswer->setObjectName("lblAnswer");
    lblAnswer->setTextFormat(Qt::PlainText);
    lblAnswer->setWordWrap(true);
    QFont large = lblAnswer->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    lblAnswer->setFont(large);
    lines->addWidget(lblAnswer);
    txtAnswer = new QTextBrowser(side);
    txtAnswer->setObjectName("txtAnswer");
    txtAnswer->setAccessibleName(tr("Answer"));
    lines->addWidget(txtAnswer, 1);
    return side;
}

void frmCirculation_LoanTest::LoadScreen() {
    m_form.Begin(QDateTime::currentDateTime());
    Reload();
    // What changed while another screen was in front is read when this one comes back.
    if (auto* window = qobject_cast<QMdiSubWindow*>(parentWidget()))
        connect(window, &QMdiSubWindow::aboutToActivate, this, [this] {
            if (m_isOld)
                QTimer::singleShot(0, this, &frmCirculation_LoanTest::Reload);
        });
}

void frmCirculation_LoanTest::Follow(const QString& subject) {
    if (!DependLoansOn(subject))
        return;
    m_isOld = true;
    // Whoever announces a change may not have read its reply to the end.
    if (App().mainWindow && App().mainWindow->ActiveScreen() == this)
        QTimer::singleShot(0, this, &frmCirculation_LoanTest::Reload);
}

void frmCirculation_LoanTest::Reload() {
    const clsCluster* cluster = App().clusters.Current();
    m_isOld = false;
    m_failed = false;
    m_reader.emplace(App().channel, cluster ? cluster->sClusterID : QString());
    if (const qint16 status = m_reader->ReadGroups(); status != wire::status::Ok)
        Report(status);
    m_reader->SetDecimals(App().profile.MoneyDecimals());
    FillChoices();
    Reckon();
}

void frmCirculation_LoanTest::FillChoices() {
    QList<PickItem> locations;
    for (const loan::Group& group : m_reader->Policy().groups)
        for (const loan::Location& location : group.locations)
            locations.append({QString::number(location.id),
                              location.isDesk ? tr("%1 (c)").arg(location.name) : location.name});
    for (const PickItem& location : m_reader->FreeLocations())
        locations.append({location.id, tr("%1 (in no policy group)").arg(location.text)});
    m_isFilling = true;
    Offer(m_form.cboLocation, locations);
    Offer(m_form.cboPatronGroup, m_reader->PatronGroups());
    Offer(m_form.cboItemType, m_reader->ItemTypes());
    m_isFilling = false;
}

void frmCirculation_LoanTest::Ask(const LoanQuestion& question) {
    QString location = question.location;
    for (const loan::Group& group : m_reader->Policy().groups) {
        if (!location.isEmpty() || QString::number(group.id) != question.policyGroup ||
            group.locations.isEmpty())
            continue;
        const auto desk = std::find_if(group.locations.begin(), group.locations.end(),
                                       [](const loan::Location& candidate) { return candidate.isDesk; });
        location = QString::number((desk == group.locations.end() ? group.locations.begin() : desk)->id);
    }
    const auto choose = [](ChoiceField& field, const QString& id) {
        if (!id.isEmpty())
            field.SetDraft(Kept(field.Items(), id));
    };
    m_isFilling = true;
    choose(m_form.cboLocation, location);
    choose(m_form.cboPatronGroup, question.patronGroup);
    choose(m_form.cboItemType, question.itemType);
    m_isFilling = false;
    Reckon();
}

void frmCirculation_LoanTest::Report(qint16 status) {
    m_failed = true;
    App().ReportRequestFailure(status, "Test a Loan", windowTitle());
}

bool frmCirculation_LoanTest::ReadFor(const loan::Request& request) {
    if (m_failed)
        return false;
    qint16 status = m_reader->ReadDemerits(request.patronGroup);
    const loan::Group* group = GroupOf(request);
    if (status == wire::status::Ok && group)
        status = m_reader->ReadRules(group->id);
    if (status != wire::status::Ok)
        Report(status);
    return !m_failed;
}

void frmCirculation_LoanTest::Reckon() {
    if (!m_reader || m_isFilling)
        return;
    LoanAnswer shown;
    const loan::Request request = m_form.Request();
    if (m_failed)
        shown.headline = tr("The settings could not be read. Press F5 to try again.");
    else if (const auto problem = m_form.FirstProblem())
        shown.headline = problem->text;
    else if (!request.charged.isValid())
        shown.headline = tr("When is it lent? Enter the date of the loan.");
    else if (ReadFor(request))
        shown = Describe(m_reader->Policy(), request, loan::Reckon(m_reader->Policy(), request));
    else
        shown.headline = tr("The settings could not be read. Press F5 to try again.");
    Show(shown);
}

void frmCirculation_LoanTest::Show(const LoanAnswer& answer) {
    const bool isOther = lblAnswer->text() != answer.headline;
    m_shown = answer;
    lblAnswer->setText(answer.headline);
    txtAnswer->setHtml(answer.Html());
    picLoan->Show(answer);
    cmdCopy->setEnabled(!answer.sections.isEmpty());
    cmdPrint->setEnabled(!answer.sections.isEmpty());
    cmdPdf->setEnabled(!answer.sections.isEmpty());
    const loan::Group* group = m_reader ? GroupOf(m_form.Request()) : nullptr;
    const loan::Request request = m_form.Request();
    const bool hasRule =
        group &&
        !PlaceOfRule(App(), *m_reader, *group, request.patronGroup, request.itemType).entry.id.isEmpty();
    ChangeCaption(*cmdRule, hasRule ? tr("Show the &Rule...")
                            : group ? tr("Make a &Rule...")
                                    : tr("Policy Definitio&ns"));
    cmdRule->setEnabled(!m_failed && (hasRule || !group || App().profile.MayEdit(Area::Circulation)));
    if (isOther) { // said without the operator's leaving the field
        QAccessibleEvent said(lblAnswer, QAccessible::Alert);
        QAccessible::updateAccessibility(&said);
    }
}

const loan::Group* frmCirculation_LoanTest::GroupOf(const loan::Request& request) const {
    for (const loan::Group& group : m_reader->Policy().groups)
        for (const loan::Location& location : group.locations)
            if (location.id == request.location)
                return &group;
    return nullptr;
}

void frmCirculation_LoanTest::ShowRule() {
    const loan::Request request = m_form.Request();
    if (const loan::Group* group = GroupOf(request)) {
        if (OpenRule(App(), this,
                     PlaceOfRule(App(), *m_reader, *group, request.patronGroup, request.itemType)))
            Reload();
    } else if (App().mainWindow) {
        App().mainWindow->OpenScreen(PolicyKey); // where the location can be put into a group
    }
}

/// The answer as it goes onto paper.
std::unique_ptr<QTextDocument> frmCirculation_LoanTest::Document() const {
    auto document = std::make_unique<QTextDocument>();
    QPalette paper(QColor(0xf0, 0xf0, 0xf0)); // in whatever appearance the program is
    paper.setColor(QPalette::Base, Qt::white);
    picLoan->setPalette(paper);
    const QPixmap picture = picLoan->grab();
    picLoan->setPalette({});
    document->addResource(QTextDocument::ImageResource, QUrl(PictureName), picture);
    const QString question = m_form.cboLocation.DisplayText() + ", " + m_form.cboPatronGroup.DisplayText() +
                             ", " + m_form.cboItemType.DisplayText();
    document->setHtml("<h2>" + windowTitle().toHtmlEscaped() + "</h2><p>" + question.toHtmlEscaped() +
                      "</p><h3>" + m_shown.headline.toHtmlEscaped() + "</h3><p><img src=\"" + PictureName +
                      "\" width=\"600\"></p>" + m_shown.Html());
    return document;
}

void frmCirculation_LoanTest::Print() {
    const auto document = Document();
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(windowTitle());
    QPrintPreviewDialog preview(&printer, this);
    preview.setObjectName("frmPrintPreview");
    preview.setWindowTitle(tr("Print %1").arg(windowTitle()));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [&document](QPrinter* paper) { document->print(paper); });
    App().prompter.RunDialog(preview);
}

void frmCirculation_LoanTest::SavePdf() {
    const QString fileName = App().prompter.AskSaveFile(this, tr("Save as PDF"), FileNameFor(*this, ".pdf"),
                                                        tr("PDF files (*.pdf)"));
    if (fileName.isEmpty())
        return;
    const auto document = Document();
    QSaveFile file(fileName);
    bool written = file.open(QIODevice::WriteOnly);
    if (written) {
        QPdfWriter writer(&file);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setTitle(windowTitle());
        document->print(&writer);
        written = file.error() == QFileDevice::NoError;
    }
    if (!written || !file.commit())
        Tell(tr("Unable to write %1.").arg(fileName) + ' ' + file.errorString());
}

LoanQuestion QuestionOf(const MatrixGroup& group, const MatrixEntry& entry) {
    return {.cluster = group.clusterId,
            .policyGroup = group.id,
            .patronGroup = entry.patronGroup,
            .itemType = entry.itemType};
}

void OpenLoanTest(Application& application, QWidget* parent, const LoanQuestion& preset) {
    // A dialog that is open locks the screens behind it.
    if (auto* over = parent ? qobject_cast<QDialog*>(parent->window()) : nullptr) {
        QDialog dialog(over);
        dialog.setObjectName("dlgLoanTest");
        dialog.setProperty(HelpContextProperty, LoanTestTopic);
        auto* test = new frmCirculation_LoanTest(application, &dialog);
        dialog.setWindowTitle(test->windowTitle());
        auto* whole = new QVBoxLayout(&dialog);
        whole->addWidget(test);
        dialog.resize(960, 680);
        test->LoadScreen();
        test->Ask(preset);
        application.prompter.RunDialog(dialog);
        return;
    }
    if (!application.mainWindow || !GoToCluster(application, preset.cluster))
        return;
    application.mainWindow->OpenScreen(ScreenKey);
    if (auto* test = qobject_cast<frmCirculation_LoanTest*>(application.mainWindow->FindScreen(ScreenKey)))
        test->Ask(preset);
}

bool DependLoansOn(const QString& subject) {
    return QStringList{"CrcGp",   "CrcGpLoc", "CrcPatronGp", "Mat",   "MulMat", "Cal",
                       "MultCal", "BsCur",    "CrMsc",       "PatGp", "ItmTp",  "Loc"}
        .contains(subject);
}

} // namespace sysadmin

#include "moc_frmCirculation_LoanTest.cpp"
