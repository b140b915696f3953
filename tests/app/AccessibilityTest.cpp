#include "app/DescribeRun.h"
#include "comm/CommandLine.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "look/Appearance.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QPlainTextEdit>
#include <QSet>
#include <QTabBar>
#include <QTabWidget>
#include <QtMath>
#include <gtest/gtest.h>

// Every window of the program, in each of its states, as somebody works with it who uses keys and a screen
// reader: one walk through all of them.
namespace sysadmin {

namespace {

std::string NameOf(const QWidget* widget) {
    return (widget->metaObject()->className() + (' ' + widget->objectName())).toStdString();
}

/// What the Tab key comes by in the window as it shows now, in this order.
QList<QWidget*> TabStops(QWidget& window) {
    QList<QWidget*> stops;
    for (QWidget* widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain())
        if (window.isAncestorOf(widget) && widget->window() == window.window() &&
            widget->isVisibleTo(&window) && widget->isEnabledTo(&window) &&
            (widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy())
            stops.append(widget);
    return stops;
}

/// The widgets that a screen reader finds below the window, down to the parts of a control.
void CollectSpoken(QAccessibleInterface* spoken, QSet<const QObject*>& found) {
    found.insert(spoken->object());
    if (qobject_cast<QAbstractItemView*>(spoken->object()))
        return; // its cells, thousands perhaps
    for (int i = 0; i < spoken->childCount(); ++i)
        if (QAccessibleInterface* child = spoken->child(i); child && child->object())
            CollectSpoken(child, found);
}

void CheckSpoken(QWidget& window) {
    QSet<const QObject*> found;
    CollectSpoken(QAccessible::queryAccessibleInterface(&window), found);
    for (QWidget* widget : TabStops(window)) {
        if (widget->objectName() == u"tabScreens")
            continue; // the area hands on its windows and not their tabs
        SCOPED_TRACE(NameOf(widget));
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(spoken);
        EXPECT_TRUE(found.contains(widget)) << "not in the tree";
        EXPECT_TRUE(spoken->state().focusable);
        const QAccessible::Role role = spoken->role();
        EXPECT_FALSE(role == QAccessible::NoRole || role == QAccessible::Client)
            << QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
        EXPECT_FALSE(spoken->text(QAccessible::Name).trimmed().isEmpty()) << "nothing tells what it is for";
    }
}

/// Down the window, and in a line to the right; up only to what stands beside.
void CheckTabOrder(QWidget& window) {
    const auto place = [&](const QWidget* widget) {
        // What is seen of it: a page that is scrolled goes on behind what stands below it.
        return widget->visibleRegion().boundingRect().translated(widget->mapTo(&window, QPoint(0, 0)));
    };
    const QWidget* last = nullptr;
    for (const QWidget* widget : TabStops(window)) {
        if (widget->visibleRegion().isEmpty())
            continue; // comes into sight once it has the focus
        if (last && !last->isAncestorOf(widget)) {
            const QRect a = place(last);
            const QRect b = place(widget);
            const bool goesUp = b.bottom() < a.center().y() && b.left() < a.right();
            const bool goesBack = b.right() <= a.left() && b.top() < a.bottom() && b.bottom() > a.top();
            EXPECT_FALSE(goesUp || goesBack) << "from " << NameOf(last) << " to " << NameOf(widget);
        }
        last = widget;
    }
}

/// The letter behind a single "&".
QChar MnemonicOf(QString text) {
    const qsizetype mark = text.remove("&&").indexOf('&');
    return mark >= 0 && mark + 1 < text.size() ? text[mark + 1].toLower() : QChar();
}

void CheckMnemonics(QWidget& window) {
    QHash<QChar, QPair<QString, QString>> uses; // by letter: caption as declared, and control
    const auto note = [&](const QString& shown, const QString& declared, const QWidget* widget) {
        const QChar letter = MnemonicOf(shown);
        if (letter.isNull())
            return;
        if (uses.contains(letter)) {
            const bool bothGiven = MnemonicOf(declared) == letter && MnemonicOf(uses[letter].first) == letter;
            EXPECT_TRUE(bothGiven) << uses[letter].second.toStdString() << " and " << NameOf(widget)
                                   << " answer to " << shown.toStdString();
        }
        uses.insert(letter, {declared, QString::fromStdString(NameOf(widget))});
    };
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || !widget->isEnabledTo(&window) ||
            widget->window() != window.window())
            continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget); label && label->buddy())
            note(label->text(), DeclaredCaption(*widget), widget);
        else if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            note(button->text(), DeclaredCaption(*widget), widget);
        else if (const auto* tabs = qobject_cast<const QTabWidget*>(widget))
            for (int i = 0; i < tabs->count(); ++i)
                note(tabs->tabText(i), tabs->tabText(i), widget);
    }
}

qreal Luminance(QRgb colour) {
    const auto part = [](int value) {
        const qreal share = value / 255.0;
        return share <= 0.03928 ? share / 12.92 : qPow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) + 0.0722 * part(qBlue(colour));
}

/// Between the colour that fills most of the area and the one in it that differs most: text is thin, and its
/// strokes reach their colour in a few points only.
qreal ContrastIn(const QImage& picture, const QRect& area) {
    QHash<QRgb, int> counts;
    const QRect inside = area.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            ++counts[picture.pixel(x, y)];
    QRgb ground = 0;
    for (auto each = counts.begin(); each != counts.end(); ++each)
        if (each.value() > counts.value(ground))
            ground = each.key();
    qreal most = 1;
    for (auto each = counts.begin(); each != counts.end(); ++each) {
        const qreal a = Luminance(each.key());
        const qreal b = Luminance(ground);
        most = qMax(most, (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05));
    }
    return most;
}

/// Where the window shows text that can be read without being edited: fields of a view with their captions,
/// and the rows of a list, which waits while an edit is open. One letter is too little to measure.
QList<std::pair<std::string, QRect>> TextsToRead(QWidget& window, bool isView) {
    QList<std::pair<std::string, QRect>> texts;
    const auto add = [&](const QWidget* widget, QRect area) {
        area.moveTopLeft(widget->mapTo(&window, area.topLeft()));
        texts.append({NameOf(widget), area});
    };
    for (const FormView* view : isView ? window.findChildren<FormView*>() : QList<FormView*>())
        for (const QWidget* widget : view->findChildren<QWidget*>()) {
            const auto* line = qobject_cast<const QLineEdit*>(widget);
            const auto* label = qobject_cast<const QLabel*>(widget);
            const auto* box = qobject_cast<const QComboBox*>(widget);
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            const bool shows =
                (line && !line->text().isEmpty()) || (label && !label->text().trimmed().isEmpty()) ||
                (box && !box->currentText().isEmpty()) ||
                (button && (button->isChecked() || (button->isCheckable() && !button->text().isEmpty())));
            if (shows && widget->visibleRegion() == QRegion(widget->rect()))
                add(widget, widget->rect().adjusted(3, 3, -3, -3)); // without the frame
        }
    for (ListGrid* grid : window.findChildren<ListGrid*>())
        for (int row = 0; row < qMin(3, grid->Model().rowCount()) && grid->isVisibleTo(&window); ++row)
            for (int column = 0; column < grid->Model().columnCount(); ++column)
                if (const QModelIndex cell = grid->Model().index(row, column);
                    !grid->isColumnHidden(column) && cell.data().toString().size() > 1 &&
                    grid->viewport()->rect().contains(grid->visualRect(cell)))
                    add(grid->viewport(), grid->visualRect(cell));
    return texts;
}

void CheckContrast(QWidget& window, bool isView) {
    for (const Appearance appearance : {Appearance::Dark, Appearance::Light}) {
        ApplyAppearance(*qApp, appearance);
        QApplication::processEvents();
        const QImage picture = window.grab().toImage();
        for (const auto& [name, area] : TextsToRead(window, isView))
            EXPECT_GE(ContrastIn(picture, area), 4.5) << name << " in " << WordOf(appearance).toStdString();
    }
}

/// Whether the widget stands on a page that does not belong to the record.
bool StandsOnLockedPage(QWidget& widget) {
    for (QWidget* page = &widget; page; page = page->parentWidget())
        if (auto* tabs = page->parentWidget()
                             ? qobject_cast<QTabWidget*>(page->parentWidget()->parentWidget())
                             : nullptr)
            if (const int index = tabs->indexOf(page); index >= 0 && !tabs->isTabEnabled(index))
                return true;
    return false;
}

/// Every field of a view takes the focus and is announced with its value.
void CheckView(QWidget& window) {
    for (const FormView* view : window.findChildren<FormView*>())
        for (const Field* field : view->GetForm().Fields()) {
            SCOPED_TRACE(field->Name().toStdString());
            if (field->Name().isEmpty() || StandsOnLockedPage(*view->EditorOf(*field)->Widget()))
                continue;
            bool reached = false;
            for (QWidget* widget : view->EditorOf(*field)->FocusWidgets()) {
                reached = reached || (widget->isEnabledTo(&window) && (widget->focusPolicy() & Qt::TabFocus));
                QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
                if (const auto* line = qobject_cast<const QLineEdit*>(widget);
                    line && line->echoMode() == QLineEdit::Normal &&
                    !line->objectName().startsWith("txtFilter")) {
                    EXPECT_EQ(spoken->text(QAccessible::Value), line->text());
                    EXPECT_TRUE(spoken->state().readOnly);
                }
                if (const auto* box = qobject_cast<const QComboBox*>(widget)) {
                    EXPECT_EQ(spoken->text(QAccessible::Value), box->currentText());
                }
            }
            EXPECT_TRUE(reached) << "takes no focus";
        }
}

/// The pages of each row of tabs come to the front one after the other.
void ForEachPage(QWidget& window, const std::function<void()>& check) {
    check();
    for (QTabWidget* tabs : window.findChildren<QTabWidget*>()) {
        if (!tabs->isVisibleTo(&window))
            continue;
        const int first = tabs->currentIndex();
        for (int i = 0; i < tabs->count(); ++i) {
            if (i == first || !tabs->isTabEnabled(i) || !tabs->isEnabledTo(&window))
                continue;
            SCOPED_TRACE(tabs->tabText(i).toStdString());
            const bool loads = tabs->objectName() == u"tabTables"; // its pages are lists of their own
            if (loads)
                continue;
            tabs->setCurrentIndex(i);
            QApplication::processEvents();
            check();
        }
        tabs->setCurrentIndex(first);
    }
}

TEST(AccessibilityTest, EveryWindowIsReadAndWorkedByKeys) {
    int dialogs = 0;
    int windows = 0;
    WindowVisitor visitor;
    visitor.window = [&](QWidget& window, const QString& state, int helpContext) {
        SCOPED_TRACE((window.objectName() + " " + state).toStdString());
        ++windows;
        const bool isScreen = !qobject_cast<QDialog*>(&window);
        ForEachPage(window, [&] {
            CheckSpoken(window);
            CheckTabOrder(window);
            CheckMnemonics(window);
        });
        if (state == u"edit" || state == u"view")
            CheckContrast(window, state == u"view");
        if (state == u"view" && isScreen)
            CheckView(window);
        if (!isScreen && window.objectName() != u"frmAbout") {
            EXPECT_TRUE(QFile::exists(QString(":/help/%1.md").arg(helpContext))) << helpContext;
            ++dialogs;
        }
    };
    CommandLine line;
    EXPECT_EQ(VisitWindows(line, visitor), "");
    EXPECT_GT(windows, 60);
    EXPECT_GE(dialogs, 15) << "have help of their own";
}

} // namespace

} // namespace sysadmin
