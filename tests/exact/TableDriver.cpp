#include "exact/DeclarationDriver.h"
#include "exact/ScreenDriver.h"

#include "framework/Captions.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QTabWidget>

namespace sysadmin::exact {

QString ScreenDriver::CellOf(const Column& column, int record) const {
    if (const Field* field = FieldOf(column.tag); field && column.field.isEmpty())
        return ValueOf(*m_table, *field, record);
    return column.hidden || !column.marks.isEmpty() ? "N" : QString("%1 %2").arg(record).arg(column.tag);
}

QString ScreenDriver::RowText(int record) const {
    QStringList cells;
    for (const Column& column : m_table->columns)
        cells.append(CellOf(column, record));
    return cells.join('|');
}

/// The row after a save: the values of the form, and what stood there for columns without a field.
QString ScreenDriver::RowFromValues(int formerRecord) const {
    QStringList cells;
    for (const Column& column : m_table->columns) {
        const Field* field = FieldOf(column.field.isEmpty() ? column.tag : column.field);
        const QString value = field ? m_values.value(field->control) : QString();
        if (!field)
            cells.append(formerRecord > 0 ? CellOf(column, formerRecord) : QString());
        else if (field->kind == u"choice")
            cells.append(value.isEmpty() ? QString() : "Entry " + value);
        else
            cells.append(value);
    }
    return cells.join('|');
}

wire::Fields ScreenDriver::ListReply(const Table& table, const QList<int>& records) const {
    wire::Fields reply;
    for (const int record : records) {
        reply.append(wire::Field{table.record, KeyOf(record)});
        for (const Column& column : table.columns)
            if (column.tag != table.record)
                reply.append(wire::Field{column.tag, CellOf(column, record)});
    }
    for (const auto& [request, more] : table.given)
        if (request == table.list)
            reply += more;
    return reply;
}

void ScreenDriver::OpenTable(bool mayEdit, const std::function<void()>& prepare) {
    Start(mayEdit, prepare);
    if (m_screen.tables.size() > 1)
        Find<QTabWidget>(*m_rig->screen, "tabTables").setCurrentIndex(int(m_table - m_screen.tables.data()));
}

void ScreenDriver::ExpectRows(const QString& what, const QStringList& wanted) {
    GridModel& model = Grid().Model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.Rows()[row].cells.Texts().join('|'));
    // The model keeps its rows in the order in which they came; the shown order is that of the keys.
    QStringList shown;
    for (const QString& key : model.ShownKeys())
        if (const GridRow* row = model.FindRow(key))
            shown.append(key + ": " + row->cells.Texts().join('|'));
    Expect("list " + what, shown.join("; "), wanted.join("; "));
}

void ScreenDriver::CheckOpening() {
    QStringList wanted;
    for (const auto& [request, puts] : m_screen.asksFirst)
        wanted.append(Line(request, puts));
    wanted += SourceRequests();
    for (const Table& table : m_screen.tables)
        if (!table.sharesList)
            wanted.append(Line(table.list, m_screen.listPuts));
    ExpectSent("opening", wanted);
    ExpectTold("opening", {});
    Expect("name", m_rig->screen->objectName(), m_screen.name);
    Expect("window caption", m_rig->screen->windowTitle(), m_screen.caption);
    if (m_screen.tables.size() > 1) {
        auto& tabs = Find<QTabWidget>(*m_rig->screen, "tabTables");
        Expect("tab", tabs.tabText(tabs.currentIndex()).remove('&'), m_table->tab);
    }
    QStringList captions;
    for (const GridColumn& column : Grid().Model().Columns())
        captions.append(column.caption + (column.hidden ? " hidden" : "") + ' ' + MarksOf(column));
    QStringList wantedCaptions;
    for (const Column& column : m_table->columns)
        wantedCaptions.append(column.caption + (column.hidden ? " hidden" : "") + ' ' + column.marks);
    Expect("columns", captions.join('|'), wantedCaptions.join('|'));
    const QList<int> order = m_table->sorted ? QList<int>{1, 2} : QList<int>{2, 1};
    QStringList rows;
    for (const int record : order)
        rows.append(KeyOf(record) + ": " + RowText(record));
    ExpectRows("after opening", rows);
    ExpectCaption("at first",
                  m_table->listFrame.isEmpty() ? "Edit " + m_table->frame + ":" : m_table->listFrame);
    Expect("Edit button", DeclaredCaption(Find<QAbstractButton>(*m_rig->screen, "cmdEdit")), "&Edit");
    Expect("New is offered", Find<QWidget>(*m_rig->screen, "cmdNew").isEnabled() ? "yes" : "no", "yes");
}

void ScreenDriver::AddRecord() {
    Click("cmdNew");
    QStringList asked;
    for (const Available& available : m_table->available)
        if (!asked.contains(available.request))
            asked.append(available.request);
    ExpectSent("New", asked);
    ExpectTold("New", {});
    ExpectCaption("of a new record", "New " + m_table->frame + ":");
    LoadValues(0);
    ExpectValues("of a new record");
    CheckForm(true);
    CheckFocusOrder();
    CheckRequired();
    EnterAll(3);
    MovePicked(true);
    wire::Fields reply;
    if (!m_table->finds.isEmpty())
        reply += {{m_table->record, "998"}, {m_table->finds, "another"}};
    reply += {{m_table->record, KeyOf(3)}};
    if (!m_table->finds.isEmpty() && m_table->finds != m_table->record)
        reply += {{m_table->finds, m_values.value(FieldOf(m_table->finds)->control)}};
    m_rig->channel.Always(m_table->add, {0, reply});
    Click("cmdSave");
    ExpectSent("saving a new record", Saved(m_table->add, m_table->adds, {}));
    ExpectTold("saving a new record", {});
    Expect("notice", m_rig->notices.join(' '), m_table->notice);
    ExpectRows("after adding", {KeyOf(1) + ": " + RowText(1), KeyOf(2) + ": " + RowText(2),
                                KeyOf(3) + ": " + RowFromValues(0)});
    Expect("selected after adding", Grid().SelectedKey(), KeyOf(3));
}

void ScreenDriver::UpdateRecord() {
    Select(1);
    Click("cmdEdit");
    const QString asked =
        m_table->get.isEmpty() ? QString() : Line(m_table->get, {{m_table->getKey, KeyOf(1)}});
    ExpectSent("Edit", asked.isEmpty() ? QStringList{} : QStringList{asked});
    ExpectTold("Edit", {});
    ExpectCaption("of an edit", "Edit " + m_table->frame + ":");
    LoadValues(1);
    ExpectValues("of an edit");
    CheckForm(false);
    m_rig->channel.Always(m_table->update, {});
    m_rig->notices.clear();
    Click("cmdSave");
    ExpectSent("saving an unchanged record", Saved(m_table->update, m_table->updates, KeyOf(1)));
    Expect("notice", m_rig->notices.join(' '), m_table->notice);

    Click("cmdEdit");
    m_rig->channel.TakeSent();
    LoadValues(1);
    EnterAll(3);
    MovePicked(false);
    Click("cmdSave");
    ExpectSent("saving a changed record", Saved(m_table->update, m_table->updates, KeyOf(1)));
    ExpectTold("saving a changed record", {});
    const Field* key = FieldOf(m_table->record);
    ExpectRows("after a change", {KeyOf(2) + ": " + RowText(2), // sorted anew
                                  (key ? m_values[key->control] : KeyOf(1)) + ": " + RowFromValues(1)});
    for (const Put& put : m_table->updates)
        if (put.kind == Put::Kind::Changed)
            ChangeOne(put.other);
    if (std::any_of(m_table->fields.begin(), m_table->fields.end(),
                    [](const Field& field) { return !field.by.isEmpty(); })) {
        // What depends on a flag is closed while that is off: record 2 has every flag the other way.
        OpenTable();
        m_rig->channel.Always(m_table->get, {0, GetReply(*m_table, 2)});
        Select(1);
        Click("cmdEdit");
        LoadValues(2);
        m_rig->channel.TakeSent();
        m_rig->channel.Always(m_table->update, {});
        CheckRequired();
        EnterAll(1);
        Click("cmdSave");
        ExpectSent("saving with the other flags", Saved(m_table->update, m_table->updates, KeyOf(1)));
    }
}

/// Only this field is changed: no other one is called changed.
void ScreenDriver::ChangeOne(const QString& tag) {
    OpenTable();
    Select(1);
    Click("cmdEdit");
    m_rig->channel.TakeSent();
    m_rig->channel.Always(m_table->update, {});
    LoadValues(1);
    const Field& field = *FieldOf(tag);
    SetField(field, ValueOf(*m_table, field, field.kind == u"flag" ? 2 : 3));
    Click("cmdSave");
    ExpectSent("changing only " + field.control, Saved(m_table->update, m_table->updates, KeyOf(1)));
}

void ScreenDriver::DeleteRecord() {
    if (m_table->remove.isEmpty()) {
        Expect("Delete is offered", Find<QWidget>(*m_rig->screen, "cmdDelete").isHidden() ? "no" : "yes",
               "no");
        return;
    }
    QString item;
    for (const Column& column : m_table->columns)
        if (item.isEmpty() && !column.hidden && column.marks.isEmpty())
            item = CellOf(column, 2);
    const QString question = m_table->question.isEmpty()
                                 ? "You will delete " + m_table->subject + ":\r\n\"%1\"\r\n\r\nAre you sure?"
                                 : m_table->question;
    const QString told = Told(question.arg(item), "Delete " + m_table->subject);
    m_rig->channel.Always(m_table->remove, {});
    const QString request = Line(m_table->remove, {{m_table->getKey, KeyOf(2)}});
    Select(2);
    m_rig->prompter.answer = false;
    Click("cmdDelete");
    ExpectSent("not deleting", {});
    ExpectTold("not deleting", {told});
    m_rig->prompter.answer = true;
    for (const Words& words : m_table->words)
        if (words.onDelete) {
            m_rig->channel.Once(m_table->remove, {words.status, {}});
            Click("cmdDelete");
            ExpectTold("deleting what is in use", {told, Told(words.text, words.title)});
            m_rig->channel.TakeSent();
        }
    m_rig->channel.Once(m_table->remove, {2, {}});
    Click("cmdDelete");
    ExpectSent("a failing delete", {request});
    ExpectTold("a failing delete", {told, Report(2, m_table->deleteCaption, m_table->subject)});
    m_rig->notices.clear();
    Click("cmdDelete");
    ExpectSent("Delete", {request});
    ExpectTold("Delete", {told});
    Expect("notice", m_rig->notices.join(' '), m_table->notice);
    Expect("deleted row is there", Grid().Model().FindRow(KeyOf(2)) ? "yes" : "no", "no");
}

void ScreenDriver::ReadOnly() {
    OpenTable(false);
    Expect("read-only Edit button", DeclaredCaption(Find<QAbstractButton>(*m_rig->screen, "cmdEdit")),
           "Vi&ew");
    for (const char* button : {"cmdNew", "cmdDelete", "cmdSave"})
        Expect(QString(button) + " read-only is there",
               Find<QWidget>(*m_rig->screen, button).isHidden() ? "no" : "yes", "no");
    Select(1);
    Click("cmdEdit");
    ExpectCaption("of a view",
                  m_table->viewFrame.isEmpty() ? "View " + m_table->frame + ":" : m_table->viewFrame);
    LoadValues(1);
    ExpectValues("of a view");
    for (const Field& field : m_table->fields)
        if (field.kind != u"picked" && field.kind != u"other")
            Expect(field.control + " is open in a view", IsOpen(*m_rig->screen, field) ? "yes" : "no", "no");
    Click("cmdCancel");
}

void ScreenDriver::PickLists() {
    if (m_table->pickLists.isEmpty())
        return;
    OpenTable(true, [this] {
        for (const QString& list : m_table->pickLists)
            m_rig->app.pickLists.Set(list, {{KeyOf(1), "before"}, {KeyOf(2), "stays"}});
    });
    m_rig->channel.Always(m_table->update, {});
    m_rig->channel.Always(m_table->remove, {});
    Select(1);
    Click("cmdEdit");
    LoadValues(1);
    EnterAll(3);
    Click("cmdSave");
    const QString text = m_values[FieldOf(m_table->pickTag)->control];
    Select(2);
    if (!m_table->remove.isEmpty())
        Click("cmdDelete");
    for (const QString& list : m_table->pickLists) {
        QStringList items;
        for (const PickItem& item : m_rig->app.pickLists.Items(list))
            items.append(item.id + ":" + item.text);
        QStringList wanted{KeyOf(1) + ":" + text};
        if (m_table->remove.isEmpty())
            wanted.append(KeyOf(2) + ":stays");
        Expect("pick-list " + list, items.join('|'), wanted.join('|'));
    }
}

void ScreenDriver::RunTable(const Table&) {
    Guard("opening", [this] {
        OpenTable();
        CheckOpening();
    });
    Guard("adding", [this] { AddRecord(); });
    Guard("changing", [this] {
        OpenTable();
        m_rig->channel.TakeSent();
        UpdateRecord();
    });
    Guard("deleting", [this] {
        OpenTable();
        m_rig->channel.TakeSent();
        DeleteRecord();
    });
    Guard("failing lists", [this] { FailingLists(); });
    Guard("failing entries", [this] { FailingSources(); });
    Guard("failing requests", [this] { FailingRequests(); });
    Guard("pick-lists", [this] { PickLists(); });
    Guard("viewing", [this] { ReadOnly(); });
}

} // namespace sysadmin::exact
