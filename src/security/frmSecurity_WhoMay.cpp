#include "security/frmSecurity_WhoMay.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "framework/ListGrid.h"
#include "framework/RowCount.h"
#include "framework/Utility.h"
#include "security/CompareDialog.h"
#include "wire/Status.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int MarkColumn = 0;
constexpr int HeldColumn = 3;
constexpr int OtherOperatorColumn = 4;
constexpr int RightsWidth = 520;
constexpr int HoldersWidth = 420;

QString NameOf(const PickItem& person) {
    return person.id.isEmpty() ? person.text : QString("%1 (%2)").arg(person.text, person.id);
}

/// The profiles' names, with the places where they hold.
QString NamesOf(const QList<const RightsProfile*>& profiles) {
    QStringList names;
    for (const RightsProfile* profile : profiles)
        names.append(profile->places.isEmpty() ? profile->name
                                               : QString("%1 (%2)").arg(profile->name, profile->places));
    return names.join("; ");
}

} // namespace

frmSecurity_WhoMay::frmSecurity_WhoMay(Application& application, QWidget* parent)
    : FormScreen(application, "frmSecurity_WhoMay", tr("Who May Do This?"), Area::Security, parent) {
    lblSummary = new QLabel(this);
    lblSummary->setObjectName("lblSummary");
    lblSummary->setWordWrap(true);
    tabWhoMay = new QTabWidget(this);
    tabWhoMay->setObjectName("tabWhoMay");
    tabWhoMay->addTab(MakeRightsPage(), tr("&Who May Do This?"));
    tabWhoMay->addTab(MakeOperatorsPage(), tr("What May This &Operator Do?"));
    auto* cmdRead = MakeButton("cmdRead", tr("&Read Again"));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblSummary);
    whole->addWidget(tabWhoMay, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdRead);
    buttons->addWidget(cmdClose);
    whole->addLayout(buttons);

    connect(cmdRead, &QPushButton::clicked, this, &frmSecurity_WhoMay::Read);
    connect(cmdClose, &QPushButton::clicked, this, &frmSecurity_WhoMay::CloseScreen);
    connect(&application.notices, &Notices::SubjectChanged, this, &frmSecurity_WhoMay::OnSubjectChanged);
    BindKey(Qt::Key_F5, cmdRead);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
}

QWidget* frmSecurity_WhoMay::MakeRightsPage() {
    auto* page = new QWidget(this);
    auto* sides = new QSplitter(page);
    sides->setObjectName("splSides");
    sides->setChildrenCollapsible(false);

    vsfRights = new ListGrid("vsfRights",
                             {{.caption = tr("Where"), .width = 150},
                              {.caption = tr("Right")},
                              {.caption = tr("Operators"), .width = 84}},
                             this);
    vsfRights->setAccessibleName(tr("Rights"));
    vsfRights->KeepColumns(App().prefs, objectName() + "Rights");
    auto* left = new QWidget(sides);
    auto* leftLines = new QVBoxLayout(left);
    leftLines->setContentsMargins({});
    leftLines->addWidget(vsfRights->FilterBox());
    leftLines->addWidget(vsfRights, 1);
    leftLines->addWidget(new RowCount(*vsfRights, this));

    lblRight = new QLabel(this);
    lblRight->setObjectName("lblRight");
    lblRight->setTextFormat(Qt::PlainText);
    lblRight->setWordWrap(true);
    lblRight->setMinimumHeight(lblRight->fontMetrics().lineSpacing() * 2); // the list below stays where it is
    vsfHolders = new ListGrid("vsfHolders",
                              {{.caption = tr("Operator"), .width = 190}, {.caption = tr("Through")}}, this);
    vsfHolders->setAccessibleName(tr("Operators with this right"));
    vsfHolders->KeepColumns(App().prefs, objectName() + "Holders");
    auto* cmdOpen = MakeButton("cmdOpen", tr("O&pen the Operator..."));
    auto* cmdProfile = MakeButton("cmdProfile", tr("Open the Pro&file..."));
    auto* right = new QWidget(sides);
    auto* rightLines = new QVBoxLayout(right);
    rightLines->setContentsMargins(8, 0, 0, 0);
    rightLines->addWidget(lblRight);
    rightLines->addWidget(vsfHolders, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(new RowCount(*vsfHolders, this), 1);
    buttons->addWidget(cmdOpen);
    buttons->addWidget(cmdProfile);
    rightLines->addLayout(buttons);

    sides->addWidget(left);
    sides->addWidget(right);
    sides->setStretchFactor(0, 1);
    sides->setStretchFactor(1, 1);
    sides->setSizes({RightsWidth, HoldersWidth});
    auto* whole = new QVBoxLayout(page);
    whole->addWidget(sides);
    InTabOrder({vsfRights->FilterBox(), vsfRights, vsfHolders, cmdOpen, cmdProfile});

    const auto openHolder = [this] { OpenHolder(vsfHolders->SelectedKey()); };
    const auto openProfile = [this] { OpenProfile(vsfRights->SelectedKey(), vsfHolders->SelectedKey()); };
    const auto refresh = [this, cmdOpen, cmdProfile] {
        for (QPushButton* button : {cmdOpen, cmdProfile})
            button->setEnabled(vsfHolders->SelectedRow());
    };
    connect(vsfRights, &ListGrid::SelectionMoved, this, &frmSecurity_WhoMay::ShowHolders);
    connect(vsfHolders, &ListGrid::SelectionMoved, this, refresh);
    connect(vsfHolders, &ListGrid::RowActivated, this, openHolder);
    connect(cmdOpen, &QPushButton::clicked, this, openHolder);
    connect(cmdProfile, &QPushButton::clicked, this, openProfile);
    vsfHolders->SetMenuButtons({cmdOpen, cmdProfile});
    refresh();
    return page;
}

QWidget* frmSecurity_WhoMay::MakeOperatorsPage() {
    auto* page = new QWidget(this);
    const auto makeChoice = [&](const QString& name, const QString& accessible) {
        auto* choice = new QComboBox(page);
        choice->setObjectName(name);
        choice->setAccessibleName(accessible);
        choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        choice->setMinimumContentsLength(24);
        connect(choice, &QComboBox::currentIndexChanged, this, &frmSecurity_WhoMay::ShowOperator);
        return choice;
    };
    cboOperator = makeChoice("cboOperator", tr("Operator"));
    cboOther = makeChoice("cboOther", tr("Compare with"));
    chkOnlyDifferences = new QCheckBox(tr("Only &differences"), page);
    chkOnlyDifferences->setObjectName("chkOnlyDifferences");
    connect(chkOnlyDifferences, &QCheckBox::toggled, this, &frmSecurity_WhoMay::ShowOperator);
    auto* lblOperator = new QLabel(tr("O&perator:"), page);
    lblOperator->setBuddy(cboOperator);
    auto* lblOther = new QLabel(tr("Compare w&ith:"), page);
    lblOther->setBuddy(cboOther);

    vsfHeld = new ListGrid("vsfHeld",
                           {{.caption = QString(DifferenceMark), .width = 36},
                            {.caption = tr("Where"), .width = 180},
                            {.caption = tr("Right"), .width = 220},
                            {.caption = tr("Through")},
                            {.caption = tr("Other"), .width = 220}},
                           this);
    vsfHeld->setAccessibleName(tr("Rights of the operator"));
    lblHeld = new QLabel(page);
    lblHeld->setObjectName("lblHeld");
    auto* cmdHeldProfile = MakeButton("cmdHeldProfile", tr("Open the Pro&file..."));

    auto* whole = new QVBoxLayout(page);
    auto* line = new QHBoxLayout;
    line->addWidget(lblOperator);
    line->addWidget(cboOperator, 1);
    line->addWidget(lblOther);
    line->addWidget(cboOther, 1);
    line->addWidget(chkOnlyDifferences);
    whole->addLayout(line);
    whole->addWidget(vsfHeld->FilterBox());
    whole->addWidget(vsfHeld, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(lblHeld, 1);
    below->addWidget(cmdHeldProfile);
    whole->addLayout(below);
    InTabOrder({cboOperator, cboOther, chkOnlyDifferences, vsfHeld->FilterBox(), vsfHeld, cmdHeldProfile});

    const auto open = [this] {
        const QString person = cboOperator->currentData().toString();
        const QString right = vsfHeld->SelectedKey();
        const KnownRight* known = m_rights.Find(right);
        OpenProfile(right, known && m_rights.WhoHas(*known).contains(person)
                               ? person
                               : cboOther->currentData().toString());
    };
    const auto refresh = [this, cmdHeldProfile] { cmdHeldProfile->setEnabled(vsfHeld->SelectedRow()); };
    connect(vsfHeld, &ListGrid::SelectionMoved, this, refresh);
    connect(vsfHeld, &ListGrid::RowActivated, this, open);
    connect(cmdHeldProfile, &QPushButton::clicked, this, open);
    vsfHeld->SetMenuButtons({cmdHeldProfile});
    refresh();
    return page;
}

void frmSecurity_WhoMay::Read() {
    const QString right = vsfRights->SelectedKey();
    if (const qint16 result = m_rights.Read(App().channel, App().catalogue); result != wire::status::Ok) {
        App().ReportRequestFailure(result, "Load Operators and Profiles", windowTitle());
        lblSummary->setText(tr("The profiles could not be read."));
    } else {
        lblSummary->setText(tr("%L1 operators and %L2 profiles of all modules.")
                                .arg(m_rights.Operators().size())
                                .arg(m_rights.Profiles().size()));
    }
    QList<GridRow> rows;
    for (const KnownRight& known : m_rights.Rights())
        rows.append(
            {known.key, {known.where, known.caption, QString::number(m_rights.WhoHas(known).size())}, {}});
    vsfRights->ReplaceRows(rows);
    if (!vsfRights->SelectKey(right))
        vsfRights->SelectKey(vsfRights->Model().ShownKeys().value(0));
    ShowHolders();
    FillOperators();
}

void frmSecurity_WhoMay::FillOperators() {
    const auto fill = [this](QComboBox& choice, const QList<PickItem>& items) {
        const QSignalBlocker quiet(choice);
        const QVariant chosen = choice.currentData();
        choice.clear();
        for (const PickItem& item : items)
            choice.addItem(NameOf(item), item.id);
        choice.setCurrentIndex(std::max(0, choice.findData(chosen)));
    };
    fill(*cboOperator, m_rights.Operators());
    fill(*cboOther, WithNone(m_rights.Operators(), tr("(Nobody)")));
    ShowOperator();
}

void frmSecurity_WhoMay::ShowHolders() {
    const KnownRight* right = m_rights.Find(vsfRights->SelectedKey());
    QList<GridRow> rows;
    if (right)
        for (const RightHolder& holder : m_rights.HoldersOf(*right))
            rows.append({holder.person.id, {NameOf(holder.person), NamesOf(holder.through)}, {}});
    vsfHolders->ReplaceRows(rows);
    if (!vsfHolders->SelectedRow() && !rows.isEmpty())
        vsfHolders->SelectKey(vsfHolders->Model().ShownKeys().value(0));
    lblRight->setText(!right                      ? QString()
                      : right->sentence.isEmpty() ? right->caption
                                                  : right->caption + ": " + right->sentence);
}

void frmSecurity_WhoMay::ShowOperator() {
    const QString person = cboOperator->currentData().toString();
    const QString other = cboOther->currentData().toString();
    const bool compares = !other.isEmpty();
    QList<GridRow> rows;
    int held = 0;
    int differences = 0;
    for (const KnownRight& right : m_rights.Rights()) {
        const QSet<QString> who = m_rights.WhoHas(right);
        const bool has = who.contains(person);
        const bool otherHas = compares && who.contains(other);
        held += has ? 1 : 0;
        const bool differs = compares && has != otherHas;
        differences += differs ? 1 : 0;
        if ((!has && !otherHas) || (compares && chkOnlyDifferences->isChecked() && !differs))
            continue;
        const auto through = [&](bool hasIt, const QString& id) {
            return hasIt ? NamesOf(m_rights.Through(right, id)) : tr("No");
        };
        rows.append({right.key,
                     {differs ? QString(DifferenceMark) : QString(), right.where, right.caption,
                      through(has, person), compares ? through(otherHas, other) : QString()},
                     {}});
    }
    chkOnlyDifferences->setEnabled(compares);
    vsfHeld->setColumnHidden(MarkColumn, !compares);
    vsfHeld->setColumnHidden(OtherOperatorColumn, !compares);
    vsfHeld->Model().SetCaption(HeldColumn, compares ? cboOperator->currentText() : tr("Through"));
    vsfHeld->Model().SetCaption(OtherOperatorColumn, cboOther->currentText());
    vsfHeld->ReplaceRows(rows);
    if (!vsfHeld->SelectedRow() && !rows.isEmpty())
        vsfHeld->SelectKey(vsfHeld->Model().ShownKeys().value(0));
    lblHeld->setText(!compares          ? tr("%L1 rights.").arg(held)
                     : differences == 0 ? tr("There is no difference.")
                     : differences == 1 ? tr("1 difference.")
                                        : tr("%1 differences.").arg(differences));
}

void frmSecurity_WhoMay::OpenHolder(const QString& operatorId) {
    if (App().mainWindow && !operatorId.isEmpty())
        App().mainWindow->GoToRecord("Opr", operatorId, operatorId);
}

void frmSecurity_WhoMay::OpenProfile(const QString& rightKey, const QString& operatorId) {
    const KnownRight* right = m_rights.Find(rightKey);
    if (!right || !App().mainWindow)
        return;
    const QList<const RightsProfile*> through = m_rights.Through(*right, operatorId);
    if (through.isEmpty())
        return;
    const RightsProfile& profile = *through.first();
    const SubjectPlace* place = App().mainWindow->PlaceOf(profile.word);
    const QString tag = rightKey.section(' ', 1, 1);
    App().mainWindow->GoToRecord(profile.word, profile.id, profile.name,
                                 place ? place->fields.value(tag).control : QString());
}

void frmSecurity_WhoMay::OnSubjectChanged(const QString& subject) {
    const auto isRead = [&](const RightsProfile& profile) { return profile.word == subject; };
    if (subject == "Opr" || std::any_of(m_rights.Profiles().begin(), m_rights.Profiles().end(), isRead))
        lblSummary->setText(tr("Operators or profiles have changed since. Read again (F5)."));
}

} // namespace sysadmin

#include "moc_frmSecurity_WhoMay.cpp"
