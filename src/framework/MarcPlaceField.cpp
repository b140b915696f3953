#include "framework/MarcPlaceField.h"

#include "core/data/RequestChannel.h"
#include "framework/FieldEditor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr MarcPlaceField::Part AllParts[] = {MarcPlaceField::FieldTag, MarcPlaceField::Indicator1,
                                             MarcPlaceField::Indicator2, MarcPlaceField::Subfield};

bool IsIndicator(MarcPlaceField::Part part) {
    return part == MarcPlaceField::Indicator1 || part == MarcPlaceField::Indicator2;
}

/// A small box for each part, with its caption in front.
class MarcPlaceEditor : public FieldEditor {
public:
    MarcPlaceEditor(MarcPlaceField& field, QWidget* parent)
        : FieldEditor(field)
        , m_place(field) {
        m_widget = new QWidget(parent);
        auto* line = new QHBoxLayout(m_widget);
        line->setContentsMargins({});
        for (const MarcPlaceField::Part part : AllParts) {
            if (field.PartSpec(part).name.isEmpty())
                continue;
            auto* box = new QLineEdit(m_widget);
            box->setObjectName(field.PartSpec(part).name);
            const QString caption = MarcPlaceField::CaptionOf(part);
            box->setMaxLength(part == MarcPlaceField::FieldTag ? 3 : 1);
            box->setValidator(
                new QRegularExpressionValidator(QRegularExpression(field.PatternOf(part)), box));
            box->setFixedWidth(WidthForLength(*box, part == MarcPlaceField::FieldTag ? 4 : 2));
            auto* label = new QLabel(caption + ":", m_widget);
            label->setBuddy(box);
            line->addWidget(label);
            line->addWidget(box);
            m_boxes.append({part, box});
            m_focusWidgets.append(box);
            connect(box, &QLineEdit::textEdited, this,
                    [this, part](const QString& text) { m_place.SetDraft(part, text); });
            connect(box, &QLineEdit::editingFinished, this, [this] { m_place.Leave(); });
        }
        line->addStretch();
    }

    void NameControls(const QString& name) override {
        for (const auto& [part, box] : m_boxes)
            SetSpokenName(*box, QString(name + " " + MarcPlaceField::CaptionOf(part)).trimmed());
    }

protected:
    void ShowValue() override {
        for (const auto& [part, box] : m_boxes)
            if (box->text() != m_place.Draft(part))
                box->setText(m_place.Draft(part));
    }
    void Lock(bool usable, bool readOnly) override {
        for (const auto& [part, box] : m_boxes) {
            box->setEnabled(usable);
            box->setReadOnly(readOnly);
        }
    }

private:
    MarcPlaceField& m_place;
    QList<std::pair<MarcPlaceField::Part, QLineEdit*>> m_boxes;
};

const EditorFor<MarcPlaceField, MarcPlaceEditor> placeEditor;

} // namespace

MarcPlaceField::MarcPlaceField(Form& form, const FieldSpec& spec, const MarcPlaceSpec& place)
    : Field(form, Kind::Own, spec)
    , m_specs{place.field, place.indicator1, place.indicator2, place.subfield}
    , m_blankIndicator(place.blankIndicator)
    , m_wildcards(place.wildcards)
    , m_order(place.order) {
    if (m_order.isEmpty())
        for (const MarcPart& part : m_specs)
            m_order.append(part.tag);
    m_order.removeAll(QString());
}

QString MarcPlaceField::PatternOf(Part part) const {
    if (m_wildcards)
        return part == FieldTag ? "[0-9]{0,3}|[0-9]{2}[Xx]|[0-9][Xx]{1,2}|\\*" : "[0-9A-Za-z*]?";
    return part == FieldTag ? "[0-9]{0,3}" : "[0-9A-Za-z]?";
}

QString MarcPlaceField::CaptionOf(Part part) {
    switch (part) {
    case FieldTag:
        return Form::tr("Field");
    case Indicator1:
        return Form::tr("Indicator 1");
    case Indicator2:
        return Form::tr("Indicator 2");
    default:
        return Form::tr("Subfield");
    }
}

void MarcPlaceField::SetDraft(Part part, const QString& value) {
    const QString kept = part == FieldTag ? value.trimmed().toUpper() : value.trimmed().toLower();
    if (m_draft[part] == kept)
        return;
    m_draft[part] = kept;
    NotifyEdit();
}

void MarcPlaceField::Load(RequestChannel& channel) {
    for (const Part part : AllParts) {
        if (m_specs[part].tag.isEmpty())
            continue;
        const QString value = channel.GetField(m_specs[part].tag);
        const bool isBlank = IsIndicator(part) && value == m_blankIndicator;
        m_stored[part] = isBlank ? QString() : value;
    }
    m_draft = m_stored;
    NotifyChange();
}

QString MarcPlaceField::ToWire(Part part) const {
    return IsIndicator(part) && m_draft[part].isEmpty() ? m_blankIndicator : m_draft[part];
}

void MarcPlaceField::Put(RequestChannel& channel) const {
    for (const QString& tag : m_order)
        for (const Part part : AllParts)
            if (m_specs[part].tag == tag)
                channel.PutField(tag, ToWire(part));
}

void MarcPlaceField::Clear() {
    m_stored = m_draft = {};
    NotifyChange();
}

bool MarcPlaceField::IsBlank() const {
    return std::all_of(m_draft.begin(), m_draft.end(), [](const QString& part) { return part.isEmpty(); });
}

void MarcPlaceField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

QString MarcPlaceField::Problem() const {
    if (const QString problem = Field::Problem(); !problem.isEmpty() || IsBlank() || !IsChanged())
        return problem;
    if (m_draft[FieldTag].size() == 3 || (m_wildcards && m_draft[FieldTag] == u"*"))
        return {};
    return (m_wildcards
                ? Form::tr("\"%1\": a MARC field has three digits, such as 650, 65X or 6XX; * is any.")
                : Form::tr("\"%1\": a MARC field has three digits."))
        .arg(PlainCaption());
}

void MarcPlaceField::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<Parts>(draft);
    NotifyChange();
}

QStringList MarcPlaceField::Words() const {
    QStringList parts;
    for (const QString& part : m_draft)
        if (!part.isEmpty())
            parts << part;
    return {parts.join(' ')};
}

} // namespace sysadmin
