#include "cataloging/LoadModeField.h"

#include "core/data/RequestChannel.h"
#include "core/data/YesNo.h"
#include "framework/Captions.h"
#include "framework/ControlLock.h"
#include "framework/FieldEditor.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

namespace {

/// Two frames of options, of which one is chosen.
class LoadModeEditor : public FieldEditor {
public:
    LoadModeEditor(LoadModeField& field, QWidget* parent)
        : FieldEditor(field)
        , m_mode(field)
        , m_group(new QButtonGroup(this)) {
        m_widget = new QWidget(parent);
        auto* line = new QHBoxLayout(m_widget);
        line->setContentsMargins({});
        AddFrame("fraSingleMFHD", Form::tr("Single MFHD"), field.OptionsOf(false));
        AddFrame("fraMultipleMFHDs", Form::tr("Multiple MFHDs"), field.OptionsOf(true));
        line->addStretch();
    }

    void NameControls(const QString& name) override {
        for (QWidget* button : m_focusWidgets) {
            const auto* frame = static_cast<QGroupBox*>(button->parentWidget());
            SetSpokenName(*button,
                          name + ", " + frame->title() + ": " + DeclaredCaption(*button).remove('&'));
        }
    }

protected:
    void ShowValue() override {
        m_group->setExclusive(false); // a record without a mode has no button pressed
        QWidget* stop = m_focusWidgets.first();
        for (QAbstractButton* button : m_group->buttons()) {
            button->setChecked(button->property("letter") == m_mode.Draft());
            if (button->isChecked())
                stop = button;
        }
        m_group->setExclusive(true);
        // The Tab key comes by the chosen option alone; the arrow keys choose.
        for (QWidget* button : m_focusWidgets)
            button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
        m_widget->setFocusProxy(stop);
    }

private:
    void AddFrame(const QString& name, const QString& caption, const QList<PickItem>& options) {
        auto* frame = new QGroupBox(caption, m_widget);
        frame->setObjectName(name);
        auto* column = new QVBoxLayout(frame);
        for (const PickItem& option : options) {
            auto* button = new QRadioButton(option.text, frame);
            button->setObjectName(m_mode.Name() + option.id);
            button->setProperty("letter", option.id);
            m_group->addButton(button);
            column->addWidget(button);
            m_focusWidgets.append(button);
            connect(button, &QRadioButton::clicked, this, [this, button, id = option.id] {
                if (!IsLocked(*button))
                    m_mode.SetDraft(id);
                Refresh();
            });
        }
        column->addStretch();
        m_widget->layout()->addWidget(frame);
    }

    LoadModeField& m_mode;
    QButtonGroup* m_group;
};

const EditorFor<LoadModeField, LoadModeEditor> editor;

} // namespace

LoadModeField::LoadModeField(Form& form, const FieldSpec& spec)
    : LetterField(form, spec) {}

const bulkimport::LoadMode* LoadModeField::Mode() const {
    bool isNumber = false;
    const int mode = Draft().toInt(&isNumber);
    return isNumber && mode >= 0 && mode < bulkimport::LoadModes().size() ? &bulkimport::LoadModes()[mode]
                                                                          : nullptr;
}

QList<PickItem> LoadModeField::OptionsOf(bool multiple) const {
    QList<PickItem> options = Spec().options;
    options.removeIf([multiple](const PickItem& option) {
        const auto kind = bulkimport::LoadModes()[option.id.toInt()].kind;
        return (kind == bulkimport::LoadMode::Kind::Multiple) != multiple;
    });
    return options;
}

void LoadModeField::Load(RequestChannel& channel) {
    QStringList flags;
    for (const QString& tag : bulkimport::LoadFlags())
        if (channel.GetFlag(tag))
            flags.append(tag);
    const int mode = bulkimport::ModeOf(flags);
    SetStored(mode < 0 ? QString() : QString::number(mode));
}

void LoadModeField::Put(RequestChannel& channel) const {
    for (const QString& tag : bulkimport::LoadFlags())
        channel.PutField(tag, BoolToYN(Mode() && Mode()->flags.contains(tag)));
    // True and false as the loader has them.
    channel.PutField("OSHOW", CreatesOrders() ? "-1" : "0");
    channel.PutField("VSHOW", Updates() ? "-1" : "0");
}

} // namespace sysadmin
