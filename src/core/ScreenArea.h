#pragma once

#include <QMdiArea>

namespace sysadmin {

/// The part of the main window in which the screens stand, one tab each. While none is open it says how to
/// open one.
class ScreenArea : public QMdiArea {
    Q_OBJECT

public:
    explicit ScreenArea(QWidget* parent = nullptr);

    /// What stands in the empty area.
    void SetHint(const QString& title, const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_title;
    QString m_text;
};

} // namespace sysadmin
