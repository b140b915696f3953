#include "framework/MaintenanceScreen.h"
#include "framework/Utility.h"
#include "server/Registry.h"
#include "server/store/Database.h"
#include "support/ClientTest.h"
#include "support/RecordChanger.h"
#include "wire/Status.h"

#include <QDialog>

namespace sysadmin {
namespace {

class BringBackTest : public ClientTest {
protected:
    /// The id in the database of the record that the screen knows by the key.
    std::optional<qint64> IdOf(server::Database& database, const server::RequestRule& rule,
                               const QString& key) {
        const QString column = GetLibrary().GetRegistry().KeyRuleOf(rule).keyColumn;
        const QVariant id = database.FirstValue(
            "SELECT id FROM " + rule.tables.first() + " WHERE " + (column.isEmpty() ? "id" : column) + "=?",
            {column.isEmpty() || rule.byReference ? QVariant(key.toLongLong()) : QVariant(key)});
        return id.isValid() ? std::optional(id.toLongLong()) : std::nullopt;
    }

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

/// On every screen with a list: records are changed at random behind the operator's back, and brought back as
/// they were before. The form then shows what it showed at first, and a save makes that what the server has.
TEST_F(BringBackTest, WhatWasChangedIsAsBeforeOnEveryScreen) {
    SignOn("SYSADMIN");
    prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
    const auto database = GetLibrary().Connect();
    const server::Registry& registry = GetLibrary().GetRegistry();
    testing::RecordChanger changer(*database, registry.GetTables());
    int restored = 0;
    for (const ScreenEntry& entry : App().catalogue.Entries()) {
        SCOPED_TRACE(entry.key.toStdString());
        // Whoever changes his own rights at random is out.
        if (entry.groupKey == u"Tools" || entry.key == u"Security_MasterProfile")
            continue;
        auto* screen = dynamic_cast<MaintenanceScreen*>(&Open(entry.key));
        if (!screen)
            continue;
        for (const TableDeclaration& table : screen->Declaration().tables) {
            const TableSpec& spec = table.spec;
            const QString word = SubjectOf(spec.getRequest.isEmpty() ? spec.listRequest : spec.getRequest);
            const server::RequestRule* rule = registry.ReadRuleOfWord(word);
            const auto* grid = screen->findChild<ListGrid*>(spec.gridName);
            if (!rule || !grid || !screen->MayBringBack(word, false))
                continue;
            for (const QString& key : grid->Model().ShownKeys().mid(0, 2)) {
                SCOPED_TRACE(word.toStdString() + ' ' + key.toStdString());
                const auto id = IdOf(*database, *rule, key);
                const auto before = screen->ReadState(word, key);
                if (!id || !before)
                    continue;
                const qint64 number =
                    database->FirstValue("SELECT COALESCE(MAX(id), 0) FROM history_requests").toLongLong();
                for (int i = 0; i < 3; ++i)
                    changer.Change({rule->tables.first(), *id});
                RecordHistory history(App(), {word, {}, key, [&](RequestChannel& channel) {
                                                  channel.PutField("HRow", QString::number(*id));
                                              }});
                ASSERT_EQ(history.ReadMore(), wire::status::Ok);
                qsizetype oldest = -1;
                while (oldest + 1 < history.Entries().size() && history.Entries()[oldest + 1].number > number)
                    ++oldest;
                if (oldest < 0)
                    continue;
                const auto state = history.Before(oldest);
                ASSERT_TRUE(state);
                EXPECT_EQ(WordsOf(*state), WordsOf(*before)) << Differences(*state, *before).toStdString();
                ++restored;
            }
        }
    }
    EXPECT_GT(restored, 60);
}

} // namespace
} // namespace sysadmin
