#pragma once

#include <QDialog>
#include <QTimer>

#include <functional>
#include <optional>

namespace sysadmin {

class Prompter;

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

/// Sends a request until the server is done with it: `send` gets what it puts under the tag "55" (nothing at
/// first) and answers the status. The last status, or none when the operator gave up.
std::optional<qint16> SendAndWait(Prompter& prompter, QWidget* parent, const QString& title,
                                  const QString& text,
                                  const std::function<qint16(const QString& goesOn)>& send);

} // namespace sysadmin
