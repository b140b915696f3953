#pragma once

#include <QWidget>

class QDialog;
class QTextBrowser;

namespace sysadmin {

class ScreenCatalogue;

/// The help: topics by context number, with a contents page (`frmHelp`).
class HelpWindow : public QWidget {
    Q_OBJECT

public:
    explicit HelpWindow(const ScreenCatalogue& catalogue, QWidget* parent = nullptr);

    /// Shows the topic of a help context, or the contents when it has none (0 never has), and brings the
    /// window up.
    void ShowTopic(int helpContext);

    /// The same over a modal dialog, in a window of the dialog's own: one of the main window's could not be
    /// used. It goes with the dialog.
    static void ShowOver(QDialog& dialog, const ScreenCatalogue& catalogue, int helpContext);

private:
    QTextBrowser* txtTopic = nullptr;
};

} // namespace sysadmin
