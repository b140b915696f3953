#include "framework/MaintenanceScreen.h"

#include "core/Application.h"
#include "framework/Captions.h"
#include "framework/RowCount.h"
#include "framework/RowSummary.h"
#include "framework/forms/Rules.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

// How a maintenance screen is put together; what it does is in MaintenanceScreen.cpp.
namespace sysadmin {

namespace {

constexpr int LeastListWidth = 140;
constexpr int RoomAroundForm = 40; // frame, margins and a scroll bar

} // namespace

MaintenanceScreen::MaintenanceScreen(Application& application, const QString& formName,
                                     const QString& caption, Area area, QWidget* parent)
    : FormScreen(application, formName, caption, area, parent) {
    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(16);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(m_splitter);

    m_listSide = new QWidget(m_splitter);
    m_listLayout = new QVBoxLayout(m_listSide);
    m_listLayout->setContentsMargins({});
    m_listButtons = new QHBoxLayout;
    m_cmdNew = MakeButton("cmdNew", tr("&New"));
    m_cmdEdit = MakeButton("cmdEdit", tr("&Edit"));
    m_cmdDelete = MakeButton("cmdDelete", tr("&Delete"));
    for (QPushButton* button : {m_cmdNew, m_cmdEdit, m_cmdDelete})
        m_listButtons->addWidget(button);
    m_listButtons->addStretch();
    m_listLayout->addLayout(m_listButtons);
    m_moreListButtons = new QHBoxLayout;
    m_moreListButtons->addStretch();
    m_listLayout->addLayout(m_moreListButtons);
    m_lblChanged = new QLabel(tr("Changed by others (F5)"), m_listSide);
    m_lblChanged->setObjectName("lblChangedByOthers");
    m_lblChanged->hide();
    m_listLayout->addWidget(m_lblChanged);

    // Where there is more room than a form can be read in, the frame and its buttons stay beside the list.
    auto* editSide = new QWidget(m_splitter);
    auto* editLine = new QHBoxLayout(editSide);
    editLine->setContentsMargins({});
    m_fraEdit = new QGroupBox(editSide);
    m_fraEdit->setObjectName("fraEdit");
    m_fraEdit->setMaximumWidth(ReadableWidth);
    editLine->addWidget(m_fraEdit, 1);
    editLine->addStretch();
    auto* frame = new QVBoxLayout(m_fraEdit);
    m_views = new QStackedLayout;
    frame->addLayout(m_views, 1);
    m_editButtons = new QHBoxLayout;
    m_cmdSave = MakeButton("cmdSave", tr("&Save"));
    m_cmdCancel = MakeButton("cmdCancel", tr("&Cancel"));
    for (QPushButton* button : {m_cmdSave, m_cmdCancel})
        m_editButtons->addWidget(button);
    m_cmdHistory = MakeButton("cmdHistory", tr("&History..."));
    m_cmdHistory->setToolTip(tr("Who changed the record, and when (Ctrl+H)"));
    m_cmdHistory->hide();
    m_editButtons->insertWidget(0, m_cmdHistory);
    auto* lastLine = new QHBoxLayout;
    lastLine->addWidget(MissingLabel(), 1);
    lastLine->addLayout(m_editButtons);
    frame->addLayout(lastLine);
    connect(m_splitter, &QSplitter::splitterMoved, this, [this] {
        m_chosenWidth = m_listSide->width();
        App().prefs.Remember(objectName() + "/ListWidth", m_chosenWidth);
    });

    connect(m_cmdNew, &QPushButton::clicked, this, &MaintenanceScreen::StartNew);
    connect(m_cmdEdit, &QPushButton::clicked, this, &MaintenanceScreen::StartEdit);
    connect(m_cmdDelete, &QPushButton::clicked, this, &MaintenanceScreen::DeleteSelected);
    connect(m_cmdSave, &QPushButton::clicked, this, [this] { Save(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &MaintenanceScreen::EndEdit);
    connect(m_cmdHistory, &QPushButton::clicked, this, [this] { ShowHistory(); });
    auto* reload = new QShortcut(Qt::Key_F5, this);
    reload->setContext(Qt::WidgetWithChildrenShortcut);
    connect(reload, &QShortcut::activated, this, &MaintenanceScreen::ReloadLists);
    connect(&application.notices, &Notices::ChangedByOthers, this, &MaintenanceScreen::OnChangedByOthers);
    connect(&application.notices, &Notices::ChangedByOthers, this, &MaintenanceScreen::MarkOld);
    connect(&application.notices, &Notices::SubjectChanged, this, &MaintenanceScreen::MarkOld);
    BindKey(QKeySequence::Save, m_cmdSave);
    BindEscape(m_cmdCancel, [this] { return HasUnsaved(); });
    auto* find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, this, [this] { Current().grid->FocusFilter(); });
}

void MaintenanceScreen::AddTable(const TableSpec& spec, Form& form, const Layout& layout,
                                 const QList<PutStep>& puts, const FormView::SlotMaker& makeSlot) {
    Table& table = m_tables.emplace_back(Table{{spec, &form, layout, puts}, makeSlot});
    if (spec.copies && !m_cmdDuplicate) {
        m_cmdDuplicate = MakeButton("cmdDuplicate", tr("D&uplicate"));
        AddListButton(m_cmdDuplicate);
        connect(m_cmdDuplicate, &QPushButton::clicked, this, [this] { StartCopy(); });
    }
    if (const OrderSpec& order = spec.order; !order.request.isEmpty()) {
        table.orderButton =
            MakeButton(order.button, order.buttonCaption.isEmpty() ? tr("Set &Rules") : order.buttonCaption);
        AddListButton(table.orderButton);
        connect(table.orderButton, &QPushButton::clicked, this, &MaintenanceScreen::AskOrder);
    }
    if (FlagField* flag = spec.defaultFlag)
        form.When([flag] { return flag->Stored() == u"Y"; }).Disable(*flag);
    if (spec.PlacesCluster())
        table.spec.morePuts.append(
            PutStep([this](RequestChannel&, const SaveContext&) { PutCluster(Current()); }, spec.clusterTag));
}

void MaintenanceScreen::BuildTable(Table& table) {
    const TableSpec& own = table.spec;
    PrepareForm(*table.form);
    table.cellTags = TagsOf(own.columns);
    table.listPage = new QWidget(m_listSide);
    auto* page = new QVBoxLayout(table.listPage);
    page->setContentsMargins({});
    table.grid = new ListGrid(own.gridName, own.columns, table.listPage);
    table.grid->setAccessibleName(own.subject);
    if (own.sorted)
        table.grid->sortByColumn(own.sortColumn, Qt::AscendingOrder);
    table.grid->KeepColumns(App().prefs, objectName() + "/" + own.gridName);
    table.listPage->setMinimumWidth(LeastListWidth);
    if (!own.clusterTag.isEmpty()) {
        m_lblCluster = new QLabel(table.listPage);
        m_lblCluster->setObjectName("lblCircCluster");
        ShowCluster();
        page->addWidget(m_lblCluster);
    }
    page->addWidget(table.grid->FilterBox());
    page->addWidget(table.grid, 1);
    page->addWidget(new RowCount(*table.grid, table.listPage));
    AddListTools(table);
    table.view = MakeView(*table.form, table.layout, m_fraEdit, table.makeSlot);
    table.viewPage = m_views->addWidget(table.view->InScrollArea(m_fraEdit));
    if (own.several.form)
        BuildSeveral(table);

    connect(table.grid, &ListGrid::SelectionMoved, this, &MaintenanceScreen::RefreshButtons);
    const auto clickOn = [this](QPushButton* button) {
        return [button] {
            if (button->isEnabled() && !button->isHidden())
                button->click();
        };
    };
    connect(table.grid, &ListGrid::RowActivated, this, clickOn(m_cmdEdit));
    connect(table.grid, &ListGrid::InsertPressed, this, clickOn(m_cmdNew));
    connect(table.grid, &ListGrid::DeletePressed, this, clickOn(m_cmdDelete));
    connect(table.form, &Form::Changed, this, &MaintenanceScreen::RefreshButtons);
}

void MaintenanceScreen::BuildSeveral(Table& table) {
    const SeveralSpec& spec = table.spec.several;
    PrepareForm(*spec.form);
    spec.form->SetSeveral(!spec.records);
    Layout layout = spec.layout;
    if (layout.children.isEmpty())
        for (Field* field : spec.form->Fields())
            layout.children.append(*field);
    table.severalView = MakeView(*spec.form, layout, m_fraEdit);
    if (!spec.frame.isEmpty())
        table.severalView->setObjectName(spec.frame);
    m_views->addWidget(table.severalView->InScrollArea(m_fraEdit));
    table.grid->SetMultiSelect(true);
    table.severalButton = MakeButton(spec.button, spec.buttonCaption);
    AddListButton(table.severalButton);
    connect(table.severalButton, &QPushButton::clicked, this, &MaintenanceScreen::StartSeveral);
    connect(spec.form, &Form::Changed, this, &MaintenanceScreen::RefreshButtons);
}

void MaintenanceScreen::Finish() {
    for (const Table& table : m_tables)
        m_declaration.tables.append(table);
    Declare();
    m_mayCreate = m_mayEdit = m_mayDelete = App().profile.MayEdit(m_declaration.area);
    for (size_t i = 0; i < m_tables.size(); ++i) {
        static_cast<TableDeclaration&>(m_tables[i]) = m_declaration.tables[qsizetype(i)];
        BuildTable(m_tables[i]);
    }
    if (m_tables.size() == 1) {
        m_listLayout->insertWidget(0, m_tables.front().listPage, 1);
    } else {
        m_tabs = new QTabWidget(m_listSide);
        m_tabs->setObjectName("tabTables");
        m_tabs->setFocusPolicy(Qt::NoFocus); // its bar takes the focus; it would inherit this
        m_tabs->tabBar()->setFocusPolicy(Qt::TabFocus);
        m_tabs->tabBar()->setAccessibleName(tr("Lists"));
        for (Table& table : m_tables) {
            table.listPage->layout()->setContentsMargins(6, 6, 6, 6);
            m_tabs->addTab(table.listPage, table.spec.tabCaption);
        }
        m_listLayout->insertWidget(0, m_tabs, 1);
        connect(m_tabs, &QTabWidget::currentChanged, this, &MaintenanceScreen::ShowTable);
    }
    if (std::all_of(m_tables.begin(), m_tables.end(),
                    [](const Table& t) { return t.spec.deleteRequest.isEmpty(); }))
        m_cmdDelete->hide();
    m_chosenWidth = App().prefs.Remembered(objectName() + "/ListWidth").toInt();
    m_summary = new RowSummary(m_fraEdit);
    m_views->addWidget(m_summary);
    FinishBuilding();
    OrderTabStops();
    ShowTable(0);
}

void MaintenanceScreen::resizeEvent(QResizeEvent* event) {
    FormScreen::resizeEvent(event);
    ShareRoom();
}

// The list gets the width that the operator gave it, or what its contents take, as far as the forms leave it.
void MaintenanceScreen::ShareRoom() {
    int wanted = m_chosenWidth;
    int form = 0;
    int tabs = 0; // with their whole captions
    for (const Table& table : m_tables) {
        if (m_chosenWidth == 0)
            wanted = qMax(wanted, table.grid->WidthOfContents());
        form = qMax(form, table.view->minimumSizeHint().width() + RoomAroundForm);
        for (const QTabBar* bar : table.view->findChildren<QTabBar*>())
            tabs = qMax(tabs, bar->sizeHint().width() + RoomAroundForm);
    }
    const int room = layout()->contentsRect().width() - m_splitter->handleWidth();
    if (m_chosenWidth == 0)
        wanted = qMax(qMin(qMin(wanted, room / 2), room - tabs), qMin(wanted, room / 3));
    wanted = qMax(qMin(wanted, room - form), m_listSide->minimumSizeHint().width());
    m_splitter->setSizes({wanted, qMax(1, room - wanted)});
}

void MaintenanceScreen::AddListButton(QPushButton* button) {
    m_moreListButtons->insertWidget(m_moreListButtons->count() - 1, button);
}

void MaintenanceScreen::AddEditButton(QPushButton* button) {
    m_editButtons->insertWidget(m_editButtons->indexOf(m_cmdSave), button);
}

void MaintenanceScreen::OrderTabStops() {
    QList<QWidget*> order;
    const auto appendButtons = [&order](const QHBoxLayout& layout) {
        for (int i = 0; i < layout.count(); ++i)
            if (QWidget* button = layout.itemAt(i)->widget())
                order.append(button);
    };
    if (m_tabs)
        order.append(m_tabs->tabBar());
    for (const Table& table : m_tables)
        order << table.grid->FilterBox() << table.grid;
    appendButtons(*m_listButtons);
    appendButtons(*m_moreListButtons);
    for (const Table& table : m_tables)
        order.append(table.view->TabOrder() +
                     (table.severalView ? table.severalView->TabOrder() : QList<QWidget*>()));
    appendButtons(*m_editButtons);
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

} // namespace sysadmin
