#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <typeindex>

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
    /// The control that carries the field's name.
    QWidget* NamedWidget() const { return m_named ? m_named : m_widget; }
    /// Shows the draft, the choices and the usability as they are now.
    void Refresh();
    /// Display only, whatever the field's usability.
    void SetReadOnly(bool readOnly);
    /// What a screen reader calls the controls; those that have a text of their own keep it.
    virtual void NameControls(const QString& name);

protected:
    virtual void ShowValue() = 0;
    /// Names a control for a screen reader, which is told of it only when it is news.
    static void SetSpokenName(QWidget& control, const QString& name);
    virtual void Lock(bool usable, bool readOnly);

    Field& m_field;
    QWidget* m_widget = nullptr;
    QWidget* m_named = nullptr; ///< where it is not the widget to place
    QList<QWidget*> m_focusWidgets;

private:
    bool m_readOnly = false;
};

using EditorMaker = std::function<std::unique_ptr<FieldEditor>(Field&, QWidget* parent)>;
/// Brings the editor for a kind of field. Of a kind that is derived from another one the nearer counts.
void RegisterEditor(std::type_index kind, EditorMaker make);

/// Registers an editor for a kind of field: one line beside the editor, and the kind is known everywhere.
template <class FieldKind, class Editor>
struct EditorFor {
    EditorFor() {
        RegisterEditor(typeid(FieldKind), [](Field& field, QWidget* parent) -> std::unique_ptr<FieldEditor> {
            auto* own = dynamic_cast<FieldKind*>(&field);
            return own ? std::make_unique<Editor>(*own, parent) : nullptr;
        });
    }
};

/// About so many characters wide, within what looks right in a form.
int WidthForLength(const QWidget& widget, int characters);

/// What a screen reader calls the field: its caption, and the text behind its control.
QString SpokenName(const Field& field);

/// The editor for a field's kind, its widget below `parent` and named after the field.
std::unique_ptr<FieldEditor> MakeFieldEditor(Field& field, QWidget* parent);

} // namespace sysadmin
