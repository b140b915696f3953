#include "framework/FieldEditor.h"

#include "framework/Captions.h"
#include "framework/DateEdit.h"
#include "framework/ListEditors.h"
#include "framework/forms/ValueFields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>

#include <vector>

namespace sysadmin {

void FieldEditor::Refresh() {
    ShowValue();
    Lock(m_field.IsUsable(), m_readOnly || m_field.Spec().displayOnly);
}

void FieldEditor::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    Refresh();
}

void FieldEditor::Lock(bool usable, bool readOnly) {
    m_widget->setEnabled(usable && !readOnly);
}

int WidthForLength(const QWidget& widget, int characters) {
    return widget.fontMetrics().averageCharWidth() * (qBound(4, characters, 40) + 3);
}

namespace {

/// A line edit that shows the value's text.
class LineEditor : public FieldEditor {
public:
    LineEditor(ValueField& field, QWidget* parent)
        : FieldEditor(field)
        , m_value(field) {
        m_edit = new QLineEdit(parent);
        m_edit->setFrame(!field.Spec().displayOnly); // looks like text that can be copied, not like an entry
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        const int maxLength = field.Spec().maxLength;
        if (maxLength > 0)
            m_edit->setMaxLength(maxLength);
        connect(m_edit, &QLineEdit::textEdited, this,
                [this](const QString& text) { m_value.SetDraft(text); });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] {
            if (!m_edit->isReadOnly())
                m_value.Leave();
        });
    }

protected:
    void ShowValue() override {
        if (m_edit->text() != m_value.Draft())
            m_edit->setText(m_value.Draft());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

    QLineEdit* m_edit;

private:
    ValueField& m_value;
};

class TextEditor : public LineEditor {
public:
    TextEditor(TextField& field, QWidget* parent)
        : LineEditor(field, parent) {
        // What is only shown may be narrow where room is short.
        const int maxLength = field.Spec().maxLength;
        const int least = field.Spec().displayOnly ? 15 : 30;
        m_edit->setMinimumWidth(WidthForLength(*m_edit, maxLength > 0 ? qMin(maxLength, least) : least));
        if (maxLength > 0 && maxLength <= 25)
            m_edit->setMaximumWidth(WidthForLength(*m_edit, maxLength) + 12);
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
        m_edit->setFixedWidth(WidthForLength(*m_edit, 12));
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
    }

private:
    ValueField& m_value;
    QPlainTextEdit* m_edit;
};

class FlagEditor : public FieldEditor {
public:
    FlagEditor(FlagField& field, QWidget* parent)
        : FieldEditor(field)
        , m_flag(field) {
        m_box = new QCheckBox(field.Spec().caption, parent);
        SetDeclaredCaption(*m_box, field.Spec().caption);
        m_widget = m_box;
        m_focusWidgets = {m_box};
        connect(m_box, &QCheckBox::clicked, this, [this](bool checked) { m_flag.SetOn(checked); });
    }

protected:
    void ShowValue() override {
        ChangeCaption(*m_box, m_flag.Caption());
        m_box->setChecked(m_flag.IsOn());
    }

private:
    FlagField& m_flag;
    QCheckBox* m_box;
};

class ChoiceEditor : public FieldEditor {
public:
    ChoiceEditor(ChoiceField& field, QWidget* parent)
        : FieldEditor(field)
        , m_choice(field) {
        m_box = new QComboBox(parent);
        m_box->setMaxVisibleItems(20);
        m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_box->setMinimumContentsLength(24);
        m_widget = m_box;
        m_focusWidgets = {m_box};
        connect(m_box, &QComboBox::activated, this,
                [this](int index) { m_choice.SetDraft(m_box->itemData(index).toString()); });
    }

protected:
    void ShowValue() override {
        if (m_shown != m_choice.Items() || m_box->count() != m_choice.Items().size()) {
            m_shown = m_choice.Items();
            m_box->clear();
            for (const PickItem& item : m_shown)
                m_box->addItem(item.text, item.id);
        }
        // An id that the list lacks stands there as it is: it must survive, and the operator must see it.
        m_box->setPlaceholderText(m_choice.Draft());
        m_box->setCurrentIndex(m_box->findData(m_choice.Draft()));
    }

private:
    ChoiceField& m_choice;
    QComboBox* m_box;
    QList<PickItem> m_shown;
};

class LetterEditor : public FieldEditor {
public:
    LetterEditor(LetterField& field, QWidget* parent)
        : FieldEditor(field)
        , m_letter(field) {
        m_widget = new QWidget(parent);
        auto* line = new QHBoxLayout(m_widget);
        line->setContentsMargins({});
        for (const PickItem& option : field.Spec().options) {
            auto* button = new QRadioButton(option.text, m_widget);
            button->setObjectName(field.Name() + option.id);
            button->setProperty("letter", option.id);
            if (const QString& group = field.Spec().accessible; !group.isEmpty())
                button->setAccessibleName(group + ": " + option.text);
            line->addWidget(button);
            m_focusWidgets.append(button);
            connect(button, &QRadioButton::clicked, this, [this, id = option.id] { m_letter.SetDraft(id); });
        }
        line->addStretch();
    }

protected:
    void ShowValue() override {
        for (QWidget* widget : m_focusWidgets) {
            auto* button = static_cast<QRadioButton*>(widget);
            const bool on = button->property("letter") == m_letter.Draft();
            if (button->isChecked() == on)
                continue;
            // Only a button outside an exclusive group can be unchecked, which a blank value needs.
            button->setAutoExclusive(false);
            button->setChecked(on);
            button->setAutoExclusive(true);
        }
        // The Tab key comes by the chosen option alone; the arrow keys choose.
        QWidget* stop = m_focusWidgets.first();
        for (QWidget* widget : m_focusWidgets)
            if (static_cast<QRadioButton*>(widget)->isChecked())
                stop = widget;
        for (QWidget* widget : m_focusWidgets)
            widget->setFocusPolicy(widget == stop ? Qt::StrongFocus : Qt::ClickFocus);
        m_widget->setFocusProxy(stop);
    }

private:
    LetterField& m_letter;
};

class DateEditor : public FieldEditor {
public:
    DateEditor(DateField& field, QWidget* parent)
        : FieldEditor(field)
        , m_date(field) {
        m_edit = new DateEdit(parent);
        m_edit->setFixedWidth(WidthForLength(*m_edit, 14));
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        connect(m_edit, &QDateEdit::dateChanged, this,
                [this](QDate date) { m_date.SetDate(m_edit->IsBlank() ? QDate() : date); });
        connect(m_edit, &QDateEdit::editingFinished, this, [this] { m_date.Leave(); });
    }

protected:
    void ShowValue() override {
        const QSignalBlocker quiet(m_edit);
        const QDate date = m_date.Date();
        m_edit->setDate(date.isValid() ? date : m_edit->minimumDate());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

private:
    DateField& m_date;
    DateEdit* m_edit;
};

/// A time is typed as text, so that it may be missing or be one of the field's words; the arrow keys go by
/// quarters of an hour.
class TimeEditor : public FieldEditor {
public:
    TimeEditor(TimeField& field, QWidget* parent)
        : FieldEditor(field)
        , m_time(field) {
        m_edit = new QLineEdit(parent);
        m_edit->setFixedWidth(WidthForLength(*m_edit, 9));
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        for (const int minutes : {15, -15}) {
            auto* step = new QShortcut(minutes > 0 ? Qt::Key_Up : Qt::Key_Down, m_edit);
            step->setContext(Qt::WidgetShortcut);
            connect(step, &QShortcut::activated, this, [this, minutes] {
                if (!m_edit->isReadOnly())
                    m_time.SetTime(
                        (m_time.Time().isValid() ? m_time.Time() : QTime(0, 0)).addSecs(60 * minutes));
            });
        }
        connect(m_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
            m_typing = true;
            m_time.TypeIn(text);
            m_typing = false;
        });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] {
            if (m_edit->isReadOnly())
                return;
            m_time.Leave();
            Refresh();
        });
    }

protected:
    void ShowValue() override {
        if (!m_typing && m_edit->text() != m_time.DisplayText())
            m_edit->setText(m_time.DisplayText());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

private:
    TimeField& m_time;
    QLineEdit* m_edit;
    bool m_typing = false; // what is typed stands as it is until the field is left
};

class IntervalEditor : public FieldEditor {
public:
    IntervalEditor(IntervalField& field, QWidget* parent)
        : FieldEditor(field)
        , m_interval(field) {
        m_widget = new QWidget(parent);
        auto* line = new QHBoxLayout(m_widget);
        line->setContentsMargins({});
        m_number = new QLineEdit(m_widget);
        m_number->setValidator(new QIntValidator(0, field.Most(), m_number));
        m_number->setAlignment(Qt::AlignRight);
        m_number->setFixedWidth(WidthForLength(*m_number, int(QString::number(field.Most()).size()) + 1));
        m_unit = new QComboBox(m_widget);
        m_unit->setObjectName(field.Spec().unitName);
        m_unit->setAccessibleName(QObject::tr("Unit"));
        for (const PickItem& unit : field.Units())
            m_unit->addItem(unit.text, unit.id);
        line->addWidget(m_number);
        line->addWidget(m_unit);
        line->addStretch();
        m_named = m_number;
        m_focusWidgets = {m_number, m_unit};
        connect(m_number, &QLineEdit::textEdited, this,
                [this](const QString& text) { m_interval.SetParts(text, m_unit->currentData().toString()); });
        connect(m_unit, &QComboBox::activated, this,
                [this](int index) { m_interval.ChangeUnit(m_unit->itemData(index).toString()); });
        connect(m_number, &QLineEdit::editingFinished, this, [this] {
            if (!m_number->isReadOnly())
                m_interval.Leave();
        });
    }

protected:
    void ShowValue() override {
        if (m_number->text() != m_interval.Number())
            m_number->setText(m_interval.Number());
        // Without a number there is nothing in the draft that keeps the unit: the list keeps what was chosen.
        if (!m_interval.Draft().isEmpty())
            m_unit->setCurrentIndex(m_unit->findData(m_interval.Unit()));
    }
    void Lock(bool usable, bool readOnly) override {
        m_number->setEnabled(usable);
        m_number->setReadOnly(readOnly);
        m_unit->setEnabled(usable && !readOnly);
    }

private:
    IntervalField& m_interval;
    QLineEdit* m_number;
    QComboBox* m_unit;
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
const EditorFor<FlagField, FlagEditor> flagEditor;
const EditorFor<ChoiceField, ChoiceEditor> choiceEditor;
const EditorFor<LetterField, LetterEditor> letterEditor;
const EditorFor<DateField, DateEditor> dateEditor;
const EditorFor<TimeField, TimeEditor> timeEditor;
const EditorFor<IntervalField, IntervalEditor> intervalEditor;

std::unique_ptr<FieldEditor> MakeEditorOfKind(Field& field, QWidget* parent) {
    RegisterListEditors();
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

void RegisterEditor(std::type_index kind, EditorMaker make) {
    Registry().push_back({kind, std::move(make)});
}

std::unique_ptr<FieldEditor> MakeFieldEditor(Field& field, QWidget* parent) {
    std::unique_ptr<FieldEditor> editor = MakeEditorOfKind(field, parent);
    editor->NamedWidget()->setObjectName(field.Name());
    editor->Widget()->setToolTip(field.Spec().toolTip);
    for (QWidget* widget : editor->FocusWidgets())
        if (widget->accessibleName().isEmpty() &&
            !qobject_cast<QPushButton*>(widget)) // buttons say their own
            widget->setAccessibleName(field.Spec().accessible);
    editor->Refresh();
    return editor;
}

} // namespace sysadmin
