#include "cataloging/FieldReorder.h"

#include "marc/ReadRecords.h"

#include <QFile>

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

/// "6XX:5 6XX*0,8": words of an order line.
FieldOrderConfig Configuration(const QString& line) {
    FieldOrderConfig configuration;
    FieldOrderGroup* group = nullptr;
    const auto addRule = [&](const QString& text) {
        group->rules.append({.ruleId = text.section(' ', 0, 0).toInt(), .parameter = text.section(' ', 1)});
    };
    // A blank stands between groups and between an option and its parameter: a pattern has no digit alone.
    QString text = line;
    for (const QString& part : text.split(' ')) {
        if (part == "pairs") {
            configuration.pairing880 = true;
        } else if (group && !group->rules.isEmpty() && group->rules.last().parameter == "?") {
            group->rules.last().parameter = part.section(',', 0, 0);
            for (const QString& more : part.split(',').mid(1))
                addRule(more + (QStringList{"3", "4", "5", "9", "10", "11"}.contains(more) ? " ?" : ""));
        } else {
            configuration.groups.append(FieldOrderGroup());
            group = &configuration.groups.last();
            group->match = part.section(':', 0, 0);
            for (const QString& rule : part.section(':', 1).split(',', Qt::SkipEmptyParts))
                addRule(rule + (QStringList{"3", "4", "5", "9", "10", "11"}.contains(rule) ? " ?" : ""));
        }
    }
    configuration.Renumber();
    return configuration;
}

/// "2.1", "1.-+", "c", "n": what placed the field.
QString InWords(const PlacedField& field) {
    QString words = field.group == PlacedField::Control ? QString("c")
                    : field.group == PlacedField::NoGroup
                        ? QString("n")
                        : QString::number(field.group + 1) + '.' +
                              (field.rule < 0 ? QString("-") : QString::number(field.rule + 1));
    return field.isPaired ? words + '+' : words;
}

TEST(FieldReorderTest, OrdersAreReckonedByHand) {
    QFile file(SYSADMIN_SOURCE_DIR "/tests/cataloging/orders.txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString name;
    QString order;
    QString record;
    QStringList placed;
    int cases = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith("case ")) {
            name = line.mid(5);
            record.clear();
            placed.clear();
        } else if (line.startsWith("order ")) {
            order = line.mid(6);
        } else if (line.startsWith("then ")) {
            ++cases;
            const marc::Result read = marc::ReadRecords(record);
            ASSERT_EQ(read.problems, QStringList()) << name.toStdString();
            QStringList places;
            QStringList words = placed;
            for (const PlacedField& field : Reorder(read.records.value(0), Configuration(order))) {
                places.append(QString::number(field.from + 1));
                words[field.from] = InWords(field);
            }
            EXPECT_EQ(places.join(' '), line.mid(5)) << name.toStdString();
            EXPECT_EQ(words, placed) << name.toStdString();
        } else {
            record += line.section(" = ", 0, 0) + '\n';
            placed.append(line.section(" = ", 1));
        }
    }
    EXPECT_GT(cases, 10);
}

} // namespace

} // namespace sysadmin
