#pragma once

#include "core/Prompter.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

namespace sysadmin {

/// The prompter of tests: answers from a queue of what the test expects, in order. A box or dialog that comes
/// unexpected, out of turn or with another text fails the test at once and is answered the safe way (Cancel,
/// No, no file). What is left in the queue at the end fails the test, too.
class ScriptedPrompter : public Prompter {
public:
    ScriptedPrompter() = default;
    ~ScriptedPrompter() override;

    /// The next thing shown is a box with exactly this text (line breaks CR LF). Icon and title are compared
    /// when given. `more`: the operator presses the further button, and what it shows is his answer.
    void ExpectBox(const QString& text, bool answer = true, std::optional<Box::Icon> icon = {},
                   std::optional<QString> title = {}, bool more = false);
    /// The next thing shown is the dialog of this object name. `drive` gets it shown and answers for the
    /// operator.
    void ExpectDialog(const QString& objectName, std::function<bool(QDialog&)> drive);
    /// The same; the answer is the dialog's own result after `drive` has clicked in it.
    void ExpectDialogResult(const QString& objectName, std::function<void(QDialog&)> drive);
    void ExpectSaveFile(const QString& result);
    void ExpectOpenFile(const QString& result);
    void ExpectFolder(const QString& result);

    /// Whether everything expected was shown.
    bool AllShown() const { return m_expected.isEmpty(); }

    bool ShowBox(QWidget* parent, const Box& box) override;
    bool RunDialog(QDialog& dialog) override;
    QString AskSaveFile(QWidget* parent, const QString& title, const QString& suggestion,
                        const QString& filter) override;
    QString AskOpenFile(QWidget* parent, const QString& title, const QString& filter) override;
    QString AskFolder(QWidget* parent, const QString& title, const QString& start) override;

private:
    enum class Kind { Box, Dialog, SaveFile, OpenFile, Folder };
    struct Expected {
        Kind kind = Kind::Box;
        QString text; // of a box; a dialog's object name; the file to answer
        bool answer = false;
        std::optional<Box::Icon> icon;
        std::optional<QString> title;
        std::function<bool(QDialog&)> drive;
        bool more = false;
    };

    // Takes the next expectation when it is of this kind; otherwise fails the test with what came instead.
    std::optional<Expected> TakeNext(Kind kind, const QString& shown);

    QList<Expected> m_expected;
};

} // namespace sysadmin
