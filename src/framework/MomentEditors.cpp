#include "framework/MomentEditors.h"

#include "framework/DateEdit.h"
#include "framework/FieldEditor.h"
#include "framework/forms/ValueFields.h"

#include <QLineEdit>
#include <QShortcut>

namespace sysadmin {

namespace {

/// A date is typed in the locale's form or as 2026-11-21; what is no date stays as it was typed.
class DateEditor : public FieldEditor {
public:
    DateEditor(DateField& field, QWidget* parent)
        : FieldEditor(field)
        , m_date(field) {
        m_edit = new DateEdit(parent);
        m_edit->setFixedWidth(WidthForLength(*m_edit, 14) + m_edit->textMargins().right());
        m_widget = m_edit;
        m_focusWidgets = {m_edit};
        connect(m_edit, &DateEdit::DateChosen, this, [this](QDate date) { m_date.SetDate(date); });
        connect(m_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
            m_typing = true;
            m_date.TypeIn(text);
            m_typing = false;
        });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] {
            if (m_edit->isReadOnly())
                return;
            m_date.Leave();
            Refresh();
        });
    }

protected:
    void ShowValue() override {
        if (!m_typing && m_edit->text() != m_date.DisplayText())
            m_edit->setText(m_date.DisplayText());
        m_edit->SetCalendarDate(m_date.Date());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
    }

private:
    DateField& m_date;
    DateEdit* m_edit;
    bool m_typing = false; // what is typed stands as it is until the field is left
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

} // namespace

void RegisterMomentEditors() {
    static const EditorFor<DateField, DateEditor> dateEditor;
    static const EditorFor<TimeField, TimeEditor> timeEditor;
}

} // namespace sysadmin
