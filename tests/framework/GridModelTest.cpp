#include "framework/GridModel.h"
#include "framework/MomentReader.h"

#include <QAbstractItemModelTester>
#include <QCollator>
#include <QDateTime>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace sysadmin {
namespace {

const QList<GridColumn> CodeNameHidden{
    {.caption = "Codes", .width = 80}, {.caption = "Names"}, {.caption = "Id", .hidden = true}};

QStringList Sorted(const QStringList& cells, Qt::SortOrder order = Qt::AscendingOrder) {
    GridModel model({{.caption = "Only"}});
    QList<GridRow> rows;
    for (qsizetype i = 0; i < cells.size(); ++i)
        rows.append({QString::number(i), {cells[i]}, {}});
    model.SetRows(rows);
    model.sort(0, order);
    QStringList shown;
    for (int i = 0; i < model.rowCount(); ++i)
        shown.append(model.CellText(i, 0));
    return shown;
}

// What the model should show, computed the slow and plain way.
QStringList ExpectedKeys(const QList<GridRow>& rows, const QString& filter, int column, Qt::SortOrder order) {
    QList<GridRow> shown;
    for (const GridRow& row : rows)
        if (row.cells[0].contains(filter, Qt::CaseInsensitive) ||
            row.cells[1].contains(filter, Qt::CaseInsensitive))
            shown.append(row);
    if (column >= 0)
        std::stable_sort(shown.begin(), shown.end(), [=](const GridRow& a, const GridRow& b) {
            const int comparison = a.cells[column].compare(b.cells[column], Qt::CaseInsensitive);
            return order == Qt::AscendingOrder ? comparison < 0 : comparison > 0;
        });
    QStringList keys;
    for (const GridRow& row : shown)
        keys.append(row.key);
    return keys;
}

struct SortCase {
    const char* what;
    QStringList given;
    QStringList expected;
};

TEST(GridModelTest, SortsAsPeopleDo) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const QList<SortCase> cases{
        {"case does not count", {"beta", "Alpha", "alpha2", "Beta1"}, {"Alpha", "alpha2", "beta", "Beta1"}},
        {"digits in text by value", {"Room 10", "Room 9", "room 1"}, {"room 1", "Room 9", "Room 10"}},
        {"numbers by value", {"10", "-3", "9.5", "", "1,000"}, {"", "-3", "9.5", "10", "1,000"}},
        {"one word makes it text", {"10", "x", "9"}, {"9", "10", "x"}},
        {"a day that there is not is text",
         {"2/30/26", "12/1/25", "2/3/26"},
         {"2/3/26", "2/30/26", "12/1/25"}},
        {"nan is a word", {"nan", "2", "10"}, {"2", "10", "nan"}},
        {"dates by day", {"12/1/25", "2/3/26", "11/30/25"}, {"11/30/25", "12/1/25", "2/3/26"}},
        {"accents beside their letter",
         {"zebra", "\u00e9tude", "Etta", "eta"},
         {"eta", "Etta", "\u00e9tude", "zebra"}},
        {"addresses by part", {"10.1.10.1", "10.1.9.1", "9.0.0.1"}, {"9.0.0.1", "10.1.9.1", "10.1.10.1"}},
    };
    for (const SortCase& one : cases)
        EXPECT_EQ(Sorted(one.given), one.expected) << one.what;
    QLocale::setDefault(before);
}

// What is seen counts, not what travels.
TEST(GridModelTest, ColumnsOfDatesAndIdsAreSortedAsTheyAreShown) {
    GridModel model({{.caption = "Since", .dateFormat = "MM/dd/yyyy HH:mm:ss"},
                     {.caption = "Kind", .items = {{"1", "Zebra"}, {"2", "Ape"}}}});
    model.SetRows({{"a", {"12/31/2024 08:00:00", "1"}, {}},
                   {"b", {"01/02/2026 07:59:59", "2"}, {}},
                   {"c", {"01/02/2026 07:59:58", "1"}, {}}});
    model.sort(0);
    EXPECT_EQ(model.ShownKeys(), QStringList({"a", "c", "b"}));
    model.sort(1);
    EXPECT_EQ(model.ShownKeys(), QStringList({"b", "a", "c"}));
}

// Columns of every kind against the plain way to sort them; rows that change in between, too.
TEST(GridModelTest, SortsLikeAPlainStableSort) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QCollator collator(QLocale{});
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    QRandomGenerator random(20261122);
    const auto number = [&] { return QString::number(random.bounded(401) - 200); };
    const auto textsOf = [&](const QString& letters) {
        QString text;
        for (int i = random.bounded(10); i > 0; --i)
            text += letters[random.bounded(int(letters.size()))];
        return text;
    };
    struct Kind {
        GridColumn column;
        std::function<QString()> cell;
        std::function<double(const QString&)> value; // none: a text
    };
    const auto dayOf = [](const QString& format) {
        return [=](const QString& cell) { return double(QDate::fromString(cell, format).toJulianDay()); };
    };
    const auto day = [&] { return QDate(1999, 12, 1).addDays(random.bounded(700)); };
    const QList<Kind> kinds{
        {{}, number, [](const QString& cell) { return cell.toDouble(); }},
        {{},
         [&] { return QString::number(random.bounded(1.0) - 0.5, 'g', 3); },
         [](const QString& cell) { return cell.toDouble(); }},
        {{}, [&] { return ShownDate(day()); }, dayOf(DateForm())},
        {{.dateFormat = "yyyyMMdd"}, [&] { return day().toString("yyyyMMdd"); }, dayOf("yyyyMMdd")},
        {{}, [&] { return "Room " + textsOf("019aB"); }, {}},
        {{}, [&] { return textsOf("aAbZ 0079-_."); }, {}},
        {{}, [&] { return textsOf(QString::fromUtf8("aeéÄzßøЖ文 1")); }, {}},
        {{.items = {{"1", "Zebra"}, {"2", "ape"}, {"3", "Ape"}}},
         [&] { return QString::number(random.bounded(4)); },
         {}},
    };
    for (int round = 0; round < 24; ++round) {
        const Kind& kind = kinds[round % kinds.size()];
        SCOPED_TRACE(round);
        QList<GridRow> rows;
        for (int i = 0; i < 300; ++i)
            rows.append({QString::number(i), {random.bounded(30) == 0 ? QString() : kind.cell()}, {}});
        GridModel model({kind.column});
        model.SetRows(rows);
        for (int step = 0; step < 4; ++step) {
            const auto direction = random.bounded(2) ? Qt::AscendingOrder : Qt::DescendingOrder;
            model.sort(0, direction);
            QList<GridRow> expected = rows;
            std::stable_sort(expected.begin(), expected.end(), [&](const GridRow& one, const GridRow& two) {
                const bool turned = direction == Qt::DescendingOrder;
                const QString a = (turned ? two : one).cells[0];
                const QString b = (turned ? one : two).cells[0];
                if (!kind.value)
                    return collator.compare(ShownText(kind.column, a), ShownText(kind.column, b)) < 0;
                return a.isEmpty() || b.isEmpty() ? a.isEmpty() && !b.isEmpty()
                                                  : kind.value(a) < kind.value(b);
            });
            QStringList keys;
            for (const GridRow& row : expected)
                keys.append(row.key);
            ASSERT_EQ(model.ShownKeys(), keys) << "direction " << direction;
            for (int change = 0; change < 3; ++change) {
                GridRow& row = rows[random.bounded(int(rows.size()))];
                row.cells[0] = kind.cell();
                model.PutRow(row);
            }
        }
    }
    QLocale::setDefault(before);
}

// All at once and without case, as the cells one by one would.
TEST(GridModelTest, FindsWhatACellContains) {
    QRandomGenerator random(20261123);
    const QStringList letters = QString::fromUtf8("a A ß ẞ s S İ i I Σ ς σ é 𐐀 𐐨 1").split(' ');
    const auto text = [&](int most) {
        QString made;
        for (int i = random.bounded(most + 1); i > 0; --i)
            made += letters[random.bounded(int(letters.size()))];
        return made;
    };
    for (int round = 0; round < 300; ++round) {
        QList<GridRow> rows;
        for (int i = 0; i < 30; ++i)
            rows.append({QString::number(i), {text(5), text(5), "hidden"}, {}});
        GridModel model(CodeNameHidden);
        model.SetRows(rows);
        const QString filter = text(3);
        model.SetFilter(filter);
        EXPECT_EQ(model.ShownKeys(), ExpectedKeys(rows, filter, -1, Qt::AscendingOrder))
            << filter.toStdString();
    }
}

// It stands in for Qt's own reading, which takes a hundred times as long.
TEST(MomentReaderTest, ReadsWhatQtReadsAndNothingElse) {
    QRandomGenerator random(20261122);
    const QDateTime first(QDate(1900, 1, 1), QTime(0, 0), Qt::UTC);
    for (const QString format :
         {"yyyyMMdd", "MM/dd/yyyy", "M/d/yy", "d.M.yyyy", "yyyy-MM-dd HH:mm:ss", "dd/MM/yyyy H:mm"}) {
        SCOPED_TRACE(format.toStdString());
        const MomentReader reader(format);
        const bool hasTime = format.contains('H');
        const auto wanted = [&](const QString& text) -> std::optional<double> {
            const QDateTime read = QDateTime::fromString(text, format);
            if (!read.isValid())
                return std::nullopt;
            return double(read.date().toJulianDay()) * 86400 +
                   (hasTime ? read.time().msecsSinceStartOfDay() / 1000 : 0);
        };
        for (int i = 0; i < 300; ++i) {
            QString text = first.addSecs(qint64(random.bounded(1.0) * 100 * 365 * 86400)).toString(format);
            EXPECT_EQ(reader.Read(text), wanted(text)) << text.toStdString();
            // One letter is another one, or missing, or too many: mostly no date any more.
            const qsizetype at = random.bounded(text.size());
            switch (random.bounded(3)) {
            case 0:
                text[at] = QChar(u'0' + random.bounded(10));
                break;
            case 1:
                text.remove(at, 1);
                break;
            default:
                text.insert(at, QChar(u'0' + random.bounded(12)));
            }
            if (const auto read = reader.Read(text)) {
                EXPECT_EQ(read, wanted(text)) << text.toStdString();
            }
        }
        for (const char* nothing : {"", "x", "32", "99/99/9999", "00000000", "2026-02-30 00:00:00"})
            EXPECT_FALSE(reader.Read(QString(nothing))) << nothing;
    }
}

TEST(GridModelTest, EqualCellsKeepTheirOrderBothWays) {
    GridModel model({{.caption = "Only"}});
    model.SetRows({{"1", {"same"}, {}}, {"2", {"SAME"}, {}}, {"3", {"other"}, {}}, {"4", {"same"}, {}}});
    model.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(model.ShownKeys(), QStringList({"3", "1", "2", "4"}));
    model.sort(0, Qt::DescendingOrder);
    EXPECT_EQ(model.ShownKeys(), QStringList({"1", "2", "4", "3"}));
    model.sort(-1);
    EXPECT_EQ(model.ShownKeys(), QStringList({"1", "2", "3", "4"}));
}

TEST(GridModelTest, ANumberColumnThatGetsAWordIsSortedAnew) {
    GridModel model({{.caption = "Only"}});
    model.SetRows({{"1", {"-1"}, {}}, {"2", {"-2"}, {}}, {"3", {"7"}, {}}});
    model.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(model.ShownKeys(), QStringList({"2", "1", "3"}));
    model.PutRow({"3", {"none"}, {}});
    EXPECT_EQ(model.ShownKeys(), QStringList({"1", "2", "3"}));
}

TEST(GridModelTest, YesNoCellsAreMarks) {
    GridModel model({{.caption = "Default", .yesNo = true}});
    model.SetRows({{"1", {"Y"}, {}}, {"2", {"N"}, {}}});
    EXPECT_EQ(model.index(0, 0).data(), QString(QChar(0x2713)));
    EXPECT_EQ(model.index(1, 0).data(), QString());
    EXPECT_EQ(model.index(1, 0).data(Qt::AccessibleTextRole), "No");
}

TEST(GridModelTest, StaysRightThroughRandomChanges) {
    QRandomGenerator random(20240611);
    GridModel model(CodeNameHidden);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QList<GridRow> rows;
    QString filter;
    int column = -1;
    Qt::SortOrder order = Qt::AscendingOrder;
    // Few different letters, so that equal cells and rows that come and go with the filter are common.
    const auto word = [&]() -> QString {
        return QString(QChar(u'a' + random.bounded(5))) + QChar(u'p' + random.bounded(3));
    };
    for (int step = 0; step < 3000; ++step) {
        const QString key = QString::number(random.bounded(40));
        switch (random.bounded(8)) {
        case 0:
            filter = random.bounded(2) ? QString() : word().left(1 + random.bounded(2));
            model.SetFilter(filter);
            break;
        case 1:
            column = random.bounded(3) - 1;
            order = random.bounded(2) ? Qt::AscendingOrder : Qt::DescendingOrder;
            model.sort(column, order);
            break;
        case 2:
            if (random.bounded(20) == 0) {
                rows = rows.mid(0, random.bounded(5));
                model.SetRows(rows);
            } else { // a few rows go, change their places, or come in between
                for (int change = random.bounded(4); change > 0 && !rows.isEmpty(); --change) {
                    GridRow row = rows.takeAt(random.bounded(rows.size()));
                    if (random.bounded(3) == 0)
                        continue;
                    if (random.bounded(2) == 0)
                        row.cells[0] = word();
                    rows.insert(random.bounded(rows.size() + 1), row);
                }
                model.ReplaceRows(rows);
            }
            break;
        case 3:
        case 4: {
            const auto removed = rows.removeIf([&](const GridRow& row) { return row.key == key; });
            ASSERT_EQ(model.RemoveRow(key), removed > 0);
            break;
        }
        default: {
            const GridRow row{key, {word(), word(), "hidden"}, {}};
            const auto old =
                std::find_if(rows.begin(), rows.end(), [&](const GridRow& one) { return one.key == key; });
            if (old == rows.end())
                rows.append(row);
            else
                *old = row;
            model.PutRow(row);
        }
        }
        ASSERT_EQ(model.ShownKeys(), ExpectedKeys(rows, filter, column, order)) << "step " << step;
    }
}

} // namespace
} // namespace sysadmin
