#include "cataloging/frmCataloging_MARCFieldGroups.h"

#include "cataloging/frmCataloging_MARCFieldSort.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "wire/FieldOrder.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int FieldGroupsTopic = 50451;
constexpr int FirstOfRange = 0;
constexpr int LastOfRange = 1;

/// The box with the digits of a kind of pattern; of a range the first one.
int BoxOf(FieldPattern::Kind kind) {
    switch (kind) {
    case FieldPattern::Kind::Tag:
        return 2;
    case FieldPattern::Kind::TwoDigits:
        return 3;
    case FieldPattern::Kind::OneDigit:
        return 4;
    default:
        return FirstOfRange;
    }
}

} // namespace

frmCataloging_MARCFieldGroups::frmCataloging_MARCFieldGroups(const OrderingRules& catalogue,
                                                             Prompter& prompter, bool isReadOnly,
                                                             QWidget* parent)
    : QDialog(parent)
    , m_catalogue(catalogue)
    , m_prompter(prompter)
    , m_isReadOnly(isReadOnly) {
    setObjectName("frmCataloging_MARCFieldGroups");
    setWindowTitle(tr("MARC Field Groups and Sorting"));
    setProperty(HelpContextProperty, FieldGroupsTopic);
    new QVBoxLayout(this);
    DrawPatterns();
    DrawRules();
    auto* buttons = new QDialogButtonBox(this);
    if (!isReadOnly) {
        cmdSave = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
        cmdSave->setObjectName("cmdSave");
        cmdSave->setDefault(true);
    }
    buttons->addButton(isReadOnly ? tr("&Close") : tr("&Cancel"), QDialogButtonBox::RejectRole)
        ->setObjectName("cmdCancel");
    layout()->addWidget(buttons);
    AssignMnemonics(*this);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmCataloging_MARCFieldGroups::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(760, 520);
}

void frmCataloging_MARCFieldGroups::DrawPatterns() {
    auto* frame = new QGroupBox(tr("Fields"), this);
    frame->setObjectName("fraFields");
    auto* grid = new QGridLayout(frame);
    optTags = new QButtonGroup(this);
    const QStringList captions{tr("Any Field"), tr("NNN - NNN:"), tr("NNN:"), tr("NNx:"), tr("Nxx:")};
    for (int kind = 0; kind < captions.size(); ++kind) {
        auto* option = new QRadioButton(captions[kind], frame);
        option->setObjectName(QString("optTags_%1").arg(kind));
        option->setEnabled(!m_isReadOnly);
        optTags->addButton(option, kind);
        grid->addWidget(option, kind, 0);
    }
    auto* range = new QHBoxLayout;
    txtField = {MakeDigits(FirstOfRange, 3, tr("First tag of the range")),
                MakeDigits(LastOfRange, 3, tr("Last tag of the range")), MakeDigits(2, 3, tr("Tag")),
                MakeDigits(3, 2, tr("First two digits of the tags")),
                MakeDigits(4, 1, tr("First digit of the tags"))};
    range->addWidget(txtField[FirstOfRange]);
    range->addWidget(new QLabel("-", frame));
    range->addWidget(txtField[LastOfRange]);
    range->addStretch();
    grid->addLayout(range, int(FieldPattern::Kind::Range), 1);
    for (int box = 2; box < txtField.size(); ++box)
        grid->addWidget(txtField[box], box, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    layout()->addWidget(frame);
    connect(optTags, &QButtonGroup::idToggled, this, [this](int kind, bool on) {
        if (!on)
            return;
        m_pattern.kind = FieldPattern::Kind(kind);
        TakePattern();
        if (m_pattern.kind != FieldPattern::Kind::Any && isVisible())
            txtField[BoxOf(m_pattern.kind)]->setFocus();
    });
}

QLineEdit* frmCataloging_MARCFieldGroups::MakeDigits(int index, int digits, const QString& accessible) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QString("txtField_%1").arg(index));
    box->setAccessibleName(accessible);
    box->setMaxLength(digits);
    box->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), box));
    box->setFixedWidth(box->fontMetrics().horizontalAdvance("0000000"));
    connect(box, &QLineEdit::textChanged, this, [this, index](const QString& text) {
        if (index == LastOfRange)
            m_pattern.last = text;
        else if (m_pattern.kind != FieldPattern::Kind::Any && index == BoxOf(m_pattern.kind))
            m_pattern.first = text;
        RefreshButtons();
    });
    return box;
}

/// Another kind of pattern: its boxes say the digits.
void frmCataloging_MARCFieldGroups::TakePattern() {
    const bool hasDigits = m_pattern.kind != FieldPattern::Kind::Any;
    for (int box = 0; box < txtField.size(); ++box) {
        const bool isRange = m_pattern.kind == FieldPattern::Kind::Range && box == LastOfRange;
        txtField[box]->setEnabled(!m_isReadOnly && hasDigits && (isRange || box == BoxOf(m_pattern.kind)));
    }
    m_pattern.first = hasDigits ? txtField[BoxOf(m_pattern.kind)]->text() : QString();
    m_pattern.last = txtField[LastOfRange]->text();
    RefreshButtons();
}

ListGrid* frmCataloging_MARCFieldGroups::MakeGrid(const QString& name, const QString& caption) {
    auto* grid = new ListGrid(name, {{caption}}, this);
    grid->setAccessibleName(caption);
    grid->SetSortable(false);
    grid->SetPrompter(m_prompter);
    connect(grid, &ListGrid::SelectionMoved, this, &frmCataloging_MARCFieldGroups::RefreshButtons);
    return grid;
}

QPushButton* frmCataloging_MARCFieldGroups::MakeButton(const QString& name, const QString& caption,
                                                       void (frmCataloging_MARCFieldGroups::*act)()) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, act);
    return button;
}

void frmCataloging_MARCFieldGroups::DrawRules() {
    using This = frmCataloging_MARCFieldGroups;
    auto* lists = new QHBoxLayout;
    vsfAvailable = MakeGrid("vsfAvailable", tr("Available Sort Options"));
    cmdAdd = MakeButton("cmdAdd", tr("&Add >"), &This::Add);
    cmdRemove = MakeButton("cmdRemove", tr("< &Remove"), &This::Remove);
    cmdRemoveAll = MakeButton("cmdRemoveAll", tr("<< Remove A&ll"), &This::RemoveAll);
    vsfSelected = MakeGrid("vsfSelected", tr("Selected Sort Options"));
    vsfSelected->SetRanked();
    vsfSelected->SetEditable(!m_isReadOnly);
    cmdEditParameter = MakeButton("cmdEditParameter", tr("&Parameter..."), &This::EditRule);
    cmdUp = new QPushButton(tr("&Up"), this);
    cmdDown = new QPushButton(tr("&Down"), this);
    const auto column = [&](const QList<QPushButton*>& buttons) {
        auto* below = new QVBoxLayout;
        below->addStretch();
        for (QPushButton* button : buttons)
            below->addWidget(button);
        below->addStretch();
        lists->addLayout(below);
    };
    lists->addWidget(vsfAvailable, 1);
    column({cmdAdd, cmdRemove, cmdRemoveAll});
    lists->addWidget(vsfSelected, 1);
    column({cmdUp, cmdDown, cmdEditParameter});
    static_cast<QVBoxLayout*>(layout())->addLayout(lists, 1);
    const auto step = [this](QPushButton* button, const QString& name, int by) {
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this,
                [this, by] { Move(SelectedPlace(), SelectedPlace() + by); });
    };
    step(cmdUp, "cmdUp", -1);
    step(cmdDown, "cmdDown", 1);
    connect(vsfAvailable, &ListGrid::RowActivated, cmdAdd, &QPushButton::click);
    connect(vsfSelected, &ListGrid::RowActivated, cmdEditParameter, &QPushButton::click);
    connect(vsfSelected, &ListGrid::DeletePressed, cmdRemove, &QPushButton::click);
    connect(vsfSelected, &ListGrid::RowMoved, this,
            [this](const QString&, int to) { Move(SelectedPlace(), to); });
}

void frmCataloging_MARCFieldGroups::SetFieldOrderGroup(const FieldOrderGroup& group) {
    m_group = group;
    const FieldPattern pattern = FieldPattern::Parse(group.match);
    m_pattern.kind = pattern.kind;
    if (pattern.kind != FieldPattern::Kind::Any)
        txtField[BoxOf(pattern.kind)]->setText(pattern.first);
    txtField[LastOfRange]->setText(pattern.last);
    optTags->button(int(pattern.kind))->setChecked(true);
    TakePattern();
    if (pattern.kind != FieldPattern::Kind::Any)
        txtField[BoxOf(pattern.kind)]->setFocus();
    ShowRules();
    for (ListGrid* grid : {vsfAvailable, vsfSelected})
        if (grid->Model().rowCount() > 0)
            grid->SelectKey(grid->Model().RowAt(0).key);
}

void frmCataloging_MARCFieldGroups::ShowRules() {
    QList<GridRow> available;
    for (const OrderingRule& option : m_catalogue.All()) {
        const bool isChosen =
            std::any_of(m_group.rules.begin(), m_group.rules.end(),
                        [&](const FieldOrderRule& rule) { return rule.ruleId == option.id; });
        if (option.repeatable || !isChosen)
            available.append({QString::number(option.id), {option.name}, {}});
    }
    vsfAvailable->ReplaceRows(available);
    QList<GridRow> selected;
    for (const FieldOrderRule& rule : m_group.rules)
        selected.append({rule.Key(), {rule.Text(m_catalogue)}, {}});
    vsfSelected->ReplaceRows(selected);
    RefreshButtons();
}

int frmCataloging_MARCFieldGroups::SelectedPlace() const {
    const QString key = vsfSelected->SelectedKey();
    for (qsizetype i = 0; i < m_group.rules.size(); ++i)
        if (m_group.rules[i].Key() == key)
            return int(i);
    return -1;
}

void frmCataloging_MARCFieldGroups::RefreshButtons() {
    if (!cmdDown)
        return; // still being drawn
    const int place = SelectedPlace();
    const bool mayEdit = !m_isReadOnly;
    const OrderingRule* option = place >= 0 ? m_catalogue.Find(m_group.rules[place].ruleId) : nullptr;
    cmdAdd->setEnabled(mayEdit && vsfAvailable->SelectedRow());
    cmdRemove->setEnabled(mayEdit && place >= 0);
    cmdRemoveAll->setEnabled(mayEdit && !m_group.rules.isEmpty());
    cmdEditParameter->setEnabled(mayEdit && option && option->takesParameter);
    cmdUp->setEnabled(mayEdit && place > 0);
    cmdDown->setEnabled(mayEdit && place >= 0 && place + 1 < m_group.rules.size());
    if (cmdSave)
        cmdSave->setEnabled(m_pattern.IsComplete());
}

QString frmCataloging_MARCFieldGroups::AskParameter(const OrderingRule& option, const QString& shown) {
    frmCataloging_MARCFieldSort dialog(this);
    dialog.Initialize(option, shown);
    m_prompter.RunDialog(dialog);
    return dialog.ParameterValue();
}

void frmCataloging_MARCFieldGroups::Add() {
    const OrderingRule* option = m_catalogue.Find(vsfAvailable->SelectedKey().toInt());
    if (!option)
        return;
    FieldOrderRule rule{.ruleId = option->id, .position = int(m_group.rules.size()) + 1};
    if (option->takesParameter) {
        rule.displayParameter = AskParameter(*option, {});
        if (rule.displayParameter.isEmpty())
            return;
        rule.parameter = StoredParameter(*option, m_pattern.Text(), rule.displayParameter);
    }
    m_group.rules.append(rule);
    ShowRules();
    vsfSelected->SelectKey(rule.Key());
}

void frmCataloging_MARCFieldGroups::EditRule() {
    const int place = SelectedPlace();
    const OrderingRule* option = place >= 0 ? m_catalogue.Find(m_group.rules[place].ruleId) : nullptr;
    if (!option || !option->takesParameter)
        return;
    const QString shown = AskParameter(*option, m_group.rules[place].displayParameter);
    if (shown.isEmpty())
        return;
    m_group.rules[place].displayParameter = shown;
    m_group.rules[place].parameter = StoredParameter(*option, m_pattern.Text(), shown);
    ShowRules();
}

void frmCataloging_MARCFieldGroups::Remove() {
    const int place = SelectedPlace();
    if (place < 0)
        return;
    m_group.rules.removeAt(place);
    m_group.RenumberRules();
    ShowRules();
    if (!m_group.rules.isEmpty())
        vsfSelected->SelectKey(m_group.rules[qMin(qsizetype(place), m_group.rules.size() - 1)].Key());
}

void frmCataloging_MARCFieldGroups::RemoveAll() {
    m_group.rules.clear();
    ShowRules();
}

void frmCataloging_MARCFieldGroups::Move(int from, int to) {
    if (m_isReadOnly || from < 0 || to < 0 || to >= m_group.rules.size())
        return;
    m_group.rules.move(from, to);
    m_group.RenumberRules();
    ShowRules();
    vsfSelected->SelectKey(m_group.rules[to].Key());
}

void frmCataloging_MARCFieldGroups::accept() {
    if (m_isReadOnly || !m_pattern.IsComplete())
        return;
    const QString pattern = m_pattern.Text();
    if (!wire::fieldorder::IsPattern(pattern)) {
        m_prompter.ShowBox(this, {.text = tr("The last tag of the range must not be before the first one.")});
        txtField[LastOfRange]->setFocus();
        return;
    }
    m_group.match = pattern;
    m_group.Retarget(m_catalogue);
    QDialog::accept();
}

} // namespace sysadmin

#include "moc_frmCataloging_MARCFieldGroups.cpp"
