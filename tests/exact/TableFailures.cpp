#include "exact/ScreenDriver.h"

#include <QAbstractButton>

// What a screen tells when a request fails.
namespace sysadmin::exact {

void ScreenDriver::FailingLists() {
    const auto report = [this](qint16 status) {
        return m_table->unable ? Told("Unable to load " + m_screen.caption + ".")
                               : Report(status, m_table->loadCaption, m_table->subject);
    };
    // Where the reply to an add does not name the new record, the list is read again.
    if (!FieldOf(m_table->record)) {
        OpenTable();
        Click("cmdNew");
        LoadValues(0);
        EnterAll(3);
        m_rig->channel.TakeSent();
        m_rig->channel.Always(m_table->add, {});
        m_rig->channel.Once(m_table->list, {55, {}});
        m_rig->channel.Once(m_table->list, {0, ListReply(*m_table, {1, 2, 3})});
        Click("cmdSave");
        ExpectTold("reading the list again", m_table->strict ? QStringList{report(55)} : QStringList{});
        wire::Fields again = m_screen.listPuts;
        again.append(wire::Field{"55", "Y"});
        Expect("reading the list again sends", m_rig->channel.TakeSent().mid(1).join("; "),
               Line(m_table->list, m_screen.listPuts) + "; " + Line(m_table->list, again));
        Expect("rows read again", QString::number(Grid().Model().rowCount()), "3");
        Expect("selected after reading again", Grid().SelectedKey(), KeyOf(3));
    }
    if (m_table->sharesList)
        return;
    OpenTable(true, [this] { m_rig->channel.Once(m_table->list, {2, {}}); });
    ExpectTold("a failing list", {report(2)});
    Expect("rows of a failing list", QString::number(Grid().Model().rowCount()), "0");

    OpenTable(true, [this] { m_rig->channel.Once(m_table->list, {55, ListReply(*m_table, {3})}); });
    ExpectTold("a list in two replies", m_table->strict ? QStringList{report(55)} : QStringList{});
    Expect("rows of a list in two replies", QString::number(Grid().Model().rowCount()),
           m_table->strict ? "2" : "3");
    wire::Fields puts = m_screen.listPuts;
    puts.append(wire::Field{"55", "Y"});
    Expect("the second request", m_rig->channel.TakeSent().contains(Line(m_table->list, puts)) ? "yes" : "no",
           "yes");
}

void ScreenDriver::FailingSources() {
    for (const Field& field : m_table->fields) {
        const Source& source = field.source;
        if (source.request.isEmpty())
            continue;
        Start(true, [&] { m_rig->channel.Once(source.request, {2, {}}); });
        const QString caption = source.caption.isEmpty() ? m_table->loadCaption : source.caption;
        ExpectTold("failing entries of " + field.control,
                   {source.unable.isEmpty() ? Report(2, caption, m_table->subject)
                                            : Told("Unable to load " + source.unable + ".")});
        if (source.unable.isEmpty())
            continue;
        Start(true, [&] { m_rig->channel.Once(source.request, {55, {}}); });
        ExpectTold("split entries of " + field.control,
                   {source.caption.isEmpty() ? Told("Unable to load " + source.unable + ".")
                                             : Report(55, source.caption, m_table->subject)});
    }
}

void ScreenDriver::FailingRequests() {
    OpenTable();
    Select(1);
    if (!m_table->get.isEmpty()) {
        m_rig->channel.Once(m_table->get, {2, {}});
        Click("cmdEdit");
        ExpectTold("a failing get", {Report(2, m_table->editCaption, m_table->subject)});
        Expect("after a failing get New is offered",
               Find<QWidget>(*m_rig->screen, "cmdNew").isEnabled() ? "yes" : "no", "yes");
    }
    for (const bool isNew : {false, true}) {
        Click(isNew ? "cmdNew" : "cmdEdit");
        LoadValues(isNew ? 0 : 1);
        EnterAll(3);
        const QString request = isNew ? m_table->add : m_table->update;
        m_rig->channel.Once(request, {2, {}});
        Click("cmdSave");
        ExpectTold("a failing save", {Report(2, m_table->saveCaption, m_table->subject)});
        m_rig->channel.Once(request, {7, {}});
        Click("cmdSave");
        ExpectTold("a save of a name that is there", {Report(7, m_table->saveCaption, m_table->subject)});
        for (const Words& words : m_table->words)
            if (!words.onDelete) {
                m_rig->channel.Once(request, {words.status, {}});
                Click("cmdSave");
                ExpectTold("a save with words of its own", {Told(words.text, words.title)});
            }
        ExpectValues("after failing saves");
        Click("cmdCancel");
    }
    if (m_table->available.isEmpty())
        return;
    for (const Available& available : m_table->available) {
        m_rig->channel.Once(available.request, {2, {}});
        Click("cmdNew");
        ExpectTold("what is available, failing", {Told("Unable to load " + m_screen.caption + ".")});
    }
}

} // namespace sysadmin::exact
