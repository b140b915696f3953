#pragma once

#include <QMdiArea>

class QLabel;
class QVBoxLayout;

namespace sysadmin {

struct ScreenEntry;

/// The part of the main window in which the screens stand, one tab each. While none is open it says how to
/// open one, and offers those that were open last.
class ScreenArea : public QMdiArea {
    Q_OBJECT

public:
    explicit ScreenArea(QWidget* parent = nullptr);

    /// What stands in the empty area.
    void SetHint(const QString& text);
    void SetRecent(const QList<ScreenEntry>& entries);
    /// Puts a dot on the tab of a window in which something was entered that is not saved.
    void MarkUnsaved(QMdiSubWindow* window, bool unsaved);

signals:
    /// The operator chose one of the recent screens.
    void ScreenChosen(const QString& key);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildWelcome();
    void FollowWindows();

    QWidget* m_welcome = nullptr;
    QLabel* lblHint = nullptr;
    QWidget* m_recent = nullptr;
    QVBoxLayout* m_recentLines = nullptr;
};

} // namespace sysadmin
