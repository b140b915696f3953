#pragma once

#include <QObject>

#include <memory>

class QWidget;

namespace sysadmin {

class Field;

/// Draws one field: a widget that shows the draft and hands every edit to the field at once.
class FieldEditor : public QObject {
    Q_OBJECT

public:
    explicit FieldEditor(Field& field)
        : m_field(field) {}

    Field& GetField() const { return m_field; }
    /// The widget to place; for a field of several controls the one around them.
    QWidget* Widget() const { return m_widget; }
    /// The controls that take the focus, in tab order.
    const QList<QWidget*>& FocusWidgets() const { return m_focusWidgets; }
    /// Shows the draft, the choices and the usability as they are now.
    void Refresh();
    /// Display only, whatever the field's usability.
    void SetReadOnly(bool readOnly);

protected:
    virtual void ShowValue() = 0;
    virtual void Lock(bool usable, bool readOnly);

    Field& m_field;
    QWidget* m_widget = nullptr;
    QList<QWidget*> m_focusWidgets;

private:
    bool m_readOnly = false;
};

/// The editor for a field's kind, its widget below `parent` and named after the field.
std::unique_ptr<FieldEditor> MakeFieldEditor(Field& field, QWidget* parent);

} // namespace sysadmin
