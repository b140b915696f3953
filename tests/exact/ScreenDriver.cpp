#include "exact/ScreenDriver.h"

#include "exact/DeclarationDriver.h"
#include "framework/Captions.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>

// What the drivers of tables and of single records share.
namespace sysadmin::exact {

QStringList ScreenDriver::Run() {
    if (m_screen.told)
        return Compare();
    try {
        for (const Table& table : m_screen.tables) {
            m_table = &table;
            if (table.single)
                RunRecord(table);
            else
                RunTable(table);
        }
    } catch (const Stop&) {
    }
    m_rig.reset();
    return m_differences;
}

QStringList ScreenDriver::Compare() {
    m_rig = std::make_unique<Rig>(m_screen, true);
    m_rig->Open([this](ScreenDeclaration& declared) {
        if (m_alter)
            m_alter(declared);
        m_differences = CompareDeclaration(m_screen, declared);
    });
    m_rig.reset();
    return m_differences;
}

void ScreenDriver::Guard(const QString& what, const std::function<void()>& step) {
    try {
        step();
    } catch (const std::exception& error) {
        Expect(what, error.what(), {});
    }
}

void ScreenDriver::Expect(const QString& what, const QString& is, const QString& wanted) {
    if (is == wanted)
        return;
    m_differences.append(QString("%1, %2, %3:\n    is     %4\n    wanted %5")
                             .arg(m_screen.name, m_table->subject, what, is, wanted));
    if (m_stopAtFirst)
        throw Stop();
}

void ScreenDriver::ExpectSent(const QString& what, const QStringList& wanted) {
    Expect(what + " sends", m_rig->channel.TakeSent().join("; "), wanted.join("; "));
}

void ScreenDriver::ExpectTold(const QString& what, const QStringList& wanted) {
    Expect(what + " tells", m_rig->prompter.TakeTold().join("; "), wanted.join("; "));
}

QString ScreenDriver::FrameCaption() {
    return Find<QGroupBox>(*m_rig->screen, "fraEdit").title();
}

void ScreenDriver::ExpectCaption(const QString& what, const QString& wanted) {
    Expect("caption of the frame " + what, FrameCaption(), wanted);
}

void ScreenDriver::Click(const QString& button) {
    auto& widget = Find<QAbstractButton>(*m_rig->screen, button);
    if (widget.isHidden() || !widget.isEnabledTo(m_rig->screen.get()))
        throw std::runtime_error(button.toStdString() + " cannot be clicked");
    widget.click();
}

bool ScreenDriver::CanSave() {
    return Find<QAbstractButton>(*m_rig->screen, "cmdSave").isEnabledTo(m_rig->screen.get());
}

const Field* ScreenDriver::FieldOf(const QString& tag) const {
    for (const Field& field : m_table->fields)
        if (field.tag == tag)
            return &field;
    return nullptr;
}

QStringList ScreenDriver::SourceRequests() const {
    QStringList lines;
    for (const Table& table : m_screen.tables)
        for (const Field& field : table.fields)
            if (!field.source.request.isEmpty())
                lines.append(field.source.request);
    return lines;
}

QString ScreenDriver::KeyOf(int record) const {
    for (const Field& field : m_table->fields)
        if (field.tag == m_table->record)
            return ValueOf(*m_table, field, record);
    return QString::number(100 + record);
}

wire::Fields ScreenDriver::GetReply(const Table& table, int record) const {
    wire::Fields reply;
    QMap<QString, bool> on;
    for (const Field& field : table.fields) {
        const QString value = ValueOf(table, field, record);
        if (field.kind == u"flag")
            on[field.control] = value == u"Y";
        if (field.kind == u"picked") {
            for (const char* place : {"1", "2", "3"})
                reply += {{field.tags[0], QString("a") + place}, {field.tags[1], QString("Free ") + place}};
            for (const char* place : {"1", "2"})
                reply += {{field.tags[2], QString("s") + place}, {field.tags[3], QString("Taken ") + place}};
        } else if (!field.tag.isEmpty() || !field.loads.isEmpty()) {
            reply.append(wire::Field{field.loads.isEmpty() ? field.tag : field.loads, value});
        }
    }
    for (const auto& [request, more] : table.given)
        if (request == table.get)
            reply += more;
    return reply;
}

void ScreenDriver::Script(bool mayEdit) {
    AnsweringChannel& channel = m_rig->channel;
    for (const auto& [request, puts] : m_screen.asksFirst)
        channel.Always(request, {});
    wire::Fields shared;
    for (const Table& table : m_screen.tables) {
        const Table* current = std::exchange(m_table, &table);
        if (table.single) {
            channel.Always(table.get, {0, GetReply(table, 1)});
        } else {
            if (table.sharesList)
                shared += ListReply(table, {2, 1});
            else
                shared = ListReply(table, {2, 1});
            channel.Always(table.list, {0, shared});
            if (!table.get.isEmpty())
                channel.Always(table.get, {0, GetReply(table, 1)});
        }
        for (const Available& available : table.available) {
            wire::Fields reply;
            for (const char* place : {"1", "2", "3"})
                reply += {{available.id, QString("a") + place}, {available.name, QString("Free ") + place}};
            for (const Available& other : table.available)
                if (&other != &available && other.request == available.request)
                    for (const char* place : {"1", "2", "3"})
                        reply += {{other.id, QString("a") + place}, {other.name, QString("Free ") + place}};
            channel.Always(available.request, {0, reply});
        }
        for (const Field& field : table.fields)
            if (const Source& source = field.source; !source.request.isEmpty())
                channel.Always(source.request, {0,
                                                {{source.id, "10"},
                                                 {source.text, "Entry 10"},
                                                 {source.id, "11"},
                                                 {source.text, "Entry 11"}}});
        if (!table.follow.isEmpty())
            channel.Always(table.follow, {});
        for (const auto& [request, more] : table.given)
            if (request != table.get && request != table.list)
                channel.Always(request, {0, more});
        if (!mayEdit && m_screen.area == u"Cluster")
            channel.Always("GetClusterSecurity", {0, {{"CluViewOnly", "Y"}, {"CluEdit", "Y"}}});
        m_table = current;
    }
}

void ScreenDriver::Start(bool mayEdit, const std::function<void()>& prepare) {
    m_rig = std::make_unique<Rig>(m_screen, mayEdit);
    Script(mayEdit);
    if (prepare)
        prepare();
    m_rig->Open(m_alter);
}

void ScreenDriver::LoadValues(int record) {
    m_values.clear();
    m_out.clear();
    m_in.clear();
    for (const Field& field : m_table->fields)
        if (field.kind != u"picked" && field.kind != u"other")
            m_values[field.control] = record > 0 ? ValueOf(*m_table, field, record)
                                      : field.kind == u"flag" && field.initial.isEmpty() ? QString("N")
                                                                                         : field.initial;
    m_loaded = m_values;
}

void ScreenDriver::ExpectValues(const QString& what) {
    for (const Field& field : m_table->fields)
        if (m_values.contains(field.control))
            Expect(field.control + " " + what, ShownValue(*m_rig->screen, field), m_values[field.control]);
}

void ScreenDriver::SetField(const Field& field, const QString& value) {
    if (field.kind == u"other" || field.kind == u"picked" || field.shown)
        return;
    const bool usable = field.by.isEmpty() || m_values.value(field.by) == u"Y";
    Expect(field.control + " is open", IsOpen(*m_rig->screen, field) ? "yes" : "no", usable ? "yes" : "no");
    if (!usable)
        return;
    Enter(*m_rig->screen, field, value);
    m_values[field.control] = value;
}

void ScreenDriver::EnterAll(int record) {
    for (const Field& field : m_table->fields)
        if (!(field.editOnly && m_loaded.value(field.control).isEmpty()))
            SetField(field, ValueOf(*m_table, field, record));
}

void ScreenDriver::CheckForm(bool isNew) {
    QWidget& root = *m_rig->screen;
    for (const Field& field : m_table->fields) {
        if (field.kind == u"other")
            continue;
        ControlOf(root, field);
        if (field.kind == u"picked") {
            const auto& selected = Find<ListGrid>(root, field.selected);
            const auto& available = Find<ListGrid>(root, field.available);
            Expect(field.available, available.Model().Columns().first().caption, field.caption);
            Expect(field.selected, selected.Model().Columns().first().caption, field.selectedCaption);
            Expect(field.available + " holds", available.Model().ShownKeys().join(' '), "a1 a2 a3");
            Expect(field.selected + " holds", selected.Model().ShownKeys().join(' '), isNew ? "" : "s1 s2");
            Expect(field.available + " shows", available.Model().CellText(0, 0), "Free 1");
            if (!isNew)
                Expect(field.selected + " shows", selected.Model().CellText(0, 0), "Taken 1");
            continue;
        }
        Expect("caption of " + field.control, CaptionOf(root, field).trimmed(), field.caption);
        if (!(isNew && field.editOnly))
            Expect("limit of " + field.control, LimitOf(root, field), WantedLimit(field));
        if (!field.unit.isEmpty()) {
            const auto labels = ControlOf(root, field)->parentWidget()->findChildren<QLabel*>();
            Expect("unit of " + field.control, labels.isEmpty() ? QString() : labels.last()->text(),
                   field.unit);
        }
        if (field.shown)
            Expect(field.control + " is open", IsOpen(root, field) ? "yes" : "no", "no");
    }
    for (const auto& [name, caption] : m_table->frames)
        Expect("frame " + name, Find<QGroupBox>(root, name).title(), caption);
    if (!m_table->pages.isEmpty()) {
        QStringList pages;
        for (const auto* tabs : root.findChildren<QTabWidget*>())
            if (tabs->objectName() != u"tabTables")
                for (int i = 0; i < tabs->count(); ++i)
                    pages.append(DeclaredCaption(*tabs->widget(i)));
        Expect("pages", pages.join('|'), m_table->pages.join('|'));
    }
    QStringList texts;
    for (const auto* label : root.findChildren<QLabel*>())
        texts.append(label->text());
    for (const QString& note : m_table->notes)
        Expect("note", texts.contains(note) ? note : texts.join(" / "), note);
}

void ScreenDriver::CheckFocusOrder() {
    // The Tab key comes by the fields in the order of the rows.
    QWidget& root = *m_rig->screen;
    QStringList wanted;
    QHash<QWidget*, QString> names;
    for (const Field& field : m_table->fields) {
        names[ControlOf(root, field)] = field.control;
        wanted.append(field.control);
    }
    QStringList is;
    for (QWidget* widget = root.nextInFocusChain(); widget != &root; widget = widget->nextInFocusChain())
        if (names.contains(widget))
            is.append(names[widget]);
    Expect("tab order", is.join(' '), wanted.join(' '));
}

void ScreenDriver::MovePicked(bool isNew) {
    for (const Field& field : m_table->fields) {
        if (field.kind != u"picked")
            continue;
        auto& available = Find<ListGrid>(*m_rig->screen, field.available);
        auto& selected = Find<ListGrid>(*m_rig->screen, field.selected);
        Click(field.buttons[1]);
        Expect("after " + field.buttons[1], QString::number(available.Model().rowCount()), "0");
        Click(field.buttons[3]);
        Expect("after " + field.buttons[3], QString::number(selected.Model().rowCount()), "0");
        if (!isNew) {
            selected.clearSelection();
            available.SelectKey("s2");
            Click(field.buttons[0]);
            m_out[field.tags[2]] = QStringList{"s1"};
        }
        available.clearSelection();
        available.SelectKey("a3");
        Click(field.buttons[0]);
        available.clearSelection();
        available.SelectKey("a2");
        Click(field.buttons[0]);
        selected.clearSelection();
        selected.SelectKey("a3");
        Click(field.buttons[2]);
        m_in[field.tags[2]] = QStringList{"a2"};
    }
}

QStringList ScreenDriver::Saved(const QString& request, const QList<Put>& puts, const QString& key) {
    const auto controlOf = [this](const QString& tag) {
        const Field* field = FieldOf(tag);
        if (!field)
            throw std::runtime_error("the rows have no field for " + tag.toStdString());
        return field->control;
    };
    Saving saving{
        [&](const QString& tag) { return m_values.value(controlOf(tag)); },
        [&](const QString& tag) { return m_values.value(controlOf(tag)) != m_loaded.value(controlOf(tag)); },
        key, m_out, m_in};
    QStringList lines{Line(request, FieldsOf(puts, saving))};
    bool follows = false;
    for (const Put& put : m_table->follows)
        follows = follows || !m_out[put.tag].isEmpty() || !m_in[put.tag].isEmpty();
    if (follows) {
        if (saving.key.isEmpty())
            saving.key = KeyOf(3);
        lines.append(Line(m_table->follow, FieldsOf(m_table->follows, saving)));
    }
    return lines;
}

void ScreenDriver::CheckRequired() {
    // Save waits for every required field that is open, and for no other one.
    for (const Field& field : m_table->fields)
        if (field.required && field.by.isEmpty() && m_values.value(field.control).isEmpty())
            SetField(field, ValueOf(*m_table, field, 3));
    // A single record is saved when there is something to save.
    const auto hasChange = [this] { return !m_table->single || m_values != m_loaded; };
    Expect("with what is required, Save is open", CanSave() ? "yes" : "no", hasChange() ? "yes" : "no");
    static const QStringList emptied{"text", "number", "date", "interval", "lines"};
    for (const Field& field : m_table->fields) {
        const bool usable = field.by.isEmpty() || m_values.value(field.by) == u"Y";
        if (!emptied.contains(field.kind) || field.shown || !usable)
            continue;
        const QString before = m_values[field.control];
        SetField(field, {});
        Expect("without " + field.control + " Save is open", CanSave() ? "yes" : "no",
               field.required || !hasChange() ? "no" : "yes");
        SetField(field, before);
    }
}

} // namespace sysadmin::exact
