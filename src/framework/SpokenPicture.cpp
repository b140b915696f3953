#include "framework/SpokenPicture.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QToolTip>

namespace sysadmin {

namespace {

QAccessibleInterface* MakeGraphic(const QString&, QObject* object) {
    auto* picture = qobject_cast<QWidget*>(object);
    return picture && picture->findChild<SpokenPicture*>(QString(), Qt::FindDirectChildrenOnly)
               ? new QAccessibleWidget(picture, QAccessible::Graphic)
               : nullptr;
}

} // namespace

SpokenPicture::SpokenPicture(QWidget* picture, std::function<QString(const QPoint&)> toolTip)
    : QObject(picture)
    , m_picture(*picture)
    , m_toolTip(std::move(toolTip)) {
    static const bool isKnown = (QAccessible::installFactory(MakeGraphic), true);
    Q_UNUSED(isKnown)
    picture->setFocusPolicy(Qt::StrongFocus);
    picture->installEventFilter(this);
}

void SpokenPicture::Say(const QString& words) {
    m_picture.setAccessibleDescription(words);
    QAccessibleEvent told(&m_picture, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&told);
}

bool SpokenPicture::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn)
        Say(m_picture.accessibleDescription());
    if (event->type() != QEvent::ToolTip || !m_toolTip)
        return QObject::eventFilter(watched, event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const QString words = m_toolTip(help->pos()); !words.isEmpty())
        QToolTip::showText(help->globalPos(), words, &m_picture);
    else
        QToolTip::hideText();
    return true;
}

} // namespace sysadmin

#include "moc_SpokenPicture.cpp"
