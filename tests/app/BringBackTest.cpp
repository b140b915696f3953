#include "framework/MaintenanceScreen.h"
#include "framework/Utility.h"
#include "server/Registry.h"
#include "server/store/Database.h"
#include "support/ClientTest.h"
#include "support/RecordChanger.h"
#include "wire/Status.h"

#include <QDialog>
#include <QPushButton>

namespace sysadmin {
namespace {

class BringBackTest : public ClientTest {
protected:
    /// A record, as the screen and as the server know it.
    struct Place {
        QString word;
        QString key;
        server::RecordName record;
        const server::RequestRule* rule = nullptr;
    };

    /// The first two records of each list of each screen.
    void ForEachRecord(const std::function<void(MaintenanceScreen&, const Place&)>& work) {
        SignOn("SYSADMIN");
        prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
        Open("Circ_Calendars"); // has the cluster chosen
        m_database = GetLibrary().Connect();
        m_registry = &GetLibrary().GetRegistry();
        m_changer.emplace(*m_database, m_registry->GetTables());
        for (const ScreenEntry& entry : App().catalogue.Entries()) {
            SCOPED_TRACE(entry.key.toStdString());
            // Whoever changes his own rights at random is out.
            if (entry.groupKey == u"Tools" || entry.key == u"Security_MasterProfile")
                continue;
            auto* screen = dynamic_cast<MaintenanceScreen*>(&Open(entry.key));
            const auto tables = screen ? screen->Declaration().tables : QList<TableDeclaration>();
            for (const TableDeclaration& table : tables) {
                const TableSpec& spec = table.spec;
                const QString word =
                    SubjectOf(spec.getRequest.isEmpty() ? spec.listRequest : spec.getRequest);
                const server::RequestRule* rule = m_registry->ReadRuleOfWord(word);
                const auto* grid = screen->findChild<ListGrid*>(spec.gridName);
                if (!rule || !grid || !screen->MayBringBack(word, false))
                    continue;
                for (const QString& key : grid->Model().ShownKeys().mid(0, 2)) {
                    SCOPED_TRACE(word.toStdString() + ' ' + key.toStdString());
                    const QString column = m_registry->KeyRuleOf(*rule).keyColumn;
                    const QVariant id = m_database->FirstValue(
                        "SELECT id FROM " + rule->tables.first() + " WHERE " +
                            (column.isEmpty() ? "id" : column) + "=?",
                        {column.isEmpty() || rule->byReference ? QVariant(key.toLongLong()) : QVariant(key)});
                    if (id.isValid())
                        work(*screen, {word, key, {rule->tables.first(), id.toLongLong()}, rule});
                }
            }
        }
    }

    qint64 LastChange() {
        return m_database->FirstValue("SELECT COALESCE(MAX(id), 0) FROM history_requests").toLongLong();
    }

    /// The record after the change of this number, as its history tells it; none where nothing came after.
    std::optional<RecordState> StateAfter(qint64 number, const Place& place) {
        RecordHistory history(App(), {place.word, {}, place.key, [&](RequestChannel& channel) {
                                          channel.PutField("HRow", QString::number(place.record.id));
                                      }});
        EXPECT_EQ(history.ReadMore(), wire::status::Ok);
        qsizetype oldest = -1;
        while (oldest + 1 < history.Entries().size() && history.Entries()[oldest + 1].number > number)
            ++oldest;
        return oldest < 0 ? std::nullopt : history.Before(oldest);
    }

    std::unique_ptr<server::Database> m_database;
    const server::Registry* m_registry = nullptr;
    std::optional<testing::RecordChanger> m_changer;

    static QList<QStringList> WordsOf(const RecordState& state) {
        QList<QStringList> words;
        for (const FieldState& field : state)
            words.append(field.words);
        return words;
    }

    static QString Differences(const RecordState& one, const RecordState& other) {
        QStringList lines;
        for (qsizetype i = 0; i < qMin(one.size(), other.size()); ++i)
            if (one[i].words != other[i].words)
                lines << one[i].caption + ": " + one[i].words.join("; ") + " is " + other[i].words.join("; ");
        return lines.join("\n");
    }
};

/// On every screen with a list: records are changed at random behind the operator's back; what the history
/// says that they were is what the form showed at first.
TEST_F(BringBackTest, TheHistoryShowsOnEveryScreenWhatWasThere) {
    int restored = 0;
    ForEachRecord([&](MaintenanceScreen& screen, const Place& place) {
        screen.LoadScreen(); // what it knows of other records may be old
        const auto before = screen.ReadState(place.word, place.key);
        ASSERT_TRUE(before);
        const qint64 number = LastChange();
        for (int i = 0; i < 3; ++i)
            m_changer->Change(place.record);
        const auto state = StateAfter(number, place);
        if (!state)
            return;
        EXPECT_EQ(WordsOf(*state), WordsOf(*before)) << Differences(*state, *before).toStdString();
        ++restored;
    });
    EXPECT_GT(restored, 60);
}

/// A name or a description is changed elsewhere; brought back and saved, the record is what it was, with all
/// its rows and members.
TEST_F(BringBackTest, WhatIsBroughtBackAndSavedIsWhatTheServerHasAgain) {
    int restored = 0;
    ForEachRecord([&](MaintenanceScreen& screen, const Place& place) {
        // One asks about locations of the sample, the other one does not edit the record itself.
        if (place.word == u"AcqGp" || place.word == u"RPatGp")
            return;
        const server::Table& table = *m_registry->GetTables().constFind(place.record.table);
        const auto before = screen.ReadState(place.word, place.key);
        ASSERT_TRUE(before);
        const qint64 number = LastChange();
        m_changer->Try([&](server::Records& records) {
            const server::Row row = *records.Find(place.record.table, place.record.id);
            for (const char* column : {"name", "description"})
                if (table.Find(column) && column != m_registry->KeyRuleOf(*place.rule).keyColumn)
                    records.Update(place.record.table, place.record.id,
                                   {{column, row[column].toString().left(8) + " elsewhere"}});
        });
        const auto state = StateAfter(number, place);
        if (!state)
            return;
        screen.LoadScreen();
        EXPECT_TRUE(screen.BringBack(place.word, place.key, *state, {}));
        if (auto* save = screen.findChild<QPushButton*>("cmdSave"); save->isEnabled())
            save->click();
        EXPECT_EQ(screen.GetState(), MaintenanceScreen::State::List) << "it was not saved";
        if (screen.GetState() != MaintenanceScreen::State::List)
            screen.findChild<QPushButton*>("cmdCancel")->click();
        const auto saved = screen.ReadState(place.word, place.key);
        ASSERT_TRUE(saved);
        EXPECT_EQ(WordsOf(*saved), WordsOf(*before)) << Differences(*saved, *before).toStdString();
        ++restored;
    });
    EXPECT_GT(restored, 40);
}

} // namespace
} // namespace sysadmin
