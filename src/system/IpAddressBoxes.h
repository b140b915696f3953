#pragma once

#include "system/IpAddress.h"

#include <QWidget>

class QLineEdit;
class QStackedLayout;

namespace sysadmin {

/// The boxes in which an address is entered, one per group: four for IPv4, eight for IPv6. A whole address
/// pasted into a box fills them all, in the boxes of its own family.
class IpAddressBoxes : public QWidget {
    Q_OBJECT

public:
    /// The boxes are named txtIP4_N and txtIP6_N; `end` counts the addresses of a dialog from 0 and says
    /// where N goes on. `caption` is what a screen reader says in front of a box's number.
    IpAddressBoxes(int end, const QString& caption, QWidget* parent);

    IpFamily Family() const { return m_family; }
    /// Shows the boxes of the family. What was entered in the others stays there.
    void SetFamily(IpFamily family);
    /// Shows an address in the boxes of its family.
    void SetAddress(const QString& canonical);
    /// Shows it in the boxes of a family: of V4 only an address of that family.
    void SetAddress(const QString& canonical, IpFamily family);
    /// The address in canonical form; none while a box does not hold what it should.
    std::optional<QString> Address() const;
    /// Puts the focus into the first box that does not hold what it should, else into the first one.
    void FocusProblem();

signals:
    /// An address of the other family was pasted.
    void FamilyChanged(IpFamily family);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<QLineEdit*> MakeBoxes(IpFamily family, int end, const QString& caption);
    const QList<QLineEdit*>& Shown() const { return m_family == IpFamily::V4 ? m_boxes4 : m_boxes6; }
    void OnEdited(QLineEdit* box);
    void MoveFrom(QObject* box, int step);

    IpFamily m_family = IpFamily::V4;
    QStackedLayout* m_rows = nullptr;
    QList<QLineEdit*> m_boxes4;
    QList<QLineEdit*> m_boxes6;
};

} // namespace sysadmin
