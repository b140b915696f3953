#include "cataloging/ImportSettings.h"

#include "core/data/RequestChannel.h"

#include <algorithm>

namespace sysadmin {

namespace {

/// Holds the values of a rule where the fields of a dialog read and put them.
class SettingsDesk : public RequestChannel {
public:
    explicit SettingsDesk(const ImportSettings::Values& values = {}) {
        for (auto value = values.begin(); value != values.end(); ++value)
            m_fields.append(wire::Field{value.key(), value.value()});
        SendRequest({}); // makes them the reply that is read
    }

    /// What the fields put.
    const wire::Fields& Take() {
        SendRequest({});
        return m_fields;
    }

    bool SignOn(Session&) override { return false; }
    const QString& LastProblem() const override { return m_problem; }

protected:
    Answer Exchange(const QString&, const wire::Fields& fields) override {
        m_fields += fields;
        return {0, m_fields};
    }

private:
    wire::Fields m_fields;
    QString m_problem;
};

} // namespace

ImportSettings::ImportSettings(Form& form, bulkimport::Setting::Part part, const QString& caption)
    : Field(form, Kind::Own, {.accessible = caption})
    , m_settings(bulkimport::SettingsOf(part)) {}

QString ImportSettings::Value(const QString& name) const {
    for (const bulkimport::Setting& setting : m_settings)
        if (setting.name == name)
            return m_draft.value(setting.tag);
    return {};
}

void ImportSettings::Fill(Form& form, std::initializer_list<const ImportSettings*> parts) {
    Values values;
    for (const ImportSettings* part : parts)
        values.insert(part->m_draft);
    SettingsDesk desk(values);
    const Form::Loading loading(form);
    for (Field* field : form.Fields())
        field->Load(desk);
}

void ImportSettings::TakeFrom(const Form& form) {
    SettingsDesk desk;
    for (const Field* field : form.Fields())
        field->Put(desk);
    Values values = m_draft;
    for (const wire::Field& field : desk.Take())
        if (values.contains(field.tag))
            values[field.tag] = field.value.trimmed();
    if (values == m_draft)
        return;
    m_draft = values;
    NotifyEdit();
}

void ImportSettings::Load(RequestChannel& channel) {
    for (const bulkimport::Setting& setting : m_settings)
        m_stored[setting.tag] = channel.GetField(setting.tag);
    m_draft = m_stored;
    NotifyChange();
}

void ImportSettings::Put(RequestChannel& channel) const {
    for (const bulkimport::Setting& setting : m_settings)
        channel.PutField(setting.tag, m_draft.value(setting.tag));
}

void ImportSettings::Clear() {
    for (const bulkimport::Setting& setting : m_settings)
        m_stored[setting.tag] = setting.initial;
    m_draft = m_stored;
    NotifyChange();
}

bool ImportSettings::IsBlank() const {
    return std::all_of(m_draft.begin(), m_draft.end(), [](const QString& value) { return value.isEmpty(); });
}

void ImportSettings::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void ImportSettings::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<Values>(draft);
    NotifyChange();
}

QStringList ImportSettings::Words() const {
    QStringList words;
    for (const bulkimport::Setting& setting : m_settings)
        if (const QString value = m_draft.value(setting.tag);
            !value.isEmpty() && setting.kind != bulkimport::Setting::Kind::Kept)
            words.append(setting.name + " " + value);
    return words;
}

} // namespace sysadmin
