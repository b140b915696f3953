#include "comm/ProblemLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QLayout>

namespace sysadmin {

ProblemLabel::ProblemLabel(QWidget* parent)
    : QLabel(parent) {
    setObjectName("lblProblem");
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    Colour();
    hide();
}

void ProblemLabel::SetProblem(const QString& problem) {
    setText(QString(problem).replace("\r\n", "\n"));
    setVisible(!problem.isEmpty());
    if (problem.isEmpty())
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ProblemLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ParentChange)
        Colour();
    QLabel::changeEvent(event);
}

void ProblemLabel::Colour() {
    const bool dark = QApplication::palette().window().color().lightness() < 128;
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, dark ? QColor(0xff, 0x9b, 0x93) : QColor(0xb3, 0x1d, 0x16));
    setPalette(colours);
}

void FitHeight(QWidget& dialog, int width) {
    QLayout* layout = dialog.layout();
    layout->activate();
    dialog.setFixedSize(width, layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                                           : layout->totalSizeHint().height());
}

} // namespace sysadmin

#include "moc_ProblemLabel.cpp"
