#pragma once

#include "framework/ListGrid.h"
#include "support/ScriptedPrompter.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace sysadmin {

/// Works on the controls of screens and dialogs as an operator does, by their given names. A missing control
/// fails the test at once by an exception; one that is hidden, disabled or read-only fails it, too. Without
/// `parent` the window in front is meant.
class ControlTest : public ::testing::Test {
protected:
    template <class Widget>
    Widget& Get(QWidget& parent, const QString& name) {
        auto* widget = parent.findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error("no control " + name.toStdString());
        return *widget;
    }
    template <class Widget>
    Widget& Get(const QString& name) {
        return Get<Widget>(*front, name);
    }

    void Click(QWidget& parent, const QString& button);
    /// Replaces what stands in the field and leaves it.
    void Type(QWidget& parent, const QString& lineEdit, const QString& text);
    /// Enters a multi-line text in place of what stands there.
    void Write(QWidget& parent, const QString& textEdit, const QString& text);
    void Check(QWidget& parent, const QString& checkBox, bool on = true);
    void Choose(QWidget& parent, const QString& comboBox, const QString& entry);
    /// Selects the row whose visible cells begin so.
    void Select(QWidget& parent, const QString& beginning, const QString& grid = "vsf");
    QString TextOf(QWidget& parent, const QString& lineEdit) {
        return Get<QLineEdit>(parent, lineEdit).text();
    }
    QString FrameCaption(QWidget& screen);
    ListGrid& Grid(QWidget& parent, const QString& name = "vsf") { return Get<ListGrid>(parent, name); }
    /// The shown rows of a grid, visible cells joined by "|".
    QStringList GridRows(QWidget& parent, const QString& grid = "vsf");

    void Click(const QString& button) { Click(*front, button); }
    void Type(const QString& lineEdit, const QString& text) { Type(*front, lineEdit, text); }
    void Check(const QString& checkBox, bool on) { Check(*front, checkBox, on); }
    void Choose(const QString& comboBox, const QString& entry) { Choose(*front, comboBox, entry); }
    bool IsEnabled(const QString& name) { return Get<QWidget>(name).isEnabled(); }
    QString TextOf(const QString& lineEdit) { return TextOf(*front, lineEdit); }
    QString FrameCaption() { return FrameCaption(*front); }
    ListGrid& Grid(const QString& name = "vsf") { return Grid(*front, name); }
    QStringList GridRows(const QString& grid = "vsf") { return GridRows(*front, grid); }

    ScriptedPrompter prompter;
    QWidget* front = nullptr; ///< the window in front
};

/// The error dialog that a serious failure shows: checks its texts and closes it.
void ExpectErrorDialog(ScriptedPrompter& prompter, const QString& message, qint16 status,
                       const QString& operation, const QString& screenName);

} // namespace sysadmin
