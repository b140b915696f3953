#include "exact/Rig.h"
#include "framework/ListGrid.h"
#include "support/ClientTest.h"

#include <QComboBox>
#include <QTabWidget>

namespace sysadmin::exact {

namespace {

/// Every screen on the real server: what an operator enters is there the next day, can be changed and
/// deleted.
class ExactJob : public ClientTest {
protected:
    sysadmin::Screen& OpenTable(const Screen& screen, const Table& table) {
        sysadmin::Screen& opened = Open(screen.key);
        if (screen.tables.size() > 1)
            Find<QTabWidget>(opened, "tabTables").setCurrentIndex(int(&table - screen.tables.data()));
        return opened;
    }

    /// Fills every field that is open with what it has in record 1, 2 or 3.
    void EnterAll(QWidget& root, const Table& table, int record) {
        for (const Field& field : table.fields) {
            if (field.kind == u"picked") {
                auto& available = Find<ListGrid>(root, field.available);
                if (!available.isEnabledTo(&root) || available.Model().rowCount() == 0)
                    continue;
                available.SelectKey(available.Model().ShownKeys().first());
                Click(root, field.buttons[0]);
            } else if (field.kind != u"other" && !field.editOnly && IsOpen(root, field)) {
                QString value = ValueOf(table, field, record);
                if (!field.source.request.isEmpty()) {
                    const auto& box = Find<QComboBox>(root, field.control);
                    value = box.itemData(record % box.count()).toString();
                }
                Enter(root, field, value);
            }
        }
    }

    /// What the form shows, by control.
    QMap<QString, QString> Shown(QWidget& root, const Table& table) {
        QMap<QString, QString> values;
        for (const Field& field : table.fields)
            if (field.kind == u"picked")
                values[field.control] = Find<ListGrid>(root, field.selected).Model().ShownKeys().join(' ');
            else if (field.kind != u"other" && !field.shown && IsOpen(root, field))
                values[field.control] = ShownValue(root, field);
        return values;
    }
};

TEST_F(ExactJob, WhatWasEnteredIsThereTheNextDay) {
    SignOn("SYSADMIN");
    QMap<const Table*, QMap<QString, QString>> entered;
    QMap<const Table*, QString> keys;
    const auto forEach = [](const std::function<void(const Screen&, const Table&)>& step) {
        for (const Screen& screen : AllScreens())
            for (const Table& table : screen.tables) {
                if (screen.told)
                    continue;
                SCOPED_TRACE((screen.key + ", " + table.subject).toStdString());
                try {
                    step(screen, table);
                } catch (const std::exception& error) {
                    ADD_FAILURE() << error.what();
                }
            }
    };
    const auto edit = [&](const Screen& screen, const Table& table) -> sysadmin::Screen& {
        sysadmin::Screen& root = OpenTable(screen, table);
        if (!table.single) {
            EXPECT_TRUE(Find<ListGrid>(root, table.grid).SelectKey(keys[&table]))
                << keys[&table].toStdString();
            Click(root, "cmdEdit");
        }
        return root;
    };
    forEach([&](const Screen& screen, const Table& table) {
        sysadmin::Screen& root = OpenTable(screen, table);
        if (!table.single)
            Click(root, "cmdNew");
        EnterAll(root, table, 3);
        entered[&table] = Shown(root, table);
        Click(root, "cmdSave");
        if (!table.single)
            keys[&table] = Find<ListGrid>(root, table.grid).SelectedKey();
    });
    ReopenLibrary();
    SignOn("SYSADMIN");
    forEach([&](const Screen& screen, const Table& table) {
        sysadmin::Screen& root = edit(screen, table);
        EXPECT_EQ(Shown(root, table), entered[&table]);
        EnterAll(root, table, 2);
        entered[&table] = Shown(root, table);
        Click(root, "cmdSave");
        if (!table.single)
            keys[&table] = Find<ListGrid>(root, table.grid).SelectedKey();
    });
    ReopenLibrary();
    SignOn("SYSADMIN");
    forEach([&](const Screen& screen, const Table& table) {
        sysadmin::Screen& root = edit(screen, table);
        EXPECT_EQ(Shown(root, table), entered[&table]);
        if (table.single)
            return;
        for (const Field& field : table.fields) // what is attached might keep the record
            if (field.kind == u"picked" && Find<QWidget>(root, field.buttons[3]).isEnabledTo(&root))
                Click(root, field.buttons[3]);
        Click(root, "cmdSave");
        auto& grid = Find<ListGrid>(root, table.grid);
        const GridRow row = *grid.SelectedRow();
        QString item;
        for (qsizetype i = 0; i < table.columns.size(); ++i)
            if (item.isEmpty() && !table.columns[i].hidden && !table.columns[i].yesNo)
                item = row.cells[i];
        const QString question = table.question.isEmpty()
                                     ? "You will delete " + table.subject + ":\r\n\"%1\"\r\n\r\nAre you sure?"
                                     : table.question;
        prompter.ExpectBox(question.arg(item), true);
        Click(root, "cmdDelete");
        EXPECT_FALSE(grid.Model().FindRow(row.key));
    });
}

} // namespace

} // namespace sysadmin::exact
