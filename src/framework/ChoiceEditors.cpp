#include "framework/ChoiceEditors.h"

#include "framework/Captions.h"
#include "framework/ControlLock.h"
#include "framework/EscapeInList.h"
#include "framework/FieldEditor.h"
#include "framework/forms/ValueFields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QRadioButton>

namespace sysadmin {

namespace {

class FlagEditor : public FieldEditor {
public:
    FlagEditor(FlagField& field, QWidget* parent)
        : FieldEditor(field)
        , m_flag(field) {
        m_box = new QCheckBox(field.Spec().caption, parent);
        SetDeclaredCaption(*m_box, field.Spec().caption);
        m_widget = m_box;
        m_focusWidgets = {m_box};
        connect(m_box, &QCheckBox::clicked, this, [this](bool checked) {
            if (IsLocked(*m_box))
                m_box->setChecked(
                    m_flag.IsOn()); // pressed by a program for the disabled, past mouse and keys
            else
                m_flag.SetOn(checked);
        });
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
        KeepEscapeInList(*m_box);
        m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_box->setMinimumContentsLength(LeastShown);
        m_box->setMinimumWidth(WidthForLength(*m_box, LeastShown));
        m_box->setMaximumWidth(WidthForLength(*m_box, MostShown) + 40);
        m_widget = m_box;
        m_focusWidgets = {m_box};
        connect(m_box, &QComboBox::activated, this, [this](int index) {
            if (!IsLocked(*m_box))
                m_choice.SetDraft(m_box->itemData(index).toString());
            Refresh();
        });
    }

    /// What the list lacks is not read out as its value.
    void NameControls(const QString& name) override {
        m_name = name;
        const bool isListed = m_box->currentIndex() >= 0 || m_choice.Draft().isEmpty();
        SetSpokenName(*m_box, isListed ? name : name + ": " + m_choice.Draft());
    }

protected:
    void ShowValue() override {
        if (m_shown != m_choice.Items() || m_box->count() != m_choice.Items().size()) {
            m_shown = m_choice.Items();
            m_box->clear();
            qsizetype longest = LeastShown;
            for (const PickItem& item : m_shown) {
                m_box->addItem(item.text, item.id);
                longest = qMax(longest, item.text.size());
            }
            m_box->setMinimumContentsLength(int(qMin(longest, qsizetype(MostShown))));
        }
        // An id that the list lacks stands there as it is: it must survive, and the operator must see it.
        m_box->setPlaceholderText(m_choice.Draft());
        m_box->setCurrentIndex(m_box->findData(m_choice.Draft()));
        NameControls(m_name);
    }

private:
    static constexpr int LeastShown = 16; // characters
    static constexpr int MostShown = 40;

    ChoiceField& m_choice;
    QComboBox* m_box;
    QList<PickItem> m_shown;
    QString m_name;
};

class LetterEditor : public FieldEditor {
public:
    LetterEditor(LetterField& field, QWidget* parent)
        : FieldEditor(field)
        , m_letter(field) {
        m_widget = new QWidget(parent);
        auto* lines = new QGridLayout(m_widget);
        lines->setContentsMargins({});
        const qsizetype count = field.Spec().options.size();
        const int perLine = int(count > MostInLine ? (count + 1) / 2 : count);
        for (const PickItem& option : field.Spec().options) {
            auto* button = new QRadioButton(option.text, m_widget);
            button->setObjectName(field.Name() + option.id);
            button->setProperty("letter", option.id);
            const int place = int(m_focusWidgets.size());
            lines->addWidget(button, place / perLine, place % perLine);
            m_focusWidgets.append(button);
            connect(button, &QRadioButton::clicked, this, [this, button, id = option.id] {
                if (!IsLocked(*button))
                    m_letter.SetDraft(id);
                Refresh();
            });
        }
        lines->setColumnStretch(perLine, 1);
    }

    void NameControls(const QString& name) override {
        for (QWidget* button : m_focusWidgets)
            if (!name.isEmpty())
                SetSpokenName(*button, name + ": " + DeclaredCaption(*button).remove('&'));
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
    static constexpr int MostInLine = 4; // more options take two lines

    LetterField& m_letter;
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
        KeepEscapeInList(*m_unit);
        for (const PickItem& unit : field.Units())
            m_unit->addItem(unit.text, unit.id);
        line->addWidget(m_number);
        line->addWidget(m_unit);
        line->addStretch();
        m_named = m_number;
        m_focusWidgets = {m_number, m_unit};
        connect(m_number, &QLineEdit::textEdited, this,
                [this](const QString& text) { m_interval.SetParts(text, m_unit->currentData().toString()); });
        connect(m_unit, &QComboBox::activated, this, [this](int index) {
            if (!IsLocked(*m_unit))
                m_interval.ChangeUnit(m_unit->itemData(index).toString());
            Refresh();
        });
        connect(m_number, &QLineEdit::editingFinished, this, [this] {
            if (!m_number->isReadOnly())
                m_interval.Leave();
        });
    }

    void NameControls(const QString& name) override {
        SetSpokenName(*m_number, name);
        SetSpokenName(*m_unit, QObject::tr("%1: unit").arg(name));
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
        m_unit->setEnabled(usable);
        LockControl(*m_unit, readOnly);
    }

private:
    IntervalField& m_interval;
    QLineEdit* m_number;
    QComboBox* m_unit;
};

} // namespace

void RegisterChoiceEditors() {
    static const EditorFor<FlagField, FlagEditor> flagEditor;
    static const EditorFor<ChoiceField, ChoiceEditor> choiceEditor;
    static const EditorFor<LetterField, LetterEditor> letterEditor;
    static const EditorFor<IntervalField, IntervalEditor> intervalEditor;
}

} // namespace sysadmin
