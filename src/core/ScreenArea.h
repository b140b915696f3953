#pragma once

#include <QMdiArea>

class QLabel;
class QVBoxLayout;

namespace sysadmin {

struct ScreenEntry;

/// The part of the main window in which the screens stand, one tab each. While none is open it says how to
/// open one, offers those that were open last, and tells how healthy the settings are.
class ScreenArea : public QMdiArea {
    Q_OBJECT

public:
    explicit ScreenArea(QWidget* parent = nullptr);

    /// What stands in the empty area.
    void SetHint(const QString& text);
    void SetRecent(const QList<ScreenEntry>& entries);
    /// What a look at the settings brought, with a way to all of it.
    void SetHealth(const QString& summary, const QStringList& lines);
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
    void AddLine(QVBoxLayout& lines, const QString& name, const QIcon& icon, const QString& text,
                 const QString& screen);
    void FollowWindows();

    QWidget* m_welcome = nullptr;
    QLabel* lblHint = nullptr;
    QWidget* m_recent = nullptr;
    QVBoxLayout* m_recentLines = nullptr;
    QVBoxLayout* m_healthLines = nullptr;
};

} // namespace sysadmin
