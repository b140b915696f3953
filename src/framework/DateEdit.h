#pragma once

#include <QDateEdit>

namespace sysadmin {

/// A date that may be missing: blank until the operator gives it, and blank again after Delete. The lowest
/// date stands for the missing one. Typing, stepping and the calendar begin at today's date while it is
/// blank.
class DateEdit : public QDateEdit {
    Q_OBJECT

public:
    explicit DateEdit(QWidget* parent = nullptr);

    bool IsBlank() const { return date() == minimumDate(); }
    void stepBy(int steps) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    StepEnabled stepEnabled() const override;

private:
    void StartAtToday();
};

} // namespace sysadmin
