#pragma once

#include "framework/LocationAlerts.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

class LocationSettingsForm;

/// Which alerts about patrons a location shows.
struct PatronAlerts {
    QString available = "N"; ///< when a patron has items to pick up
    QString finesFees = "N";
    clsLocationAlerts alerts{};
    bool operator==(const PatronAlerts&) const = default;
};

/// The locations of a policy group and those that are in none, each with its settings.
class PolicyLocationsField : public PickedField {
public:
    PolicyLocationsField(Form& form, LocationSettingsForm& settings);

    void Load(RequestChannel& channel) override;
    /// Puts the rows that are not unchanged, each with its group; removed ones with nothing else.
    void PutRows(RequestChannel& channel, const QString& group) const;
    QStringList Words() const override;
    QString PlainCaption() const override { return Form::tr("Locations"); }

    bool IsSelected(const QString& location) const;
    /// A setting of a location, by its tag.
    QString Setting(const GridRow& row, const QString& tag) const;
    /// The location's name as such, without the marks of desks and pickup locations.
    QString NameOf(const GridRow& row) const;
    /// All columns of a row: the name as it is shown, the settings, the name as such.
    QList<GridColumn> Columns() const;
    /// Makes this location (none: an empty text) the public catalogue's circulation desk.
    void SetOpacDesk(const QString& location);
    /// Whether no other location of the group than this one is a pickup location.
    bool IsLastPickup(const QString& location) const;

private:
    int ColumnOf(const QString& tag) const;
    void FollowSettings();
    QStringList AskRemoval(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                           QWidget* parent) const;

    LocationSettingsForm& m_settings;
    QStringList m_defaults; ///< of the settings of a location that joins the group
};

/// The alerts of those locations whose settings were looked at. They travel in a request of their own.
class PolicyAlertsField : public Field {
public:
    PolicyAlertsField(Form& form, const PolicyLocationsField& locations)
        : Field(form, Kind::Own, {.caption = Form::tr("Patron Alerts")})
        , m_locations(locations) {}

    bool Has(const QString& location) const { return m_draft.contains(location); }
    PatronAlerts Of(const QString& location) const { return m_draft.value(location); }
    QStringList Known() const { return m_draft.keys(); }
    /// What the kinds of alerts are called, by id.
    void SetNames(const QHash<QString, QString>& names) { m_names = names; }
    void SetStored(const QString& location, const PatronAlerts& alerts);
    void SetDraft(const QString& location, const PatronAlerts& alerts);

    void Load(RequestChannel&) override { Clear(); }
    /// Puts a block for each location whose alerts changed.
    void Put(RequestChannel& channel) const override;
    void Clear() override;
    bool IsChanged() const override { return !Changed().isEmpty(); }
    bool IsBlank() const override { return m_draft.isEmpty(); }
    void Accept() override { m_stored = m_draft; }
    void Revert() override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;

private:
    QStringList Changed() const;

    const PolicyLocationsField& m_locations;
    QHash<QString, QString> m_names;
    QMap<QString, PatronAlerts> m_stored;
    QMap<QString, PatronAlerts> m_draft;
};

} // namespace sysadmin
