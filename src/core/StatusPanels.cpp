#include "core/StatusPanels.h"

#include "core/Application.h"

#include <QAccessible>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>

namespace sysadmin {

StatusPanels::StatusPanels(Application& application, QStatusBar* bar)
    : QObject(bar)
    , m_doneTime(new QTimer(this)) {
    bar->setObjectName("sbStatus");
    const auto makePanel = [&](const QString& name, const QString& description) {
        auto* panel = new QLabel(bar);
        panel->setObjectName(name);
        panel->setAccessibleDescription(description); // its name is its text
        panel->setTextFormat(Qt::PlainText);
        panel->setContentsMargins(8, 2, 8, 2);
        return panel;
    };
    lblActivity = makePanel("lblActivity", tr("Activity"));
    lblOperator = makePanel("lblOperator", tr("Operator"));
    lblScreen = makePanel("lblScreen", tr("Screen"));
    lblCluster = makePanel("lblCluster", tr("Circulation cluster"));
    lblPlace = makePanel("lblPlace", tr("Library and server"));
    bar->addWidget(lblActivity, 1);
    for (QLabel* panel : {lblOperator, lblScreen, lblCluster, lblPlace})
        bar->addPermanentWidget(panel);
    lblCluster->hide();
    m_doneTime->setSingleShot(true);
    m_doneTime->setInterval(8000);
    connect(m_doneTime, &QTimer::timeout, this, [this] { ShowActivity({}); });
    connect(&application.notices, &Notices::Done, this, &StatusPanels::ShowDone);
    ShowActivity({});
    lblOperator->setText(application.OperatorId());
}

void StatusPanels::ShowActivity(const QString& text) {
    lblActivity->setText(text.isEmpty() ? tr("Ready") : text);
    // Screen readers say it without the operator's leaving the field.
    QAccessibleEvent said(lblActivity, text.isEmpty() ? QAccessible::NameChanged : QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void StatusPanels::ShowWaiting(const QString& text) {
    // After a wait that a save brought along, what was saved is still worth saying.
    ShowActivity(text.isEmpty() && m_doneTime->isActive() ? m_done : text);
}

void StatusPanels::ShowDone(const QString& text) {
    m_done = text;
    ShowActivity(text);
    m_doneTime->start();
}

void StatusPanels::ShowScreen(const QString& text) {
    lblScreen->setText(text);
}

void StatusPanels::ShowCluster(const QString& text) {
    lblCluster->setVisible(!text.isEmpty());
    lblCluster->setText(text);
}

void StatusPanels::ShowPlace(const QString& text, const QColor& colour) {
    lblPlace->setText(text);
    if (!colour.isValid())
        return;
    QPalette band;
    band.setColor(QPalette::Window, colour);
    band.setColor(QPalette::WindowText, qGray(colour.rgb()) < 140 ? Qt::white : Qt::black);
    lblPlace->setPalette(band);
    lblPlace->setAutoFillBackground(true);
}

} // namespace sysadmin

#include "moc_StatusPanels.cpp"
