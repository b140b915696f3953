#include "wire/ItemText.h"
#include "wire/SearchIndexes.h"

#include <gtest/gtest.h>

#include <random>

namespace sysadmin::wire {
namespace {

TEST(ItemTextTest, ItemsAreReadSetAndTakenAwayInTheirPlaces) {
    ItemText items("  IX=C X Q==7  CS=A~B CS=C ");
    EXPECT_EQ(items.Value("CS"), "A~B");
    EXPECT_EQ(items.Value("Q"), "=7");
    EXPECT_TRUE(items.Has("X"));
    EXPECT_FALSE(items.Has(""));
    items.Set("CS", "D");
    items.Set("IDS", "Y");
    EXPECT_EQ(items.Text(), "  IX=C X Q==7  CS=D CS=C  IDS=Y");
    items.Set("CS", "");
    EXPECT_EQ(items.Text(), "  IX=C X Q==7   IDS=Y");
    EXPECT_EQ(items.Others({"IX", "IDS"}), (QStringList{"X", "Q==7"}));
    ItemText made;
    made.Set("IX", "C");
    made.Set("CS", "A~B");
    EXPECT_EQ(made.Text(), "IX=C CS=A~B");
}

// Whatever stands in a text that others wrote: reading it, and setting what it says already, alters nothing,
// and setting one item alters no other.
TEST(ItemTextTest, AnyTextSurvives) {
    std::mt19937 random(1);
    const QStringList keys{"IX", "CS", "S+", "1-", "IDS"};
    const QStringList pieces{"IX", "CS", "S+", "1-", "IDS", "=", " ", "  ", "~", "Y", "é", "\t", "x=y"};
    const auto any = [&](const QStringList& of) { return of[qsizetype(random() % quint32(of.size()))]; };
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (quint32 length = random() % 14; length > 0; --length)
            text += any(pieces);
        ItemText items(text);
        ASSERT_EQ(items.Text(), text);
        for (const QString& key : keys)
            if (!items.Value(key).isEmpty())
                items.Set(key, items.Value(key));
        ASSERT_EQ(items.Text(), text);

        const QString key = any(keys);
        const QStringList others = items.Others({key});
        const QString value = random() % 3 == 0 ? QString() : QString("v%1").arg(round);
        items.Set(key, value);
        ASSERT_EQ(items.Value(key), value) << text.toStdString();
        ASSERT_EQ(items.Others({key}), others) << text.toStdString();
        ASSERT_EQ(ItemText(items.Text()).Text(), items.Text());
    }
}

} // namespace
} // namespace sysadmin::wire
