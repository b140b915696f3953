#include "framework/CsvExport.h"
#include "framework/FormDialog.h"
#include "framework/ImportFile.h"
#include "framework/MaintenanceScreen.h"
#include "framework/ManyFields.h"
#include "framework/Utility.h"
#include "server/Registry.h"
#include "server/store/Database.h"
#include "support/ClientTest.h"
#include "support/RecordChanger.h"

#include <QComboBox>
#include <QFile>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTreeWidget>

namespace sysadmin {
namespace {

/// Many records at once, on every screen that has a list, against the real server.
class ManyRecordsTest : public ClientTest {
protected:
    struct Place {
        const TableDeclaration& table;
        ListGrid& grid;
        QString word;
    };

    void ForEachList(const std::function<void(MaintenanceScreen&, const Place&)>& work) {
        SignOn("SYSADMIN");
        prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
        Open("Circ_Calendars"); // has the cluster chosen
        m_database = GetLibrary().Connect();
        for (const ScreenEntry& entry : App().catalogue.Entries()) {
            SCOPED_TRACE(entry.key.toStdString());
            if (entry.groupKey == u"Tools" || entry.key == u"Security_MasterProfile")
                continue; // whoever changes his own rights is out
            auto* screen = dynamic_cast<MaintenanceScreen*>(&Open(entry.key));
            const auto tables = screen ? screen->Declaration().tables : QList<TableDeclaration>();
            QStringList words;
            for (qsizetype i = 0; i < tables.size(); ++i) {
                const TableSpec& spec = tables[i].spec;
                auto* tabs = screen->findChild<QTabWidget*>("tabTables");
                if (tabs)
                    tabs->setCurrentIndex(int(i));
                SCOPED_TRACE(spec.gridName.toStdString());
                const QString word =
                    SubjectOf(spec.getRequest.isEmpty() ? spec.listRequest : spec.getRequest);
                if (words.contains(word))
                    continue; // several lists come in one reply: their records cannot be read by this word
                words.append(word);
                work(*screen, {tables[i], *screen->findChild<ListGrid*>(spec.gridName), word});
            }
        }
    }

    qint64 Changes() { return m_database->FirstValue("SELECT COUNT(*) FROM history_requests").toLongLong(); }

    template <class Kind>
    static Kind& Find(QObject& root, const QString& name) {
        auto* found = root.findChild<Kind*>(name);
        if (!found)
            throw std::runtime_error("no " + name.toStdString());
        return *found;
    }

    static QList<QStringList> WordsOf(const std::optional<RecordState>& state) {
        QList<QStringList> words;
        for (const FieldState& field : state.value_or(RecordState()))
            words.append(field.words);
        return words;
    }
    static QList<QList<QStringList>> StatesOf(MaintenanceScreen& screen, const QString& word,
                                              const QStringList& keys) {
        QList<QList<QStringList>> states;
        for (const QString& key : keys)
            states.append(WordsOf(screen.ReadState(word, key)));
        return states;
    }

    /// Another value for the field; the one that it has where there is no other.
    QString OtherValue(const ValueField& field) {
        const auto pick = [&](const QList<PickItem>& items) {
            QStringList ids;
            for (const PickItem& item : items)
                if (item.id != field.Draft() && !item.id.isEmpty())
                    ids.append(item.id);
            return ids.isEmpty() ? field.Draft() : ids[m_random.bounded(ids.size())];
        };
        const int most = field.Spec().most > 0 ? field.Spec().most : 90;
        switch (field.GetKind()) {
        case Field::Kind::Flag:
            return field.Draft() == u"Y" ? "N" : "Y";
        case Field::Kind::Choice:
            return pick(static_cast<const ChoiceField&>(field).Items());
        case Field::Kind::Letter:
            return pick(field.Spec().options);
        case Field::Kind::Number:
            return QString::number(m_random.bounded(field.Spec().least, most) + 1);
        case Field::Kind::Money:
            return QString::number(m_random.bounded(1, 90)) + ".25";
        case Field::Kind::Text:
        case Field::Kind::MultiLine:
            return QString("Zq%1").arg(m_random.bounded(100, 999)).left(qMax(1, field.Spec().maxLength));
        default:
            return field.Draft();
        }
    }
    /// Those that ask before they are saved, and the password rules of operators, have tests of their own.
    static bool IsTried(const Field& field) {
        return field.Name() != u"chkOPACMessages" && field.Name() != u"chkAutoApprove";
    }

    std::unique_ptr<server::Database> m_database;
    QRandomGenerator m_random{20261122};
};

/// Fields of several records changed together: the same as saved one by one, or nothing at all.
TEST_F(ManyRecordsTest, ChangedTogetherTheyAreWhatTheyAreWhenSavedOneByOne) {
    int saved = 0;
    int refused = 0;
    ForEachList([&](MaintenanceScreen& screen, const Place& place) {
        auto* change = place.grid.findChild<QAction*>("mnuChangeSelected");
        const QStringList keys = place.grid.Model().ShownKeys().mid(0, 3);
        if (!change->isVisible() || keys.size() < 2)
            return;
        for (int round = 0; round < 2; ++round) {
            place.grid.SelectKeys(keys);
            ASSERT_EQ(place.grid.SelectedKeys(), keys);
            ASSERT_TRUE(change->isEnabled());
            const auto before = StatesOf(screen, place.word, keys);
            QList<RecordState> restored;
            for (const QString& key : keys)
                restored.append(*screen.ReadState(place.word, key));
            const qint64 number = Changes();
            QMap<QString, QString> written; // by the field's name
            bool isSaved = false;
            prompter.ExpectDialogResult("frmChangeSelected", [&](QDialog& dialog) {
                Form& form = dynamic_cast<FormDialog&>(dialog).View().GetForm();
                QList<Field*> fields = form.Fields();
                for (int tries = 0; tries < 20 && written.size() < 2; ++tries) {
                    auto& field = static_cast<ValueField&>(*fields[m_random.bounded(fields.size())]);
                    const QString value = OtherValue(field);
                    if (field.IsChosen() || !IsTried(field) || value == field.Draft())
                        continue;
                    field.SetChosen(true);
                    field.SetDraft(value);
                    written.insert(field.Name(), value);
                    if (form.FirstProblem()) {
                        field.Revert();
                        field.SetChosen(false);
                        written.remove(field.Name());
                    }
                }
                if (written.isEmpty()) {
                    Click(dialog, "cmdCancel");
                    return;
                }
                prompter.ExpectDialogResult("frmManyPreview", [&](QDialog& preview) {
                    isSaved = preview.findChild<QPushButton*>("cmdSave")->isEnabled();
                    Click(preview, isSaved ? "cmdSave" : "cmdBack");
                });
                Click(dialog, "cmdOK");
                if (!isSaved)
                    Click(dialog, "cmdCancel");
            });
            change->trigger();
            const auto together = StatesOf(screen, place.word, keys);
            ASSERT_EQ(Changes() - number, isSaved ? 1 : 0) << "entries in the history";
            if (!isSaved) {
                EXPECT_EQ(together, before);
                refused += !written.isEmpty();
                continue;
            }
            ++saved;
            EXPECT_NE(together, before);
            if (place.word == u"AcqGp") // asks about locations of the sample when it is saved alone
                return;
            const auto save = [&](const QString& key) {
                screen.findChild<QPushButton*>("cmdSave")->click();
                EXPECT_EQ(screen.GetState(), MaintenanceScreen::State::List) << key.toStdString();
                if (screen.GetState() != MaintenanceScreen::State::List)
                    screen.findChild<QPushButton*>("cmdCancel")->click();
            };
            for (qsizetype i = 0; i < keys.size(); ++i) {
                screen.LoadScreen();
                ASSERT_TRUE(screen.BringBack(place.word, keys[i], restored[i], {}));
                save(keys[i]);
            }
            EXPECT_EQ(StatesOf(screen, place.word, keys), before);
            for (const QString& key : keys) {
                ASSERT_TRUE(place.grid.SelectKey(key));
                screen.findChild<QPushButton*>("cmdEdit")->click();
                QList<NewValue> values;
                for (Field* field : place.table.form->Fields())
                    if (written.contains(field->Name()))
                        values.append({static_cast<ValueField*>(field), written[field->Name()]});
                EXPECT_EQ(EnterDrafts(values), "");
                save(key);
            }
            EXPECT_EQ(StatesOf(screen, place.word, keys), together);
        }
    });
    EXPECT_GT(saved, 30);
    EXPECT_GT(refused, 3);
}

/// What a list gives out it takes back without a change; with some cells changed it changes these.
TEST_F(ManyRecordsTest, AFileChangesWhatIsChangedInIt) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("list.csv");
    int round = 0;
    int changed = 0;
    ForEachList([&](MaintenanceScreen&, const Place& place) {
        auto* import = place.grid.findChild<QAction*>("mnuImport");
        if (!import->isVisible() || place.grid.Model().rowCount() == 0)
            return;
        const auto exportAll = [&] {
            prompter.ExpectSaveFile(path);
            place.grid.findChild<QAction*>("mnuExportAll")->trigger();
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            return ReadImportFile(file.readAll());
        };
        ImportFile file = exportAll();
        ASSERT_EQ(file.problem, "");
        const qint64 number = Changes();
        ++round;
        QStringList matched;
        QString key;
        prompter.ExpectOpenFile(path);
        prompter.ExpectDialogResult("frmImportColumns", [&](QDialog& dialog) {
            for (int i = 0; i < file.headings.size(); ++i) {
                const auto* box = dialog.findChild<QComboBox*>("cboColumn_" + QString::number(i));
                matched.append(box->currentIndex() > 0 ? box->currentText() : QString());
            }
            key = dialog.findChild<QComboBox*>("cboKey")->currentText();
            prompter.ExpectBox("Nothing changes: the records are like this already.");
            Click(dialog, "cmdPreview");
            ASSERT_TRUE(prompter.AllShown());
            Click(dialog, "cmdCancel");
        });
        import->trigger();
        ASSERT_EQ(Changes(), number);

        // Some texts and marks that are about nothing else.
        QStringList expected; // the fields that change, record by record
        const QList<ValueField*> common = CommonFields(*place.table.form, place.table.spec);
        QList<QStringList> lines{file.headings};
        for (wire::CsvRecord record : QList<wire::CsvRecord>(file.records.mid(0, 3))) {
            for (const ValueField* field : common) {
                const qsizetype column = matched.indexOf(field->PlainCaption());
                const bool isText = field->GetKind() == Field::Kind::Text && field->Spec().maxLength >= 10;
                if (column < 0 || !isText || !field->Spec().enabledBy.isEmpty() ||
                    typeid(*field) != typeid(TextField))
                    continue;
                record.fields[column] = "Zq, \"" + QString::number(m_random.bounded(100, 999)) + '"';
                expected.append(field->PlainCaption() + ": " + record.fields[column]);
                break;
            }
            lines.append(record.fields);
        }
        if (expected.isEmpty())
            return;
        ASSERT_EQ(WriteCsv(path, lines), "");
        bool isSaved = false;
        prompter.ExpectOpenFile(path);
        prompter.ExpectDialogResult("frmImportColumns", [&](QDialog& dialog) {
            prompter.ExpectDialogResult("frmManyPreview", [&](QDialog& preview) {
                const auto* tree = preview.findChild<QTreeWidget*>("tvwRecords");
                isSaved = preview.findChild<QPushButton*>("cmdSave")->isEnabled();
                QStringList shown;
                for (int i = 0; i < tree->topLevelItemCount(); ++i)
                    for (int j = 0; j < tree->topLevelItem(i)->childCount(); ++j)
                        shown.append(tree->topLevelItem(i)->child(j)->text(0) + ": " +
                                     tree->topLevelItem(i)->child(j)->text(2));
                if (isSaved) {
                    EXPECT_EQ(shown, expected);
                }
                Click(preview, isSaved ? "cmdSave" : "cmdBack");
            });
            Click(dialog, "cmdPreview");
            if (!isSaved)
                Click(dialog, "cmdCancel");
        });
        import->trigger();
        ASSERT_EQ(Changes() - number, isSaved ? 1 : 0);
        const ImportFile after = exportAll();
        ASSERT_EQ(after.records.size(), file.records.size());
        for (qsizetype i = 0; i < file.records.size(); ++i)
            EXPECT_EQ(after.records[i].fields,
                      isSaved && i + 1 < lines.size() ? lines[i + 1] : file.records[i].fields);
        changed += isSaved;
    });
    EXPECT_GT(round, 30);
    EXPECT_GT(changed, 10);
}

/// Somebody else's change after the preview is told, and neither it nor what was entered is lost.
TEST_F(ManyRecordsTest, WhatComesInBetweenIsToldAndNothingIsLost) {
    SignOn("SYSADMIN");
    auto& screen = dynamic_cast<MaintenanceScreen&>(Open("System_ItemTypes"));
    auto& grid = Find<ListGrid>(screen, "vsf");
    m_database = GetLibrary().Connect();
    testing::RecordChanger somebody(*m_database, GetLibrary().GetRegistry().GetTables());
    const QStringList keys = grid.Model().ShownKeys().mid(2, 3);
    grid.SelectKeys(keys);
    // Several are selected: nothing is offered that is done to one.
    for (const char* name : {"cmdEdit", "cmdDelete"})
        EXPECT_FALSE(Find<QPushButton>(screen, name).isEnabled()) << name;
    const auto stored = [&](const QString& key) {
        return m_database->FirstValue("SELECT display_name FROM item_types WHERE id=?", {key.toLongLong()})
            .toString();
    };
    const QString before = stored(keys[0]);
    const auto choose = [&](QDialog& dialog) {
        Form& form = dynamic_cast<FormDialog&>(dialog).View().GetForm();
        for (Field* field : form.Fields())
            if (field->Tag() == u"Dsp") {
                field->SetChosen(true);
                static_cast<ValueField*>(field)->SetDraft("For all");
            }
        return form.Chosen().size();
    };
    prompter.ExpectDialogResult("frmChangeSelected", [&](QDialog& dialog) {
        ASSERT_EQ(choose(dialog), 1);
        prompter.ExpectDialogResult("frmManyPreview", [&](QDialog& preview) {
            EXPECT_TRUE(Find<QPushButton>(preview, "cmdSave").isEnabled());
            EXPECT_TRUE(somebody.Try([&](server::Records& records) {
                records.Update("item_types", keys[1].toLongLong(), {{"display_name", "Theirs"}});
            }));
            prompter.ExpectBox("Some of the records cannot be saved.  Nothing was saved.");
            Click(preview, "cmdSave");
            const auto& tree = Find<QTreeWidget>(preview, "tvwRecords");
            EXPECT_TRUE(tree.topLevelItem(0)->child(0)->text(0).contains("has changed"));
            EXPECT_FALSE(Find<QPushButton>(preview, "cmdSave").isEnabled());
            EXPECT_EQ(stored(keys[0]), before);
            EXPECT_EQ(stored(keys[1]), "Theirs");
            Click(preview, "cmdBack");
        });
        Click(dialog, "cmdOK");
        prompter.ExpectDialogResult("frmManyPreview", [&](QDialog& preview) {
            const auto& tree = Find<QTreeWidget>(preview, "tvwRecords");
            QStringList befores;
            for (int i = 0; i < tree.topLevelItemCount(); ++i)
                befores.append(tree.topLevelItem(i)->child(0)->text(1));
            EXPECT_TRUE(befores.contains("Theirs")) << befores.join("; ").toStdString();
            Click(preview, "cmdSave");
        });
        Click(dialog, "cmdOK");
    });
    Find<QAction>(grid, "mnuChangeSelected").trigger();
    for (const QString& key : keys)
        EXPECT_EQ(stored(key), "For all");
    EXPECT_EQ(grid.SelectedKeys(), keys);
    SignOn("VIEWER");
    auto& viewed = Open("System_ItemTypes");
    EXPECT_FALSE(Find<QAction>(viewed, "mnuChangeSelected").isVisible());
    EXPECT_FALSE(Find<QAction>(viewed, "mnuImport").isVisible());
}

} // namespace
} // namespace sysadmin
