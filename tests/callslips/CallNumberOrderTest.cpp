#include "callslips/CallNumberOrder.h"

#include <QFile>
#include <gtest/gtest.h>

namespace sysadmin::callslips {

namespace {

struct Shelf {
    QString kind; // "order", "same" or "wrong"
    Scheme scheme;
    QStringList numbers;
};

QList<Shelf> Shelves() {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/callslips/shelves.txt");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Shelf> shelves;
    for (QString line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        if (line.startsWith('#'))
            continue;
        QString kind = "order";
        if (line[0].isLetter()) {
            kind = line.section(' ', 0, 0);
            line = line.section(' ', 1);
        }
        QStringList numbers;
        for (const QString& number : line.section(' ', 1).split('|'))
            numbers.append(number.trimmed());
        shelves.append({kind, SchemeOf(line.section(' ', 0, 0)), numbers});
    }
    return shelves;
}

TEST(CallNumberOrderTest, ShelvesStandInOrder) {
    const QList<Shelf> shelves = Shelves();
    ASSERT_GE(shelves.size(), 10);
    for (const Shelf& shelf : shelves)
        for (qsizetype i = 0; i < shelf.numbers.size(); ++i) {
            const QString& number = shelf.numbers[i];
            EXPECT_EQ(IsCallNumber(number, shelf.scheme), shelf.kind != "wrong") << number.toStdString();
            if (i == 0 || shelf.kind == "wrong")
                continue;
            const QString before = SortKey(shelf.numbers[i - 1], shelf.scheme);
            const QString key = SortKey(number, shelf.scheme);
            if (shelf.kind == "same")
                EXPECT_EQ(before, key) << number.toStdString();
            else
                EXPECT_LT(before, key)
                    << shelf.numbers[i - 1].toStdString() << " and " << number.toStdString();
        }
}

} // namespace

} // namespace sysadmin::callslips
