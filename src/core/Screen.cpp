#include "core/Screen.h"

#include <QCloseEvent>

namespace sysadmin {

Screen::Screen(Application& application, const QString& formName, const QString& caption, QWidget* parent)
    : QWidget(parent)
    , m_application(application) {
    setObjectName(formName);
    setWindowTitle(caption);
}

void Screen::closeEvent(QCloseEvent* event) {
    event->setAccepted(MayClose());
}

} // namespace sysadmin

#include "moc_Screen.cpp"
