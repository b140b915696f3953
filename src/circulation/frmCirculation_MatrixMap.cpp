#include "circulation/frmCirculation_MatrixMap.h"

#include "circulation/LoanQuestion.h"
#include "circulation/MatrixDialog.h"
#include "circulation/MatrixLegend.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/forms/ReadList.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

namespace sysadmin {

frmCirculation_MatrixMap::frmCirculation_MatrixMap(Application& application, const MatrixGroup& group,
                                                   QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint)
    , m_application(application)
    , m_group(group) {
    setObjectName("frmCirculation_MatrixMap");
    setWindowTitle(tr("Map of the Circulation Policy Matrix - %1").arg(group.name));
    setProperty(HelpContextProperty, 50535);
    setSizeGripEnabled(true);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(MakeTools());
    whole->addWidget(MakeMaps(), 1);
    m_words = new QLabel(this);
    m_words->setObjectName("lblCell");
    m_words->setWordWrap(true);
    m_words->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_words->setFixedHeight(m_words->fontMetrics().height() * 2 + 4);
    m_words->setTextFormat(Qt::PlainText);
    whole->addWidget(m_words);
    m_legend = new MatrixLegend(this);
    whole->addWidget(m_legend);
    whole->addWidget(MakeButtons());
    AssignMnemonics(*this);
    const QFontMetrics metrics(font());
    resize(QSize(metrics.averageCharWidth() * 190, metrics.height() * 42)
               .boundedTo(screen()->availableSize() - QSize(40, 60)));
    m_map->setFocus();
}

frmCirculation_MatrixMap::~frmCirculation_MatrixMap() = default;

QWidget* frmCirculation_MatrixMap::MakeTools() {
    auto* tools = new QWidget(this);
    auto* line = new QHBoxLayout(tools);
    line->setContentsMargins({});
    const auto add = [&](const QString& caption, const QString& name) {
        auto* box = new QComboBox(tools);
        box->setObjectName(name);
        auto* label = new QLabel(caption, tools);
        SetDeclaredCaption(*label, caption);
        label->setBuddy(box);
        line->addWidget(label);
        line->addWidget(box);
        return box;
    };
    m_measure = add(tr("Colour by:"), "cboMeasure");
    m_measure->addItem(tr("Loan Period"), int(MatrixMeasure::LoanPeriod));
    m_measure->addItem(tr("Fine"), int(MatrixMeasure::Fine));
    m_measure->addItem(tr("Renewals"), int(MatrixMeasure::Renewals));
    m_compare = add(tr("Compare with:"), "cboCompare");
    m_compare->addItem(tr("(none)"));
    m_compare->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_compare->setMinimumContentsLength(24);
    line->addStretch();
    connect(m_measure, &QComboBox::currentIndexChanged, this, &frmCirculation_MatrixMap::ShowMaps);
    connect(m_compare, &QComboBox::activated, this, &frmCirculation_MatrixMap::Compare);
    return tools;
}

QWidget* frmCirculation_MatrixMap::MakeMaps() {
    m_sides = new QSplitter(Qt::Horizontal, this);
    m_sides->setChildrenCollapsible(false);
    const auto add = [&](const QString& name, QLabel*& label, QWidget*& side) {
        side = new QWidget(m_sides);
        auto* column = new QVBoxLayout(side);
        column->setContentsMargins({});
        label = new QLabel(side);
        label->setTextFormat(Qt::PlainText);
        auto* map = new MatrixMap(name, side);
        column->addWidget(label);
        column->addWidget(map, 1);
        return map;
    };
    QWidget* side = nullptr;
    m_map = add("picMatrix", m_name, side);
    m_otherMap = add("picMatrixCompared", m_otherName, m_otherSide);
    m_otherMap->SetShowsRowNames(false);
    m_otherSide->hide();
    for (auto [map, other] : {std::pair(m_map, m_otherMap), std::pair(m_otherMap, m_map)}) {
        connect(map, &MatrixMap::CurrentChanged, this, [this, map](QPoint cell) { Explain(*map, cell); });
        connect(map, &MatrixMap::Hovered, this, [this, map](QPoint cell) { Explain(*map, cell); });
        connect(map, &MatrixMap::CurrentChanged, other, &MatrixMap::SetCurrentCell);
        for (const auto bar :
             {&QAbstractScrollArea::horizontalScrollBar, &QAbstractScrollArea::verticalScrollBar})
            connect((map->*bar)(), &QScrollBar::valueChanged, this, [this, map, other] {
                if (m_isFollowing || !m_other)
                    return;
                const QScopedValueRollback following(m_isFollowing, true);
                other->ScrollLike(*map);
            });
    }
    connect(m_map, &MatrixMap::SelectionChanged, this, &frmCirculation_MatrixMap::RefreshButtons);
    connect(m_map, &MatrixMap::Chosen, this, [this](QPoint cell) { Choose(m_picture, cell); });
    connect(m_otherMap, &MatrixMap::Chosen, this, [this](QPoint cell) {
        if (m_other)
            Choose(*m_other, cell);
    });
    return m_sides;
}

QWidget* frmCirculation_MatrixMap::MakeButtons() {
    auto* buttons = new QDialogButtonBox(this);
    const auto add = [&](const QString& name, const QString& caption, QDialogButtonBox::ButtonRole role) {
        QPushButton* button = buttons->addButton(caption, role);
        button->setObjectName(name);
        button->setAutoDefault(false); // Enter belongs to the cell
        return button;
    };
    m_cmdAdd = add("cmdAddMatrix", tr("&Add..."), QDialogButtonBox::ActionRole);
    m_cmdModifyMultiple =
        add("cmdModifyMultipleMatrix", tr("Modi&fy Multiple..."), QDialogButtonBox::ActionRole);
    m_cmdTestLoan = add("cmdTestLoan", tr("Test a &Loan..."), QDialogButtonBox::ActionRole);
    connect(m_cmdTestLoan, &QPushButton::clicked, this, [this] {
        OpenLoanTest(m_application, this, QuestionOf(m_group, m_picture.EntryAt(m_map->CurrentCell())));
    });
    add("cmdClose", tr("&Close"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_cmdAdd, &QPushButton::clicked, this, &frmCirculation_MatrixMap::Add);
    connect(m_cmdModifyMultiple, &QPushButton::clicked, this, &frmCirculation_MatrixMap::ModifyMultiple);
    return buttons;
}

bool frmCirculation_MatrixMap::Load() {
    if (!m_picture.Read(m_application, m_group))
        return false;
    m_group.shortLoans = m_picture.Group().shortLoans;
    if (m_compare->count() == 1)
        OfferGroups();
    ShowMaps();
    return true;
}

void frmCirculation_MatrixMap::OfferGroups() {
    ReadList(m_application.channel,
             {.request = "LstCrcGp",
              .putKey = [this](RequestChannel& channel) { channel.PutField("CID", m_group.clusterId); },
              .report =
                  [this](qint16 status) {
                      m_application.ReportRequestFailure(status, "Load Circulation Policy Defintions",
                                                         "Circulation Policy Matrix");
                  }},
             {{"ID", [this](RequestChannel& channel) {
                   if (const QString id = channel.GetField("ID"); id != m_group.id)
                       m_compare->addItem(channel.GetField("Nm"), id);
               }}});
}

void frmCirculation_MatrixMap::Compare() {
    const QString id = m_compare->currentData().toString();
    m_otherMap->SetPictures(nullptr, nullptr);
    m_map->SetPictures(&m_picture, nullptr);
    m_other.reset();
    if (!id.isEmpty()) {
        auto other = std::make_unique<MatrixPicture>();
        if (other->Read(m_application, {id, m_compare->currentText(), m_group.clusterId, m_group.mayEdit},
                        &m_picture))
            m_other = std::move(other);
        else
            m_compare->setCurrentIndex(0);
    }
    ShowMaps();
}

void frmCirculation_MatrixMap::ShowMaps() {
    const auto measure = MatrixMeasure(m_measure->currentData().toInt());
    if (m_otherSide->isHidden() == (m_other != nullptr)) {
        m_otherSide->setVisible(m_other != nullptr);
        const int half = (m_sides->width() - m_map->RowNamesWidth()) / 2; // as much for the cells of each
        m_sides->setSizes({half + m_map->RowNamesWidth(), half});
    }
    m_map->SetMeasure(measure);
    m_otherMap->SetMeasure(measure);
    m_map->SetPictures(&m_picture, m_other.get());
    m_otherMap->SetPictures(m_other.get(), &m_picture);
    m_name->setText(m_group.name);
    m_name->setVisible(m_other != nullptr);
    m_map->setAccessibleName(tr("Map of the matrix of %1").arg(m_group.name));
    if (m_other) {
        m_otherName->setText(m_other->Group().name);
        m_otherMap->setAccessibleName(tr("Map of the matrix of %1").arg(m_other->Group().name));
    }
    m_legend->SetMeasure(measure, m_other != nullptr);
    Explain(*m_map, m_map->CurrentCell());
    RefreshButtons();
}

void frmCirculation_MatrixMap::Explain(const MatrixMap& map, MatrixPicture::Cell cell) {
    m_words->setText(map.InWords(cell));
}

void frmCirculation_MatrixMap::RefreshButtons() {
    bool hasRule = false;
    bool lacksRule = false;
    for (const MatrixPicture::Cell cell : m_map->SelectedCells())
        (m_picture.At(cell).id.isEmpty() ? lacksRule : hasRule) = true;
    m_cmdAdd->setEnabled(m_group.mayEdit && lacksRule);
    m_cmdModifyMultiple->setEnabled(m_group.mayEdit && hasRule);
    m_cmdTestLoan->setEnabled(m_map->SelectedCells().size() == 1);
}

void frmCirculation_MatrixMap::Choose(const MatrixPicture& picture, MatrixPicture::Cell cell) {
    const MatrixEntry entry = picture.EntryAt(cell);
    const MatrixGroup group = picture.Group();
    const MatrixKind kind = picture.IsShortLoan(cell.x()) ? MatrixKind::ShortLoan : MatrixKind::Regular;
    const bool isNew = entry.id.isEmpty();
    if (isNew && !group.mayEdit)
        return;
    if (isNew ? AddMatrixEntries(m_application, this, group, kind, {entry})
              : ModifyMatrixEntry(m_application, this, group, entry, kind))
        Reload();
}

void frmCirculation_MatrixMap::Add() {
    QList<MatrixEntry> pairs;
    MatrixKind kind = MatrixKind::Regular;
    for (const MatrixPicture::Cell cell : m_map->SelectedCells())
        if (m_picture.At(cell).id.isEmpty()) {
            pairs.append(m_picture.EntryAt(cell));
            kind = m_picture.IsShortLoan(cell.x()) ? MatrixKind::ShortLoan : MatrixKind::Regular;
        }
    if (AddMatrixEntries(m_application, this, m_group, kind, pairs))
        Reload();
}

void frmCirculation_MatrixMap::ModifyMultiple() {
    QList<MatrixEntry> entries;
    QSet<bool> isShort;
    for (const MatrixPicture::Cell cell : m_map->SelectedCells())
        if (!m_picture.At(cell).id.isEmpty()) {
            entries.append(m_picture.EntryAt(cell));
            isShort.insert(m_picture.IsShortLoan(cell.x()));
        }
    if (isShort.size() > 1) {
        m_application.prompter.ShowBox(
            this, {.text = tr("Short loan item types may not be mixed with regular item types.")});
        return;
    }
    const MatrixKind kind = isShort.contains(true) ? MatrixKind::ShortLoan : MatrixKind::Regular;
    if (ModifyMatrixEntries(m_application, this, m_group, entries, kind))
        Reload();
}

void frmCirculation_MatrixMap::Reload() {
    m_isChanged = true;
    if (!m_picture.Read(m_application, m_group))
        return;
    if (m_other)
        m_other->Read(m_application, m_other->Group(), &m_picture);
    ShowMaps();
}

} // namespace sysadmin

#include "moc_frmCirculation_MatrixMap.cpp"
