#include "exact/ScreenDriver.h"

#include <QAbstractButton>
#include <QGroupBox>

namespace sysadmin::exact {

void ScreenDriver::OpenRecord(bool mayEdit, const std::function<void()>& prepare) {
    Start(mayEdit, prepare);
}

void ScreenDriver::RunRecord(const Table& table) {
    const auto failure = [&](qint16 status, const QString& own, const QString& caption) {
        return own.isEmpty() ? Report(status, caption, table.subject) : Told(own);
    };
    Guard("opening", [&] {
        OpenRecord();
        ExpectSent("opening", QStringList(SourceRequests()) << Line(table.get, m_screen.listPuts));
        ExpectTold("opening", {});
        Expect("name", m_rig->screen->objectName(), m_screen.name);
        Expect("window caption", m_rig->screen->windowTitle(), m_screen.caption);
        ExpectCaption("", table.frame == u"-" ? QString() : "Edit " + table.frame);
        LoadValues(1);
        CheckForm(false);
        ExpectValues("after loading");
        CheckFocusOrder();
        Expect("with nothing changed Save is open", CanSave() ? "yes" : "no", "no");
        CheckRequired();
    });
    for (const int record : {1, 2})
        Guard("changing", [&] {
            OpenRecord(true, [&] { m_rig->channel.Always(table.get, {0, GetReply(table, record)}); });
            m_rig->channel.TakeSent();
            LoadValues(record);
            ExpectValues("after loading");
            CheckRequired();
            EnterAll(3 - record);
            CheckRequired();
            EnterAll(3);
            if (m_values == m_loaded)
                EnterAll(3 - record); // flags have two values only
            m_rig->channel.Once(table.update, {2, {}});
            Click("cmdSave");
            ExpectTold("a failing save", {failure(2, table.saveFailure, table.saveCaption)});
            ExpectSent("a failing save", Saved(table.update, table.updates, {}));
            ExpectValues("after a failing save");
            m_rig->channel.Once(table.update, {});
            Click("cmdSave");
            ExpectSent("saving what was changed", Saved(table.update, table.updates, {}));
            ExpectTold("saving what was changed", {});
            Expect("notice", m_rig->notices.join(' '), table.notice);
            Expect("after a save Save is open", CanSave() ? "yes" : "no", "no");
        });
    Guard("a failing load", [&] {
        OpenRecord(true, [&] { m_rig->channel.Once(table.get, {2, {}}); });
        ExpectTold("a failing load", {failure(2, table.loadFailure, table.loadCaption)});
        Expect("after a failing load Save is open", CanSave() ? "yes" : "no", "no");
        LoadValues(0);
        ExpectValues("after a failing load");
    });
    if (!table.add.isEmpty())
        Guard("adding", [&] {
            OpenRecord(true, [&] { m_rig->channel.Once(table.get, {}); });
            m_rig->channel.TakeSent();
            LoadValues(0);
            ExpectValues("before there is a record");
            CheckRequired();
            EnterAll(3);
            m_rig->channel.Once(table.add, {});
            m_rig->channel.Once(table.update, {});
            Click("cmdSave");
            ExpectSent("saving the first time", Saved(table.add, table.adds, {}));
            m_loaded = m_values;
            EnterAll(1);
            Click("cmdSave");
            ExpectSent("saving again", Saved(table.update, table.updates, {}));
            // There is a record as soon as this field is filled.
            OpenRecord(true, [&] {
                m_rig->channel.Once(table.get, {0, {{table.existsAs.value(0), "X"}}});
                m_rig->channel.Once(table.update, {});
            });
            m_rig->channel.TakeSent();
            for (const Field& field : table.fields)
                SetField(field, ValueOf(table, field, 3));
            Click("cmdSave");
            Expect("a record that is there is updated", m_rig->channel.TakeSent().value(0).section(' ', 0, 0),
                   table.update);
        });
    FailingSources();
    Guard("viewing", [&] {
        OpenRecord(false);
        ExpectCaption("of a view", table.frame == u"-" ? QString() : "View " + table.frame);
        Expect("Save in a view is there", Find<QWidget>(*m_rig->screen, "cmdSave").isHidden() ? "no" : "yes",
               "no");
        LoadValues(1);
        ExpectValues("of a view");
        for (const Field& field : table.fields)
            if (field.kind != u"other")
                Expect(field.control + " is open in a view", IsOpen(*m_rig->screen, field) ? "yes" : "no",
                       "no");
    });
}

} // namespace sysadmin::exact
