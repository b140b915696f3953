#pragma once

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

namespace sysadmin {

/// Stands between the operator's hands and the program while a request waits. Events must go through the gate
/// and not be left to the window system: what an event loop excludes may stay there unseen until the next
/// movement.
class InputGate : public QObject {
    Q_OBJECT

public:
    /// Shut from now on, holding back what comes.
    InputGate();
    /// Opens; what was held back is delivered in its order.
    ~InputGate() override;

    /// Drops what was held back and whatever else comes.
    void Drop();

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Held {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    bool m_dropping = false;
    std::vector<Held> m_held;
};

} // namespace sysadmin
