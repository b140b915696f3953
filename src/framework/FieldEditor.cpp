#include "framework/FieldEditor.h"

#include "framework/ChoiceEditors.h"
#include "framework/ControlLock.h"
#include "framework/ListEditors.h"
#include "framework/MomentEditors.h"
#include "framework/forms/ShownDate.h"
#include "framework/forms/ValueFields.h"

#include <QAbstractButton>
#include <QIntValidator>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>

#include <vector>

namespace sysadmin {

void FieldEditor::Refresh() {
    ShowValue();
    // What is only shown can be read all the same, whatever bars the operator from editing it.
    const bool readOnly = m_readOnly || m_field.Spec().displayOnly;
    Lock(m_field.IsUsable() || readOnly, readOnly);
}

void FieldEditor::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    Refresh();
}

void FieldEditor::Lock(bool usable, bool readOnly) {
    m_widget->setEnabled(usable);
    for (QWidget* widget : m_focusWidgets)
        LockControl(*widget, readOnly);
}

void FieldEditor::NameControls(const QString& name) {
    if (m_focusWidgets.isEmpty())
        return;
    QWidget& control = *m_focusWidgets.first();
    const bool saysItself = qobject_cast<QAbstractButton*>(&control);
    SetSpokenName(control, saysItself ? m_field.Spec().accessible : name);
}

void FieldEditor::SetSpokenName(QWidget& control, const QString& name) {
    if (control.accessibleName() != name)
        control.setAccessibleName(name);
}

int WidthForLength(const QWidget& widget, int characters) {
    return widget.fontMetrics().averageCharWidth() * (qBound(4, characters, 40) + 3);
}

namespace {

/// A line edit that is as wide as what it holds, where there is room for that.
class SizedEdit : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    void SetCharacters(int least, int most) {
        const int character = fontMetrics().averageCharWidth();
        m_width = character * (most + 3) + 12;
        setMinimumWidth(character * (qMin(least, most) + 3));
        setMaximumWidth(m_width);
    }
    QSize sizeHint() const override {
        const QSize usual = QLineEdit::sizeHint();
        return m_width > 0 ? QSize(m_width, usual.height()) : usual;
    }

private:
    int m_width = 0;
};

/// A line edit that shows the value's text.
class LineEditor : public FieldEditor {
public:
    LineEditor(ValueField& field, QWidget* parent)
        : FieldEditor(field)
        , m_value(field) {
        m_edit = new SizedEdit(parent);
        m_edit->setFrame(!field.Spec().displayOnly); // looks like text that can be copied, not like an entry
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        connect(m_edit, &QLineEdit::textEdited, this,
                [this](const QString& text) { m_value.SetDraft(text); });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] {
            if (!m_edit->isReadOnly())
                m_value.Leave();
        });
    }

protected:
    void ShowValue() override {
        const QString text = Shown();
        // A stored text is shown whole, however long it is.
        if (const int most = m_value.Spec().maxLength; most > 0)
            m_edit->setMaxLength(qMax(most, int(text.size())));
        if (m_edit->text() != text)
            m_edit->setText(text);
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

    SizedEdit* m_edit;

private:
    /// What is only shown may be a date, which people read in another form than it travels in.
    QString Shown() const {
        const FieldSpec& spec = m_value.Spec();
        return spec.displayOnly && !spec.format.isEmpty() ? ShownDate(m_value.Draft(), spec.format)
                                                          : m_value.Draft();
    }

    ValueField& m_value;
};

class TextEditor : public LineEditor {
public:
    TextEditor(TextField& field, QWidget* parent)
        : LineEditor(field, parent) {
        constexpr int Least = 18;
        constexpr int Most = 64; // longer texts scroll: a wider line is not read more easily
        const int maxLength = field.Spec().maxLength;
        m_edit->SetCharacters(Least, maxLength > 0 ? qBound(4, maxLength, Most) : Most);
    }
};

class PasswordEditor : public LineEditor {
public:
    PasswordEditor(PasswordField& field, QWidget* parent)
        : LineEditor(field, parent) {
        m_edit->setEchoMode(QLineEdit::Password);
    }
};

class NumberEditor : public LineEditor {
public:
    NumberEditor(NumberField& field, QWidget* parent)
        : LineEditor(field, parent) {
        m_edit->setValidator(new QIntValidator(qMin(0, field.Least()), field.Most(), m_edit));
        m_edit->setAlignment(Qt::AlignRight);
        m_edit->setFixedWidth(WidthForLength(*m_edit, int(QString::number(field.Most()).size()) + 1));
    }
};

class MoneyEditor : public LineEditor {
public:
    MoneyEditor(MoneyField& field, QWidget* parent)
        : LineEditor(field, parent) {
        m_edit->setAlignment(Qt::AlignRight);
        m_edit->setFixedWidth(WidthForLength(*m_edit, 10));
    }
};

class MultiLineEditor : public FieldEditor {
public:
    MultiLineEditor(ValueField& field, QWidget* parent)
        : FieldEditor(field)
        , m_value(field) {
        m_edit = new QPlainTextEdit(parent);
        m_edit->setTabChangesFocus(true);
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        connect(m_edit, &QPlainTextEdit::textChanged, this,
                [this] { m_value.SetDraft(m_edit->toPlainText()); });
    }

protected:
    void ShowValue() override {
        if (m_edit->toPlainText() == m_value.Draft())
            return;
        const QSignalBlocker quiet(m_edit);
        m_edit->setPlainText(m_value.Draft());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
        if (readOnly) // with a cursor, so that it can be read by keyboard
            m_edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }

private:
    ValueField& m_value;
    QPlainTextEdit* m_edit;
};

struct Registered {
    std::type_index kind;
    EditorMaker make;
};

std::vector<Registered>& Registry() {
    static std::vector<Registered> registry;
    return registry;
}

const EditorFor<TextField, TextEditor> textEditor;
const EditorFor<PasswordField, PasswordEditor> passwordEditor;
const EditorFor<NumberField, NumberEditor> numberEditor;
const EditorFor<MoneyField, MoneyEditor> moneyEditor;
const EditorFor<MultiLineField, MultiLineEditor> multiLineEditor;

std::unique_ptr<FieldEditor> MakeEditorOfKind(Field& field, QWidget* parent) {
    RegisterListEditors();
    RegisterChoiceEditors();
    RegisterMomentEditors();
    const std::vector<Registered>& registry = Registry();
    for (const Registered& entry : registry)
        if (entry.kind == std::type_index(typeid(field)))
            return entry.make(field, parent);
    for (auto entry = registry.rbegin(); entry != registry.rend(); ++entry)
        if (std::unique_ptr<FieldEditor> editor = entry->make(field, parent))
            return editor;
    qFatal("No editor is registered for the field %s", qPrintable(field.Name()));
}

} // namespace

QString SpokenName(const Field& field) {
    const QString name = field.Spec().accessible.isEmpty() ? field.PlainCaption() : field.Spec().accessible;
    return QString(name + ' ' + field.Unit()).trimmed();
}

void RegisterEditor(std::type_index kind, EditorMaker make) {
    Registry().push_back({kind, std::move(make)});
}

std::unique_ptr<FieldEditor> MakeFieldEditor(Field& field, QWidget* parent) {
    std::unique_ptr<FieldEditor> editor = MakeEditorOfKind(field, parent);
    editor->NamedWidget()->setObjectName(field.Name());
    editor->Widget()->setToolTip(field.Spec().toolTip);
    editor->NameControls(SpokenName(field));
    const QString explained = field.Spec().required
                                  ? QString(QObject::tr("Required") + ". " + field.Spec().toolTip).trimmed()
                                  : field.Spec().toolTip;
    for (QWidget* widget : editor->FocusWidgets())
        if (!explained.isEmpty() && widget->accessibleDescription().isEmpty())
            widget->setAccessibleDescription(explained);
    editor->Refresh();
    return editor;
}

} // namespace sysadmin

#include "moc_FieldEditor.cpp"
