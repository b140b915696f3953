#pragma once

#include <QString>

#include <functional>

class QDialog;
class QWidget;

namespace sysadmin {

/// The program's title, which message boxes carry unless they have one of their own.
QString ApplicationTitle();

/// A message box. Line breaks in the text are CR LF.
struct Box {
    enum class Icon { None, Information, Exclamation, Critical, Question };
    enum class Buttons { Ok, OkCancel, YesNo };

    QString text;
    Icon icon = Icon::Exclamation;
    Buttons buttons = Buttons::Ok;
    QString title = ApplicationTitle();
    /// Yes (or OK) destroys something or trusts somebody: whoever only presses Enter answers No (or Cancel).
    bool careful = false;
    /// A further button that shows something, and says whether that was the answer to the box.
    struct More {
        QString caption{}; ///< empty: there is none
        std::function<bool()> show{};
    };
    More more{};
};

/// The property in which a dialog carries the number of its help topic.
inline constexpr char HelpContextProperty[] = "helpContext";

/// The one place through which the program asks and tells the operator something in a window of its own.
class Prompter {
public:
    virtual ~Prompter() = default;
    /// Shows the help topic of a dialog, usable while the dialog is open; whoever has a help sets it.
    std::function<void(QDialog& dialog, int helpContext)> showHelp{};
    /// Shows the box; true for OK and Yes. Closing the box is Cancel or No.
    virtual bool ShowBox(QWidget* parent, const Box& box) = 0;
    /// Shows a modal dialog; true when it was accepted.
    virtual bool RunDialog(QDialog& dialog) = 0;
    /// Asks for the file to write; empty when the operator gave up. `filter` as in "Text (*.csv)".
    virtual QString AskSaveFile(QWidget* parent, const QString& title, const QString& suggestion,
                                const QString& filter) = 0;
    /// Asks for a file to read; empty when the operator gave up.
    virtual QString AskOpenFile(QWidget* parent, const QString& title, const QString& filter) = 0;
    /// Asks for a folder, beginning at one; empty when the operator gave up.
    virtual QString AskFolder(QWidget* parent, const QString& title, const QString& start) = 0;
};

/// The prompter of the running program: real windows.
class WindowPrompter : public Prompter {
public:
    bool ShowBox(QWidget* parent, const Box& box) override;
    bool RunDialog(QDialog& dialog) override;
    QString AskSaveFile(QWidget* parent, const QString& title, const QString& suggestion,
                        const QString& filter) override;
    QString AskOpenFile(QWidget* parent, const QString& title, const QString& filter) override;
    QString AskFolder(QWidget* parent, const QString& title, const QString& start) override;
};

} // namespace sysadmin
