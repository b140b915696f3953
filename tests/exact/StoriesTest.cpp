#include "exact/Rig.h"
#include "exact/TestScreens.h"
#include "support/JobTest.h"
#include "support/ScreenTest.h"
#include "support/Words.h"

#include <QAction>
#include <QLabel>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

namespace sysadmin::exact {

namespace {

using sysadmin::testing::Story;

/// One screen with a scripted server.
class ScreenStory : public ScreenTest, public ::testing::WithParamInterface<Story> {
protected:
    QList<ScriptedChannel::Sent> Traffic() const override { return channel.sent; }
    bool OnStage(const QString& command, const Words& words) override;

private:
    bool Look(const QString& command, const Words& words);
};

bool ScreenStory::OnStage(const QString& command, const Words& words) {
    if (command == u"rights") {
        SetRights(words[0] == u"edit");
    } else if (command == u"answer") {
        const bool fails = words.value(1) == u"!";
        channel.Answer(words[0], fails ? words[2].toShort() : qint16(0),
                       sysadmin::testing::FieldsOf(words.mid(fails ? 3 : 1)));
    } else if (command == u"picklist") {
        QList<PickItem> items;
        for (const QString& word : words.mid(1))
            items.append({word.section(':', 0, 0), word.section(':', 1)});
        application.pickLists.Set(words[0], items);
    } else if (command == u"pick") {
        application.pickLists.Put({words[0]}, {words[1], words[2]});
    } else if (command == u"notice") {
        emit application.notices.SubjectChanged(words[0]);
    } else if (command == u"others") {
        emit application.notices.ChangedByOthers(words[0]);
    } else if (command == u"cluster") {
        application.clusters.Put({{}, words[2], words[1], words[0]});
        application.clusters.SetCurrent(words[0]);
        if (front)
            static_cast<sysadmin::Screen*>(front)->OnClusterChanged();
    } else if (command == u"sort-options") {
        application.orderingRules.Load(channel);
    } else if (command == u"open") {
        if (words[0] == u"TestGroups")
            Open<GroupScreen>();
        else if (words[0] == u"TestCalendars")
            Open<CalendarScreen>();
        else if (words[0] == u"TestMatrix")
            Open<MatrixScreen>();
        else
            Open(AddAllScreens, words[0]);
    } else {
        return Look(command, words);
    }
    return true;
}

bool ScreenStory::Look(const QString& command, const Words& words) {
    if (command == u"held") { // by a shared pick-list
        QStringList items;
        for (const PickItem& item : application.pickLists.Items(words[0]))
            items.append(item.id + ":" + item.text);
        EXPECT_EQ(items, words.mid(1));
    } else if (command == u"current") { // the cluster that is worked in
        const clsCluster* current = application.clusters.Current();
        EXPECT_EQ(current ? current->sClusterID + ":" + current->sClusterName + ":" + current->sInUsePULoc
                          : QString(),
                  words[0]);
    } else if (command == u"decimals") {
        EXPECT_EQ(application.profile.MoneyDecimals(), words[0].toInt());
    } else if (command == u"differs") { // in the question of two versions
        QStringList lines;
        if (const auto* table = front->findChild<QTableWidget*>("vsfDifferences"))
            for (int row = 0; row < table->rowCount(); ++row) {
                QStringList cells;
                for (int column = 0; column < table->columnCount(); ++column)
                    cells << table->item(row, column)->text().replace('\n', '+');
                lines << cells.join('|');
            }
        EXPECT_EQ(lines, words);
        EXPECT_TRUE(Get<QLabel>("lblConflict").text().contains("Anna Weber"));
    } else if (command == u"check-all") { // yes or no, and problems besides
        EXPECT_EQ(static_cast<CalendarScreen*>(front)->CheckAllFields(words.mid(1)), words[0] == u"yes");
    } else if (command == u"comes") { // the list, once it is read again
        EXPECT_TRUE(QTest::qWaitFor([&] { return GridRows() == words; }));
    } else {
        return false;
    }
    return true;
}

TEST_P(ScreenStory, GoesAsItIsWritten) {
    Tell(GetParam());
}

/// The whole client on a server and a library of its own.
class JobStory : public JobTest, public ::testing::WithParamInterface<Story> {
protected:
    bool OnStage(const QString& command, const Words& words) override;
};

bool JobStory::OnStage(const QString& command, const Words& words) {
    if (command == u"as") {
        SignOn(words[0]);
    } else if (command == u"start") { // with the sign-on dialog
        EXPECT_EQ(StartWithDialog(), words[0] == u"yes");
    } else if (command == u"refused") { // at the start
        EXPECT_FALSE(TryToStart(words[0]));
    } else if (command == u"next-day") {
        NextDay();
    } else if (command == u"advance") {
        Advance(words[0].toLongLong());
    } else if (command == u"open") {
        Open(words[0]);
    } else if (command == u"opens-not") {
        Window().OpenScreen(words[0]);
        EXPECT_FALSE(Window().FindScreen(words[0]));
    } else if (command == u"ask") { // STATUS REQUEST TAG=VALUE ...
        EXPECT_EQ(Ask(words[1], sysadmin::testing::FieldsOf(words.mid(2))), words[0].toShort());
    } else if (command == u"menu") {
        Get<QAction>(Window(), words[0]).trigger();
    } else if (command == u"secret") {
        Secret(words[0]);
    } else if (command == u"operator") {
        EXPECT_EQ(App().OperatorId(), words[0]);
    } else if (command == u"offered" || command == u"not-offered") { // beginnings of screens' keys
        for (const QString& key : words)
            EXPECT_EQ(!Offered().filter(QRegularExpression("^" + key)).isEmpty(), command == u"offered")
                << key.toStdString();
    } else if (command == u"offered-all") { // but these, in menu and navigation bar
        QStringList built;
        for (const ScreenEntry& entry : App().catalogue.Entries())
            if (entry.screen.make && !words.contains(entry.groupKey) && !words.contains(entry.key))
                built.append(entry.key);
        EXPECT_EQ(Offered(), built);
        int inBar = 0;
        const auto& bar = Get<QTreeWidget>(Window(), "tvwScreens");
        for (int i = 0; i < bar.topLevelItemCount(); ++i)
            inBar += bar.topLevelItem(i)->childCount();
        EXPECT_EQ(inBar, built.size());
    } else if (command == u"panel") {
        auto& panel = Get<QLabel>(Window(), "lblCluster");
        EXPECT_EQ(panel.isHidden() ? QString() : panel.text(), words[0]);
    } else if (command == u"sql") { // past client and server
        Store().Run(words.join(' '));
    } else if (command == u"stored") { // COUNT SELECT ...
        EXPECT_EQ(Store().FirstValue(words.mid(1).join(' ')).toString(), words[0]);
    } else {
        return false;
    }
    return true;
}

TEST_P(JobStory, GoesAsItIsWritten) {
    Tell(GetParam());
}

template <class Info>
std::string NameOfStory(const Info& story) {
    return NameOf(story.param);
}

INSTANTIATE_TEST_SUITE_P(, ScreenStory,
                         ::testing::ValuesIn(sysadmin::testing::ReadStories("tests/exact/stories")),
                         NameOfStory<::testing::TestParamInfo<Story>>);
INSTANTIATE_TEST_SUITE_P(, JobStory, ::testing::ValuesIn(sysadmin::testing::ReadStories("tests/exact/jobs")),
                         NameOfStory<::testing::TestParamInfo<Story>>);

} // namespace

} // namespace sysadmin::exact
