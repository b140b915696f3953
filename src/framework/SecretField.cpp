#include "framework/SecretField.h"

#include "core/data/RequestChannel.h"
#include "framework/FieldEditor.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

namespace sysadmin {

namespace {

/// An edit that never shows what the server has, and a button that takes it away.
class SecretEditor : public FieldEditor {
public:
    SecretEditor(SecretField& field, QWidget* parent)
        : FieldEditor(field)
        , m_secret(field) {
        m_widget = new QWidget(parent);
        auto* line = new QHBoxLayout(m_widget);
        line->setContentsMargins({});
        m_edit = new QLineEdit(m_widget);
        m_edit->setEchoMode(QLineEdit::Password);
        m_edit->setMaxLength(field.Spec().maxLength);
        m_edit->setMinimumWidth(WidthForLength(*m_edit, 24));
        m_edit->setObjectName(field.Name());
        m_takeAway = new QToolButton(m_widget);
        m_takeAway->setText(Form::tr("Remove"));
        m_takeAway->setObjectName("cmdRemove_" + field.Name());
        m_takeAway->setToolTip(Form::tr("Removes the stored password when the record is saved"));
        line->addWidget(m_edit, 1);
        line->addWidget(m_takeAway);
        m_named = m_edit;
        m_focusWidgets = {m_edit, m_takeAway};
        connect(m_edit, &QLineEdit::textEdited, this, [this](const QString& text) { m_secret.Enter(text); });
        connect(m_edit, &QLineEdit::editingFinished, this, [this] { m_secret.Leave(); });
        connect(m_takeAway, &QToolButton::clicked, this, [this] { m_secret.TakeAway(); });
    }

protected:
    void ShowValue() override {
        const QString text = m_secret.IsKept() ? QString() : m_secret.Draft();
        if (m_edit->text() != text)
            m_edit->setText(text);
        m_edit->setPlaceholderText(m_secret.IsKept() ? Form::tr("A password is stored")
                                   : m_secret.HasStored() && m_secret.IsBlank() ? Form::tr("Will be removed")
                                                                                : QString());
        m_takeAway->setVisible(m_secret.HasStored());
    }
    void Lock(bool usable, bool readOnly) override {
        m_edit->setEnabled(usable);
        m_edit->setReadOnly(readOnly);
        m_takeAway->setEnabled(usable && !readOnly && m_secret.IsKept());
    }

private:
    SecretField& m_secret;
    QLineEdit* m_edit = nullptr;
    QToolButton* m_takeAway = nullptr;
};

const EditorFor<SecretField, SecretEditor> secretEditor;

} // namespace

void SecretField::Load(RequestChannel& channel) {
    SetStored(channel.GetFlag(m_mark) ? Kept : QString());
}

void SecretField::Put(RequestChannel& channel) const {
    const bool changed = IsChanged();
    channel.PutField(m_mark, changed ? "Y" : "N");
    if (changed)
        channel.PutField(Tag(), Draft().isEmpty() || !m_seal ? QString() : m_seal(Draft()));
}

void SecretField::Accept() {
    SetStored(Draft().isEmpty() ? QString() : Kept);
}

QStringList SecretField::Words() const {
    constexpr int Bullets = 8; // whatever its length is
    return {QString(Draft().isEmpty() ? 0 : Bullets, QChar(0x2022))};
}

} // namespace sysadmin
