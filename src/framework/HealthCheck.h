#pragma once

#include "wire/Area.h"

#include <QList>
#include <QString>

#include <functional>

class QWidget;

namespace sysadmin {

class Application;

/// Something in the settings that nobody can have meant, or that keeps others from working.
struct HealthFinding {
    QString key;                               ///< makes it the same one in the next look
    QString place;                             ///< what it is about, as people call it
    QString text;                              ///< what is wrong with it
    std::function<void(QWidget* parent)> open; ///< goes there
};

/// A look at some of the settings.
struct HealthCheck {
    QString key;
    QString caption; ///< what it looks at: "Loan Rules"
    wire::Area area; ///< whose settings: it takes a right to view them
    /// Adds what it finds. The status of the first request that failed, else 0.
    std::function<qint16(Application&, QList<HealthFinding>&)> run;
    /// Calls other systems, which may take its time: done only when the operator asks for it.
    bool callsOthers = false;
};

} // namespace sysadmin
