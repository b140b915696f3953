#pragma once

#include <QObject>

#include <functional>

class QPoint;
class QWidget;

namespace sysadmin {

/// What a painted widget that takes the focus lacks: a screen reader knows it as a graphic and hears where
/// the operator stands in it, and places in it have tool tips.
class SpokenPicture : public QObject {
    Q_OBJECT

public:
    /// The picture owns it. `toolTip` answers what stands at a place of the picture; empty for nothing.
    explicit SpokenPicture(QWidget* picture, std::function<QString(const QPoint&)> toolTip = {});

    /// Where the operator stands now, in words; told at once, and again when the picture gets the focus.
    void Say(const QString& words);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_picture;
    std::function<QString(const QPoint&)> m_toolTip;
};

} // namespace sysadmin
