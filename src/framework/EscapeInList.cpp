#include "framework/EscapeInList.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>

namespace sysadmin {

namespace {

class EscapeKeeper : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride ||
            static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
            return false;
        event->accept(); // it comes again as the list's own key
        return true;
    }
};

} // namespace

void KeepEscapeInList(QComboBox& box) {
    box.view()->installEventFilter(new EscapeKeeper(&box));
}

} // namespace sysadmin
