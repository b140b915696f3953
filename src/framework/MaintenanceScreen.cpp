#include "framework/MaintenanceScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

MaintenanceScreen::MaintenanceScreen(Application& application, const QString& formName,
                                     const QString& caption, Area area, QWidget* parent)
    : FormScreen(application, formName, caption, parent) {
    m_mayCreate = m_mayEdit = m_mayDelete = application.profile.MayEdit(area);

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(16);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(splitter);

    m_listSide = new QWidget(splitter);
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

    m_fraEdit = new QGroupBox(splitter);
    m_fraEdit->setObjectName("fraEdit");
    auto* frame = new QVBoxLayout(m_fraEdit);
    m_views = new QStackedLayout;
    frame->addLayout(m_views, 1);
    m_editButtons = new QHBoxLayout;
    m_editButtons->addStretch();
    m_cmdSave = MakeButton("cmdSave", tr("&Save"));
    m_cmdCancel = MakeButton("cmdCancel", tr("&Cancel"));
    for (QPushButton* button : {m_cmdSave, m_cmdCancel})
        m_editButtons->addWidget(button);
    frame->addLayout(m_editButtons);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);

    connect(m_cmdNew, &QPushButton::clicked, this, &MaintenanceScreen::StartNew);
    connect(m_cmdEdit, &QPushButton::clicked, this, &MaintenanceScreen::StartEdit);
    connect(m_cmdDelete, &QPushButton::clicked, this, &MaintenanceScreen::DeleteSelected);
    connect(m_cmdSave, &QPushButton::clicked, this, [this] { Save(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &MaintenanceScreen::EndEdit);
    BindKey(QKeySequence::Save, m_cmdSave);
    BindKey(Qt::Key_Escape, m_cmdCancel);
    auto* find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, this, [this] { Current().grid->FocusFilter(); });
}

void MaintenanceScreen::AddTable(const TableSpec& spec, Form& form, const Layout& layout,
                                 const QList<PutStep>& puts, const FormView::SlotMaker& makeSlot) {
    Table& table = m_tables.emplace_back(Table{spec, &form, puts});
    TableSpec& own = table.spec;
    if (own.frameNoun.isEmpty())
        own.frameNoun = own.subject;
    if (own.keyTag.isEmpty())
        own.keyTag = own.recordTag;
    if (own.getKeyTag.isEmpty())
        own.getKeyTag = own.keyTag;

    PrepareForm(form);
    table.listPage = new QWidget(m_listSide);
    auto* page = new QVBoxLayout(table.listPage);
    page->setContentsMargins({});
    table.grid = new ListGrid(own.gridName, own.columns, table.listPage);
    table.grid->setAccessibleName(own.subject);
    if (own.sorted)
        table.grid->sortByColumn(0, Qt::AscendingOrder);
    // Columns of a fixed width leave the others enough room to be read.
    int listWidth = 180;
    for (const GridColumn& column : own.columns)
        listWidth += column.hidden ? 0 : column.width;
    table.listPage->setMinimumWidth(listWidth);
    page->addWidget(table.grid->FilterBox());
    page->addWidget(table.grid, 1);
    table.view = new FormView(form, layout, m_fraEdit, makeSlot);
    m_views->addWidget(table.view->InScrollArea(m_fraEdit));

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
    connect(&form, &Form::Changed, this, &MaintenanceScreen::RefreshButtons);
}

void MaintenanceScreen::Finish() {
    if (m_tables.size() == 1) {
        m_listLayout->insertWidget(0, m_tables.front().listPage, 1);
    } else {
        m_tabs = new QTabWidget(m_listSide);
        m_tabs->setObjectName("tabTables");
        m_tabs->setFocusPolicy(Qt::NoFocus); // its bar takes the focus
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
    FinishBuilding();
    OrderTabStops();
    ShowTable(0);
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
    for (const Table& table : m_tables)
        order.append(table.view->TabOrder());
    appendButtons(*m_editButtons);
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void MaintenanceScreen::SetRights(bool mayCreate, bool mayEdit, bool mayDelete) {
    m_mayCreate = mayCreate;
    m_mayEdit = mayEdit;
    m_mayDelete = mayDelete;
}

void MaintenanceScreen::AddListButton(QPushButton* button) {
    m_listButtons->insertWidget(m_listButtons->count() - 1, button);
}

void MaintenanceScreen::AddEditButton(QPushButton* button) {
    m_editButtons->insertWidget(m_editButtons->indexOf(m_cmdSave), button);
}

void MaintenanceScreen::LoadScreen() {
    BeforeLoad();
    m_readOnly = !m_mayCreate && !m_mayEdit && !m_mayDelete;
    if (m_readOnly) {
        m_cmdNew->hide();
        m_cmdDelete->hide();
        m_cmdSave->hide();
    }
    if (!m_mayEdit) {
        m_cmdEdit->setText(tr("Vi&ew"));
        SetDeclaredCaption(*m_cmdEdit, tr("Vi&ew"));
    }
    for (Table& table : m_tables)
        table.form->Clear();
    for (Table& table : m_tables)
        LoadList(table);
    SetState(State::List);
    Current().grid->setFocus();
}

void MaintenanceScreen::LoadList(Table& table) {
    const TableSpec& spec = table.spec;
    RequestChannel& channel = App().channel;
    QList<GridRow> rows;
    qint16 result = status::Ok;
    do {
        PutListKey(table);
        if (result == status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest(spec.listRequest);
        if (result == status::Ok || (spec.continuing && result == status::Continues)) {
            while (channel.NextRecord(spec.recordTag))
                rows.append(ReadRow(table));
        } else {
            ReportLoadFailure(table, result);
        }
    } while (result == status::Continues);
    table.grid->SetRows(rows);
}

void MaintenanceScreen::ReportLoadFailure(Table& table, qint16 result) {
    if (table.spec.boxOnLoadFailure)
        ReportUnableToLoad(App(), this, windowTitle());
    else
        App().ReportRequestFailure(result, table.spec.loadCaption, table.spec.subject);
}

GridRow MaintenanceScreen::ReadRow(const Table& table) {
    GridRow row{App().channel.GetField(table.spec.keyTag), {}, {}};
    for (const QString& tag : table.spec.cellTags)
        row.cells.append(App().channel.GetField(tag));
    return row;
}

bool MaintenanceScreen::FillForm(Table& table, const GridRow& row) {
    const TableSpec& spec = table.spec;
    if (spec.getRequest.isEmpty()) {
        for (Field* field : table.form->Fields())
            if (const qsizetype cell = spec.cellTags.indexOf(field->Tag()); cell >= 0)
                static_cast<ValueField*>(field)->SetStored(row.cells.value(cell));
        return true;
    }
    App().channel.PutField(spec.getKeyTag, row.key);
    if (const qint16 result = App().channel.SendRequest(spec.getRequest); result != status::Ok) {
        App().ReportRequestFailure(result, spec.editCaption, spec.subject);
        return false;
    }
    ReadRecord(table);
    return true;
}

void MaintenanceScreen::ReadRecord(Table& table) {
    table.form->Load(App().channel);
}

bool MaintenanceScreen::CheckBeforeSave(Table& table) {
    return CheckForm(*table.form, *table.view);
}

void MaintenanceScreen::PutRecord(Table& table, const SaveContext& context) {
    for (const PutStep& put : table.puts)
        put(App().channel, context);
}

void MaintenanceScreen::ReportSaveFailure(Table& table, qint16 result) {
    if (const auto words = table.spec.saveWords.find(result); words != table.spec.saveWords.end()) {
        App().prompter.ShowBox(this,
                               {.text = words->text, .icon = Box::Icon::Exclamation, .title = words->title});
        return;
    }
    App().ReportRequestFailure(result, table.spec.saveCaption, table.spec.subject);
    // What must be unique is where the operator goes on.
    const QString culprit = result == status::DuplicateCode   ? "txtCode"
                            : result == status::DuplicateName ? "txtName"
                                                              : QString();
    if (const Field* field = table.form->Find(culprit))
        table.view->FocusField(*field);
}

QString MaintenanceScreen::DeleteItemText(const Table& table, const GridRow& row) const {
    for (qsizetype i = 0; i < table.spec.columns.size(); ++i)
        if (const GridColumn& column = table.spec.columns[i];
            !column.hidden && !column.yesNo && !row.cells.value(i).isEmpty())
            return row.cells[i];
    return row.key;
}

bool MaintenanceScreen::ConfirmRowDelete(Table& table, const GridRow& row) {
    return ConfirmDelete(App(), this, table.spec.subject, DeleteItemText(table, row));
}

QString MaintenanceScreen::EditCaption(const Table& table, State state) const {
    const QString verb = m_mayEdit || state == State::EditingNew
                             ? (state == State::EditingNew ? tr("New ") : tr("Edit "))
                             : tr("View ");
    return verb + table.spec.frameNoun + ":";
}

void MaintenanceScreen::StartNew() {
    Table& table = Current();
    table.form->Clear();
    m_context = {.isNew = true, .originalKey = {}};
    if (!PrepareNew(table))
        return;
    SetState(State::EditingNew);
    table.view->FocusFirst();
}

bool MaintenanceScreen::PrepareNew(Table& table) {
    if (table.spec.availableRequest.isEmpty())
        return true;
    if (App().channel.SendRequest(table.spec.availableRequest) != status::Ok) {
        ReportUnableToLoad(App(), this, windowTitle());
        return false;
    }
    ReadAvailable(table);
    return true;
}

void MaintenanceScreen::StartCopy() {
    Table& table = Current();
    const GridRow* row = table.grid->SelectedRow();
    if (!row)
        return;
    table.form->Clear();
    if (!FillForm(table, GridRow(*row)))
        return;
    table.form->BecomeNew();
    m_context = {.isNew = true, .originalKey = {}};
    SetState(State::EditingNew);
    table.view->FocusFirst();
}

void MaintenanceScreen::StartEdit() {
    Table& table = Current();
    const GridRow* row = table.grid->SelectedRow();
    if (!row)
        return;
    table.form->Clear();
    m_context = {.isNew = false, .originalKey = row->key};
    if (!FillForm(table, GridRow(*row))) {
        table.form->Clear();
        return;
    }
    SetState(m_mayEdit ? State::Editing : State::Viewing);
    if (m_mayEdit)
        table.view->FocusFirst();
    else
        m_cmdCancel->setFocus();
}

bool MaintenanceScreen::Save(bool stay) {
    Table& table = Current();
    if (!CheckBeforeSave(table))
        return false;
    const bool wasNew = m_context.isNew;
    PutRecord(table, m_context);
    const QString request = wasNew ? table.spec.addRequest : table.spec.updateRequest;
    if (const qint16 result = App().channel.SendRequest(request); result != status::Ok) {
        ReportSaveFailure(table, result);
        return false;
    }

    const QString key = KeyAfterAdd(table);
    const GridRow row = RowFromForm(table, key);
    if (key.isEmpty()) {
        LoadList(table); // the server did not say under which id it keeps the record: ask for what it has
    } else {
        table.grid->PutRow(row, m_context.originalKey);
    }
    m_context = {.isNew = false, .originalKey = key};
    if (const qint16 result = SendFollowUp(table, key); result != status::Ok) {
        SetState(State::Editing);
        ReportSaveFailure(table, result);
        return false;
    }
    table.form->Accept();
    AfterSave(table, row, wasNew);
    const auto* text = dynamic_cast<ValueField*>(table.form->FindByTag(table.spec.pickTag));
    if (text && !key.isEmpty())
        App().pickLists.Put(table.spec.pickLists, {key, text->DisplayText()});
    Announce(table.spec.notice);
    if (stay)
        SetState(State::Editing);
    else
        EndEdit();
    return true;
}

QString MaintenanceScreen::KeyAfterAdd(const Table& table) const {
    const TableSpec& spec = table.spec;
    const auto draftOf = [&](const QString& tag) {
        const auto* value = dynamic_cast<ValueField*>(table.form->FindByTag(tag));
        return value ? value->Draft().trimmed() : QString();
    };
    if (const QString key = draftOf(spec.keyTag); !key.isEmpty())
        return key; // the code itself is the key
    if (!m_context.isNew)
        return m_context.originalKey;
    RequestChannel& channel = App().channel;
    while (channel.NextRecord(spec.keyTag))
        if (spec.matchTag.isEmpty() || channel.GetField(spec.matchTag) == draftOf(spec.matchTag))
            return channel.GetField(spec.keyTag);
    return {};
}

GridRow MaintenanceScreen::RowFromForm(const Table& table, const QString& key) const {
    GridRow row{key, {}, {}};
    const GridRow* before = table.grid->SelectedRow();
    for (qsizetype i = 0; i < table.spec.cellTags.size(); ++i) {
        if (const auto* value = dynamic_cast<ValueField*>(table.form->FindByTag(table.spec.cellTags[i])))
            row.cells.append(value->DisplayText());
        else
            row.cells.append(before && before->key == key ? before->cells.value(i) : QString());
    }
    return row;
}

void MaintenanceScreen::EndEdit() {
    if (m_state == State::List)
        return;
    Current().form->Clear();
    SetState(State::List);
    Current().grid->setFocus();
}

void MaintenanceScreen::DeleteSelected() {
    Table& table = Current();
    const GridRow* selected = table.grid->SelectedRow();
    if (!selected)
        return;
    const GridRow row = *selected;
    if (!ConfirmRowDelete(table, row))
        return;
    App().channel.PutField(table.spec.getKeyTag, row.key);
    const qint16 result = App().channel.SendRequest(table.spec.deleteRequest);
    if (const auto words = table.spec.deleteWords.find(result); words != table.spec.deleteWords.end()) {
        App().prompter.ShowBox(this, {.text = words->text, .icon = Box::Icon::None, .title = words->title});
        return;
    }
    if (result != status::Ok) {
        App().ReportRequestFailure(result, table.spec.deleteCaption, table.spec.subject);
        return;
    }
    table.grid->RemoveRow(row.key);
    AfterDelete(table, row);
    App().pickLists.Remove(table.spec.pickLists, row.key);
    Announce(table.spec.notice);
    RefreshButtons();
}

void MaintenanceScreen::SetState(State state) {
    m_state = state;
    const bool editing = state != State::List;
    Table& table = Current();
    QList<QWidget*> listSide{m_cmdNew, m_cmdEdit, m_cmdDelete, table.grid, table.grid->FilterBox()};
    if (m_tabs)
        listSide.append(m_tabs->tabBar());
    for (Table& each : m_tables)
        each.view->SetReadOnly(state == State::Viewing || m_readOnly);
    m_fraEdit->setTitle(EditCaption(table, state));
    SetEditMode(editing, listSide, {m_fraEdit});
    m_cmdSave->setDefault(editing);
    RefreshButtons();
}

void MaintenanceScreen::RefreshButtons() {
    if (m_tables.empty() || !m_views->currentWidget())
        return;
    Table& table = Current();
    const bool inList = m_state == State::List;
    const GridRow* row = table.grid->SelectedRow();
    m_cmdNew->setEnabled(inList && m_mayCreate);
    m_cmdEdit->setEnabled(inList && row);
    m_cmdDelete->setEnabled(inList && row && m_mayDelete && !table.spec.deleteRequest.isEmpty() &&
                            MayDeleteRow(*row));
    m_cmdSave->setEnabled((m_state == State::Editing || m_state == State::EditingNew) &&
                          table.form->IsComplete());
    RefreshOwnControls();
}

void MaintenanceScreen::ShowTable(int index) {
    m_current = index;
    m_views->setCurrentIndex(index);
    m_fraEdit->setTitle(EditCaption(Current(), m_state));
    SetState(State::List);
}

bool MaintenanceScreen::MayClose() {
    if (m_state != State::Editing && m_state != State::EditingNew)
        return true;
    WarnEditInProgress(App(), this);
    return false;
}

} // namespace sysadmin
