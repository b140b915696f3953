#pragma once

#include <QDialog>
#include <QTimer>

#include <functional>

namespace sysadmin {

/// Waits for something that the server does by itself and asks again and again whether it is done; the
/// operator may give up.
class WaitDialog : public QDialog {
    Q_OBJECT

public:
    /// `poll` answers true once it is done: the dialog is accepted then.
    WaitDialog(const QString& title, const QString& text, std::function<bool()> poll, QWidget* parent);

private:
    std::function<bool()> m_poll;
    QTimer m_timer;
};

} // namespace sysadmin
