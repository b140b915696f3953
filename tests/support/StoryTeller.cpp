#include "support/StoryTeller.h"

#include "core/Screen.h"
#include "framework/Captions.h"
#include "framework/DateEdit.h"
#include "framework/FieldLabel.h"
#include "framework/forms/ShownDate.h"
#include "support/Words.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QFile>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

namespace sysadmin {

namespace {

/// Days that stand for themselves: "$today", "$tomorrow", "$yesterday", "$nextYear"; and "$shown(2026-11-21)"
/// for a date as people read it.
QString Dated(QString line) {
    const QDate today = QDate::currentDate();
    const std::initializer_list<std::pair<const char*, QDate>> days{{"$today", today},
                                                                    {"$tomorrow", today.addDays(1)},
                                                                    {"$yesterday", today.addDays(-1)},
                                                                    {"$nextYear", today.addYears(1)}};
    for (const auto& [name, day] : days) {
        line.replace(QString(name) + "/", day.toString("MM/dd/yyyy"));
        line.replace(name, day.toString("yyyyMMdd"));
    }
    static const QRegularExpression shown("\\$shown\\(([^)]*)\\)");
    for (QRegularExpressionMatch match = shown.match(line); match.hasMatch(); match = shown.match(line))
        line.replace(match.capturedStart(), match.capturedLength(),
                     ShownDate(match.captured(1), match.captured(1).contains(':') ? WireMoment : WireDate));
    return line;
}

Qt::Key KeyOf(const QString& name) {
    static const QHash<QString, Qt::Key> keys{
        {"Return", Qt::Key_Return}, {"Tab", Qt::Key_Tab},       {"Escape", Qt::Key_Escape},
        {"Insert", Qt::Key_Insert}, {"Delete", Qt::Key_Delete}, {"F2", Qt::Key_F2},
        {"Save", Qt::Key_S},        {"F4", Qt::Key_F4},         {"Up", Qt::Key_Up},
        {"End", Qt::Key_End},       {"Home", Qt::Key_Home}};
    if (!keys.contains(name))
        throw std::runtime_error("no key " + name.toStdString());
    return keys[name];
}

QString Said(const ScriptedChannel::Sent& request) {
    QString line = request.name;
    for (const wire::Field& field : request.fields)
        line += " " + field.tag + "=" + field.value;
    return line;
}

} // namespace

void StoryTeller::Tell(const testing::Story& story) {
    m_file = story.file;
    TellLines(story.lines);
}

void StoryTeller::TellLines(const Lines& lines) {
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const auto& [number, line] = lines[i];
        const ::testing::ScopedTrace trace(qPrintable(m_file), number, line.toStdString());
        try {
            if (!line.startsWith("dialog ")) {
                Do(line);
                continue;
            }
            Lines inside;
            for (int depth = 1; depth > 0;) {
                inside.append(lines.at(++i));
                depth += inside.last().second.startsWith("dialog ") ? 1
                         : inside.last().second == u"end"           ? -1
                                                                    : 0;
            }
            inside.removeLast();
            ExpectDialog(line.mid(7), inside);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

void StoryTeller::ExpectDialog(const QString& name, const Lines& inside) {
    prompter.ExpectDialogResult(name, [this, inside](QDialog& dialog) {
        QWidget* before = std::exchange(front, &dialog);
        TellLines(inside);
        front = before;
    });
}

void StoryTeller::Do(const QString& line) {
    Words words = testing::SplitWords(Dated(line));
    const QString command = words.takeFirst();
    if (!OnStage(command, words) && !ComesUp(command, words) && !Act(command, words) &&
        !LookAtTraffic(command, words) && !Look(command, words))
        throw std::runtime_error("no command " + command.toStdString());
}

/// box: TEXT [ICON] [no] [TITLE]
bool StoryTeller::ComesUp(const QString& command, const Words& all) {
    if (command == u"error") {
        ExpectErrorDialog(prompter, all[1], all[0].toShort(), all[2], all[3]);
        return true;
    }
    if (command != u"box")
        return false;
    Words words = all;
    static const QHash<QString, Box::Icon> icons{{"Information", Box::Icon::Information},
                                                 {"Question", Box::Icon::Question},
                                                 {"Exclamation", Box::Icon::Exclamation},
                                                 {"Critical", Box::Icon::Critical}};
    const QString text = words.takeFirst();
    const bool answer = words.removeAll("no") == 0;
    const bool more = words.removeAll("more") > 0;
    std::optional<Box::Icon> icon;
    if (icons.contains(words.value(0)))
        icon = icons[words.takeFirst()];
    prompter.ExpectBox(text, answer, icon, words.isEmpty() ? std::nullopt : std::optional(words[0]), more);
    return true;
}

bool StoryTeller::Act(const QString& command, const Words& words) {
    if (command == u"click") {
        for (const QString& name : words)
            Click(Around(name), name);
    } else if (command == u"type") {
        Type(Around(words[0]), words[0], words[1]);
    } else if (command == u"fill") {
        for (qsizetype i = 1; i < words.size(); ++i)
            Do(QString("type %1_%2 \"%3\"").arg(words[0]).arg(i - 1).arg(words[i]));
    } else if (command == u"keys") { // into whatever has the focus then
        Seen(words[0]).setFocus();
        for (const QChar letter : words[1])
            QTest::keyClick(front->focusWidget(), letter.toLatin1());
    } else if (command == u"paste") {
        QWidget& edit = Seen(words[0]); // of one line or of several
        QGuiApplication::clipboard()->setText(words[1]);
        edit.setFocus();
        QMetaObject::invokeMethod(&edit, "selectAll");
        QMetaObject::invokeMethod(&edit, "paste");
    } else if (command == u"press") {
        QWidget* popup = QApplication::activePopupWidget();
        if (words[1] == u"popup" && !popup)
            throw std::runtime_error("no list or calendar is open");
        QWidget& target = words[1] != u"popup"   ? Seen(words[1])
                          : popup->focusWidget() ? *popup->focusWidget()
                                                 : *popup;
        if (!popup)
            target.setFocus();
        const bool alt = words[0].startsWith("Alt+");
        QTest::keyClick(&target, KeyOf(alt ? words[0].mid(4) : words[0]),
                        alt                   ? Qt::AltModifier
                        : words[0] == u"Save" ? Qt::ControlModifier
                                              : Qt::NoModifier);
        QApplication::processEvents(); // what is told once the focus has moved on
    } else if (command == u"check" || command == u"uncheck") {
        for (const QString& name : words)
            Check(Around(name), name, command == u"check");
    } else if (command == u"choose") {
        Choose(Around(words[0]), words[0], words[1]);
    } else if (command == u"select") {
        static_cast<ListGrid&>(Seen(words[0])).SelectKeys(words.mid(1));
    } else if (command == u"row") { // by its beginning
        Select(Around(words[0]), words[1], words[0]);
    } else if (command == u"column") {
        emit Grid(words[0]).horizontalHeader()->sectionClicked(words[1].toInt());
    } else if (command == u"edit") { // GRID KEY COLUMN TEXT
        GridModel& model = Grid(words[0]).Model();
        model.setData(model.index(model.DisplayRow(words[1]), words[2].toInt()), words[3]);
        QCoreApplication::processEvents(); // the row is rewritten once the cell's editor is gone
    } else if (command == u"tick") {
        auto& list = Get<QListWidget>(words[0]);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualItemRect(list.item(words[1].toInt())).center());
    } else if (command == u"tab") {
        Get<QTabWidget>(words[0]).setCurrentIndex(words[1].toInt());
    } else if (command == u"date") {
        Type(Around(words[0]), words[0], QDate::fromString(words[1], "yyyyMMdd").toString(Qt::ISODate));
    } else if (command == u"reload") {
        static_cast<Screen*>(front)->LoadScreen();
    } else if (command == u"give-up") {
        static_cast<QDialog*>(front)->reject();
    } else {
        return false;
    }
    return true;
}

bool StoryTeller::Look(const QString& command, const Words& words) {
    const auto each = [&](const auto& test, bool wanted) {
        for (const QString& name : words)
            EXPECT_EQ(test(Seen(name)), wanted) << name.toStdString();
    };
    if (command == u"rows") {
        EXPECT_EQ(GridRows(Around(words[0]), words[0]), words.mid(1));
    } else if (command == u"cells") { // of the window's grid, or a named one, from this column on
        QStringList rows;
        const qsizetype first = words[0][0].isDigit() ? 0 : 1;
        const GridModel& model = front->findChild<ListGrid*>(first == 1 ? words[0] : QString())->Model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = words[first].toInt(); column < model.columnCount(); ++column)
                cells.append(model.CellText(row, column));
            rows.append(cells.join('|'));
        }
        EXPECT_EQ(rows, words.mid(first + 1));
    } else if (command == u"exports") {
        const QTemporaryDir directory;
        prompter.ExpectSaveFile(directory.filePath("out.csv"));
        Click(words[0]);
        QFile file(directory.filePath("out.csv"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(QString::fromUtf8(file.readAll()).remove(QChar(0xFEFF)), words[1]);
    } else if (command == u"opens") {
        prompter.ExpectOpenFile(SYSADMIN_SOURCE_DIR "/tests/data/" + words[1]);
        Click(words[0]);
    } else if (command == u"selected") {
        EXPECT_EQ(static_cast<ListGrid&>(Seen(words[0])).SelectedKeys(), words.mid(1));
    } else if (command == u"shows") {
        EXPECT_EQ(Shown(words[0]), QString(words[1]).replace("\r\n", "\n"));
    } else if (command == u"captions") {
        QStringList captions;
        for (const QWidget* widget : front->findChildren<QWidget*>()) {
            const bool isLabel = qobject_cast<const FieldLabel*>(widget);
            const bool isOption =
                qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QRadioButton*>(widget);
            if (widget->isVisible() && (isLabel || isOption))
                captions.append(DeclaredCaption(*widget));
        }
        EXPECT_EQ(captions, words);
    } else if (command == u"title") {
        EXPECT_EQ(front->windowTitle(), words[0]);
    } else if (command == u"caption") {
        EXPECT_EQ(FrameCaption(), words[0]);
    } else if (command == u"entries") {
        QStringList entries;
        const auto& box = static_cast<QComboBox&>(Seen(words[0]));
        for (int i = 0; i < box.count(); ++i)
            entries.append(box.itemText(i));
        EXPECT_EQ(entries, words.mid(1));
    } else if (command == u"enabled" || command == u"disabled") {
        each([](const QWidget& widget) { return widget.isEnabled(); }, command == u"enabled");
    } else if (command == u"hidden" || command == u"seen") {
        each([](const QWidget& widget) { return widget.isVisible(); }, command == u"seen");
    } else if (command == u"locked") {
        each([](const QWidget& widget) { return widget.property("readOnly").toBool(); }, true);
    } else if (command == u"focus") {
        EXPECT_TRUE(Seen(words[0]).hasFocus());
    } else if (command == u"tabs") { // those that can be chosen
        QStringList tabs;
        const auto& bar = Get<QTabWidget>(words[0]);
        for (int i = 0; i < bar.count(); ++i)
            if (bar.isTabEnabled(i) && (bar.tabBar()->isEnabled() || i == bar.currentIndex()))
                tabs.append(QString(bar.tabText(i)).remove('&'));
        EXPECT_EQ(tabs, words.mid(1));
    } else if (command == u"close") { // yes or no
        EXPECT_EQ(front->close(), words[0] == u"yes");
    } else if (command == u"stays") {
        EXPECT_TRUE(front->isVisible());
    } else {
        return false;
    }
    return true;
}

bool StoryTeller::LookAtTraffic(const QString& command, const Words& words) {
    if (command != u"sent" && command != u"sends" && command != u"requests" && command != u"tags")
        return false;
    const QList<ScriptedChannel::Sent> traffic = Traffic();
    ScriptedChannel::Sent last;
    QStringList names;
    for (const ScriptedChannel::Sent& request : traffic) {
        names.append(request.name);
        if (command == u"sent" || request.name == words[0])
            last = request;
    }
    if (command == u"tags") {
        EXPECT_EQ(last.name, words[0]) << "was never sent";
        QString sent;
        for (const wire::Field& field : last.fields)
            sent += field.tag + ' ';
        QString pattern;
        for (const QString& word : words.mid(1))
            pattern += word == u"(" ? "(?:" : word == u")" ? ")+" : QRegularExpression::escape(word + ' ');
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(sent).hasMatch())
            << sent.toStdString();
    } else if (command == u"sent") {
        EXPECT_EQ(Said(last), Said({words[0], testing::FieldsOf(words.mid(1))}));
    } else if (command == u"sends") {
        EXPECT_EQ(last.name, words[0]) << "was never sent";
        for (const QString& word : words.mid(1))
            EXPECT_EQ(last.Values(word.section(':', 0, 0)).join('|'), word.section(':', 1))
                << word.toStdString();
    } else {
        EXPECT_EQ(names.mid(m_looked), words);
        m_looked = names.size();
    }
    return true;
}

QWidget& StoryTeller::Seen(const QString& name) {
    const QList<QWidget*> all = front->findChildren<QWidget*>(name);
    for (QWidget* widget : all)
        if (widget->isVisible())
            return *widget;
    if (all.isEmpty())
        throw std::runtime_error("no control " + name.toStdString());
    return *all.first();
}

QString StoryTeller::Shown(const QString& name) {
    QWidget& widget = Seen(name);
    if (const auto* edit = qobject_cast<QPlainTextEdit*>(&widget))
        return edit->toPlainText();
    if (const auto* page = qobject_cast<QTextEdit*>(&widget))
        return page->toPlainText();
    if (const auto* edit = qobject_cast<DateEdit*>(&widget))
        return QLocale().toDate(edit->text(), "M/d/yyyy").toString("yyyyMMdd");
    if (const auto* box = qobject_cast<QComboBox*>(&widget))
        return box->currentText();
    if (const auto* box = qobject_cast<QGroupBox*>(&widget))
        return box->title();
    if (const auto* button = qobject_cast<QAbstractButton*>(&widget); button && button->isCheckable())
        return button->isChecked() ? "Y" : "N";
    if (const auto* list = qobject_cast<QListWidget*>(&widget)) { // its marks
        QString marks;
        for (int i = 0; i < list->count(); ++i)
            marks += list->item(i)->checkState() == Qt::Checked ? 'Y' : 'N';
        return marks;
    }
    const QVariant text = widget.property("text");
    return text.isValid() ? text.toString() : widget.accessibleDescription(); // of a picture
}

} // namespace sysadmin
