#include "security/frmTools_CompareConfigurations.h"

#include "core/Application.h"
#include "framework/Utility.h"
#include "security/ConfigurationWords.h"
#include "security/CopyPreview.h"
#include "security/DifferenceModel.h"
#include "wire/Status.h"

#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeView>
#include <QVBoxLayout>

namespace sysadmin {

frmTools_CompareConfigurations::frmTools_CompareConfigurations(Application& application, QWidget* parent)
    : FormScreen(application, "frmTools_CompareConfigurations", tr("Compare Configurations"), Area::Security,
                 parent)
    , m_model(new DifferenceModel(this)) {
    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setWordWrap(true);
    lblCounts = new QLabel(this);
    lblCounts->setObjectName("lblCounts");
    lblCounts->setTextFormat(Qt::PlainText);
    cboDirection = new QComboBox(this);
    cboDirection->setObjectName("cboDirection");
    cboDirection->setAccessibleName(tr("Direction of the copy"));
    cboKinds = new QComboBox(this);
    cboKinds->setObjectName("cboKinds");
    cboKinds->setAccessibleName(tr("Which differences are shown"));
    cboKinds->addItem(tr("All differences"), "ACR");
    cboKinds->addItem(tr("Added"), "A");
    cboKinds->addItem(tr("Changed"), "C");
    cboKinds->addItem(tr("Removed"), "R");
    txtFilter = new QLineEdit(this);
    txtFilter->setObjectName("txtFilter");
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setAccessibleName(tr("Filter"));
    txtFilter->setClearButtonEnabled(true);
    cmdFolder = MakeButton("cmdFolder", tr("Compare with Fol&der..."));
    cmdLibrary = MakeButton("cmdLibrary", tr("Compare with &Library..."));
    cmdExport = MakeButton("cmdExport", tr("&Export to Folder..."));
    cmdAll = MakeButton("cmdAll", tr("Choose &All"));
    cmdNone = MakeButton("cmdNone", tr("Choose &None"));
    cmdExpand = MakeButton("cmdExpand", tr("E&xpand All"));
    cmdCompare = MakeButton("cmdCompare", tr("Compare A&gain"));
    cmdCopy = MakeButton("cmdCopy", tr("Co&py..."));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));
    BuildTree();

    auto* whole = new QVBoxLayout(this);
    auto* sources = new QHBoxLayout;
    for (QPushButton* button : {cmdFolder, cmdLibrary, cmdExport})
        sources->addWidget(button);
    sources->addStretch(1);
    sources->addWidget(cboDirection);
    whole->addLayout(sources);
    whole->addWidget(lblSummary);
    auto* filters = new QHBoxLayout;
    filters->addWidget(txtFilter, 1);
    filters->addWidget(cboKinds);
    for (QPushButton* button : {cmdAll, cmdNone, cmdExpand})
        filters->addWidget(button);
    whole->addLayout(filters);
    whole->addWidget(tvwDifferences, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(lblCounts, 1);
    for (QPushButton* button : {cmdCompare, cmdCopy, cmdClose})
        buttons->addWidget(button);
    whole->addLayout(buttons);
    InTabOrder({cmdFolder, cmdLibrary, cmdExport, cboDirection, txtFilter, cboKinds, cmdAll, cmdNone,
                cmdExpand, tvwDifferences, cmdCompare, cmdCopy, cmdClose});

    connect(cmdFolder, &QPushButton::clicked, this, &frmTools_CompareConfigurations::CompareWithFolder);
    connect(cmdLibrary, &QPushButton::clicked, this, &frmTools_CompareConfigurations::CompareWithLibrary);
    connect(cmdExport, &QPushButton::clicked, this, &frmTools_CompareConfigurations::ExportToFolder);
    connect(cmdCompare, &QPushButton::clicked, this, &frmTools_CompareConfigurations::CompareAgain);
    connect(cmdCopy, &QPushButton::clicked, this, &frmTools_CompareConfigurations::Copy);
    connect(cmdClose, &QPushButton::clicked, this, &frmTools_CompareConfigurations::CloseScreen);
    connect(cmdAll, &QPushButton::clicked, this, [this] { m_model->ChooseShown(true); });
    connect(cmdNone, &QPushButton::clicked, this, [this] { m_model->ChooseShown(false); });
    connect(cmdExpand, &QPushButton::clicked, tvwDifferences, &QTreeView::expandAll);
    connect(cboDirection, &QComboBox::activated, this, &frmTools_CompareConfigurations::CompareAgain);
    connect(cboKinds, &QComboBox::currentIndexChanged, this, &frmTools_CompareConfigurations::ApplyFilter);
    connect(txtFilter, &QLineEdit::textChanged, this, &frmTools_CompareConfigurations::ApplyFilter);
    connect(m_model, &DifferenceModel::ChoiceChanged, this, &frmTools_CompareConfigurations::ShowCounts);
    connect(&application.notices, &Notices::SubjectChanged, this,
            &frmTools_CompareConfigurations::OnSubjectChanged);
    BindKey(Qt::Key_F5, cmdCompare);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
    Forget();
}

frmTools_CompareConfigurations::~frmTools_CompareConfigurations() = default;

void frmTools_CompareConfigurations::BuildTree() {
    tvwDifferences = new QTreeView(this);
    tvwDifferences->setObjectName("tvwDifferences");
    tvwDifferences->setAccessibleName(tr("Differences"));
    tvwDifferences->setModel(m_model);
    tvwDifferences->setUniformRowHeights(true); // long lists stay quick
    tvwDifferences->setAllColumnsShowFocus(true);
    tvwDifferences->setSelectionBehavior(QAbstractItemView::SelectRows);
    tvwDifferences->header()->setStretchLastSection(true);
    tvwDifferences->setColumnWidth(DifferenceModel::Name, 420);
    tvwDifferences->setColumnWidth(DifferenceModel::Before, 300);
}

void frmTools_CompareConfigurations::LoadScreen() {
    Forget();
}

bool frmTools_CompareConfigurations::IntoOther() const {
    return m_with == With::Library && cboDirection->currentIndex() == 1;
}

ConfigurationServer frmTools_CompareConfigurations::Own() {
    const QString name = App().comm.LibraryName();
    return {App(), App().channel, name.isEmpty() ? tr("this library") : name};
}

/// The one that is compared with the source's files, and into which they are copied.
ConfigurationServer frmTools_CompareConfigurations::Target() {
    return IntoOther() ? ConfigurationServer(App(), m_other->GetChannel(), m_other->LibraryName()) : Own();
}

QString frmTools_CompareConfigurations::SourceName() const {
    if (m_with == With::Folder)
        return QDir::toNativeSeparators(m_folder);
    return IntoOther() ? App().comm.LibraryName() : m_other->LibraryName();
}

void frmTools_CompareConfigurations::Forget() {
    m_with = With::Nothing;
    m_other.reset();
    m_files.clear();
    lblSummary->setText(tr("Compare this library's settings with a folder of files, or with another library, "
                           "and copy what you choose."));
    ShowFound({});
}

void frmTools_CompareConfigurations::CompareWithFolder() {
    const QString folder = App().prompter.AskFolder(this, tr("Folder with Files of Settings"), m_folder);
    if (folder.isEmpty())
        return;
    m_other.reset();
    m_with = With::Folder;
    m_folder = folder;
    CompareAgain();
}

void frmTools_CompareConfigurations::CompareWithLibrary() {
    std::unique_ptr<Communication> other = App().comm.SignOnElsewhere(this);
    if (!other)
        return;
    m_other = std::move(other);
    m_with = With::Library;
    const QSignalBlocker blocker(cboDirection);
    cboDirection->clear();
    cboDirection->addItem(tr("Copy from %1 into this library").arg(m_other->LibraryName()));
    cboDirection->addItem(tr("Copy from this library into %1").arg(m_other->LibraryName()));
    CompareAgain();
}

void frmTools_CompareConfigurations::ExportToFolder() {
    const QString folder = App().prompter.AskFolder(this, tr("Folder for Files of Settings"), m_folder);
    if (folder.isEmpty())
        return;
    const std::optional<ConfigurationFiles> files = Own().Export(this);
    if (!files)
        return;
    const QString problem = WriteConfiguration(*files, folder);
    if (!problem.isEmpty())
        Tell(tr("The settings could not be written.\r\n\r\n%1").arg(problem));
    else
        App().prompter.ShowBox(this, {.text = tr("The settings are in %1: %L2 files.")
                                                  .arg(QDir::toNativeSeparators(folder))
                                                  .arg(files->size()),
                                      .icon = Box::Icon::Information});
}

void frmTools_CompareConfigurations::CompareAgain() {
    std::optional<ConfigurationFiles> files;
    if (m_with == With::Folder) {
        QString problem;
        files = ReadConfiguration(m_folder, problem);
        if (!files)
            Tell(problem);
    } else if (IntoOther()) {
        files = Own().Export(this);
    } else if (m_with == With::Library) {
        files = ConfigurationServer(App(), m_other->GetChannel(), m_other->LibraryName()).Export(this);
    }
    if (!files) {
        Forget();
        return;
    }
    m_files = *files;
    Compare();
}

void frmTools_CompareConfigurations::Compare() {
    ConfigurationServer target = Target();
    const std::optional<ConfigurationDifferences> found = target.Compare(this, m_files);
    if (!found) {
        Forget();
        return;
    }
    QStringList sentences;
    if (found->differences.isEmpty() && found->problems.isEmpty())
        sentences << tr("%1 and %2 have the same settings.").arg(target.Library(), SourceName());
    else if (!found->differences.isEmpty())
        sentences
            << tr("Choose what is copied from %1 into %2. Each record is shown as what a copy does to it.")
                   .arg(SourceName(), target.Library());
    if (!found->problems.isEmpty()) {
        const ConfigurationWords words(App(), found->tables);
        sentences << tr("Something is wrong with what is compared: %1: %2")
                         .arg(words.PlaceOf(found->problems.first(), found->differences),
                              found->problems.first().text);
        if (found->problems.size() > 1)
            sentences.last() += ' ' + tr("(%L1 more)").arg(found->problems.size() - 1);
    }
    if (!found->leftOut.isEmpty())
        sentences << tr("Left out, as they hold no settings: %1.").arg(found->leftOut.join(", "));
    if (found->notSeen > 0)
        sentences << tr("%L1 kinds of settings are left out, which you may not view.").arg(found->notSeen);
    lblSummary->setText(sentences.join('\n'));
    ShowFound(*found);
}

void frmTools_CompareConfigurations::ShowFound(const ConfigurationDifferences& found) {
    m_found = found;
    const bool isShown = m_with != With::Nothing;
    m_model->Show(found, ConfigurationWords(App(), found.tables),
                  isShown ? Target().Library() : tr("This library"), isShown ? SourceName() : tr("Files"));
    int kinds[3] = {0, 0, 0};
    for (const ConfigurationDifference& difference : found.differences)
        ++kinds[difference.kind == u'A' ? 0 : difference.kind == u'C' ? 1 : 2];
    m_sum = isShown ? tr("%L1 differences: %L2 added, %L3 changed, %L4 removed")
                          .arg(found.differences.size())
                          .arg(kinds[0])
                          .arg(kinds[1])
                          .arg(kinds[2])
                    : QString();
    cboDirection->setVisible(m_with == With::Library);
    if (!txtFilter->text().isEmpty() || cboKinds->currentIndex() > 0)
        ApplyFilter();
    // A few records are seen at once; of many, first which settings differ.
    constexpr qsizetype Few = 30;
    if (found.differences.size() <= Few)
        tvwDifferences->expandAll();
    else
        tvwDifferences->collapseAll();
    ShowCounts();
}

void frmTools_CompareConfigurations::ApplyFilter() {
    m_model->Filter(txtFilter->text(), cboKinds->currentData().toString());
    constexpr qsizetype Few = 200;
    if (!txtFilter->text().isEmpty() && m_model->ShownCount() <= Few)
        tvwDifferences->expandAll();
}

void frmTools_CompareConfigurations::ShowCounts() {
    const qsizetype chosen = m_model->ChosenCount();
    QStringList counts;
    if (!m_sum.isEmpty())
        counts << m_sum;
    if (m_model->ShownCount() < m_found.differences.size())
        counts << tr("%L1 shown").arg(m_model->ShownCount());
    if (chosen > 0)
        counts << tr("%L1 chosen").arg(chosen);
    lblCounts->setText(counts.join(", "));
    const bool any = !m_found.differences.isEmpty();
    for (QPushButton* button : {cmdAll, cmdNone, cmdExpand})
        button->setEnabled(any);
    cmdCompare->setEnabled(m_with != With::Nothing);
    cmdCopy->setEnabled(chosen > 0 && (IntoOther() || App().profile.MayEdit(Area::Security)));
}

void frmTools_CompareConfigurations::OnSubjectChanged(const QString&) {
    if (m_with != With::Nothing && !m_copying)
        lblSummary->setText(tr("The settings have changed since this comparison. Compare again (F5)."));
}

/// The files of what differs: all others stay as they are.
ConfigurationFiles frmTools_CompareConfigurations::NeededFiles() const {
    ConfigurationFiles files;
    for (auto file = m_files.begin(); file != m_files.end(); ++file)
        if (m_found.Has(file.key()))
            files.insert(file.key(), *file);
    return files;
}

void frmTools_CompareConfigurations::Copy() {
    const QList<ConfigurationKey> chosen = m_model->Chosen();
    const ConfigurationFiles files = NeededFiles();
    ConfigurationServer target = Target();
    const std::optional<ConfigurationDifferences> plan = target.Try(this, files, chosen);
    if (!plan || !ShowCopyPreview(App(), this, *plan, SourceName(), target.Library()))
        return;
    QStringList words;
    const qint16 result = target.Copy(files, chosen, plan->digest, words);
    if (result == wire::status::RecordChanged) {
        Tell(tr(
            "Nothing was copied: the settings have changed since the preview. What differs now is shown."));
    } else if (result != wire::status::Ok) {
        App().ReportRequestFailure(result, tr("Copy Configurations"), target.Library());
        return;
    }
    m_copying = true;
    if (!IntoOther())
        for (const QString& word : words)
            Announce(word);
    m_copying = false;
    CompareAgain();
}

} // namespace sysadmin

#include "moc_frmTools_CompareConfigurations.cpp"
