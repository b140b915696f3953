#include "framework/MomentEditors.h"

#include "framework/DateEdit.h"
#include "framework/FieldEditor.h"
#include "framework/forms/ValueFields.h"

#include <QLineEdit>
#include <QShortcut>

namespace sysadmin {

namespace {

/// A line in which a date or a time is typed; it stands as it was typed until the field is left.
template <class MomentField>
class MomentEditor : public FieldEditor {
public:
    MomentEditor(MomentField& field, QLineEdit* edit, int letters)
        : FieldEditor(field)
        , m_moment(field)
        , m_edit(edit) {
        m_edit->setFixedWidth(WidthForLength(*m_edit, letters) + m_edit->textMargins().right());
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        connect(m_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
            m_typing = true;
            m_moment.TypeIn(text);
            m_typing = false;
        });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] {
            if (m_edit->isReadOnly())
                return;
            m_moment.Leave();
            Refresh();
        });
    }

protected:
    void ShowValue() override {
        if (!m_typing && m_edit->text() != m_moment.DisplayText())
            m_edit->setText(m_moment.DisplayText());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

    MomentField& m_moment;
    QLineEdit* m_edit;

private:
    bool m_typing = false;
};

/// A date is typed in the locale's form or as 2026-11-21, or chosen in a calendar.
class DateEditor : public MomentEditor<DateField> {
public:
    DateEditor(DateField& field, QWidget* parent)
        : DateEditor(field, new DateEdit(parent)) {}

protected:
    void ShowValue() override {
        MomentEditor::ShowValue();
        m_dateEdit->SetCalendarDate(m_moment.Date());
    }

private:
    DateEditor(DateField& field, DateEdit* edit)
        : MomentEditor(field, edit, 14)
        , m_dateEdit(edit) {
        connect(edit, &DateEdit::DateChosen, this, [this](QDate date) { m_moment.SetDate(date); });
    }

    DateEdit* m_dateEdit;
};

/// A time is typed as text, so that it may be missing or be one of the field's words; the arrow keys go by
/// quarters of an hour.
class TimeEditor : public MomentEditor<TimeField> {
public:
    TimeEditor(TimeField& field, QWidget* parent)
        : MomentEditor(field, new QLineEdit(parent), 9) {
        for (const int minutes : {15, -15}) {
            auto* step = new QShortcut(minutes > 0 ? Qt::Key_Up : Qt::Key_Down, m_edit);
            step->setContext(Qt::WidgetShortcut);
            connect(step, &QShortcut::activated, this, [this, minutes] {
                if (m_edit->isReadOnly())
                    return;
                const QTime time = m_moment.Time();
                m_moment.SetTime((time.isValid() ? time : QTime(0, 0)).addSecs(60 * minutes));
            });
        }
    }
};

} // namespace

void RegisterMomentEditors() {
    static const EditorFor<DateField, DateEditor> dateEditor;
    static const EditorFor<TimeField, TimeEditor> timeEditor;
}

} // namespace sysadmin
