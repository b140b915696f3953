#pragma once

#include <QLabel>

namespace sysadmin {

/// A field's caption. Whether the field must be filled is drawn beside the text and is no part of it: screen
/// readers say the text, and "required" of the control.
class FieldLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    void SetRequired(bool required);
    bool IsRequired() const { return m_required; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_required = false;
};

} // namespace sysadmin
