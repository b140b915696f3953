#include "circulation/PolicyLocations.h"

#include "circulation/frmCirculation_PolDefLocationSettings.h"
#include "core/Prompter.h"
#include "core/data/RequestChannel.h"

#include <algorithm>

namespace sysadmin {

namespace {

QString Marked(const QString& name, bool isDesk, bool isPickup) {
    return name + (isDesk ? " (c)" : "") + (isPickup ? " (p)" : "");
}

} // namespace

PolicyLocationsField::PolicyLocationsField(Form& form, LocationSettingsForm& settings)
    : PickedField(
          form, {.name = "movLocations"},
          {.availableGrid = "vsfAvailableLocations",
           .availableCaption = Form::tr("Available Locations"),
           .selectedGrid = "vsfSelectedLocations",
           .selectedCaption = Form::tr("Selected Locations"),
           .select = "cmdSelectLocation",
           .selectAll = "cmdSelectAllLocations",
           .discard = "cmdDiscardLocation",
           .discardAll = "cmdDiscardAllLocations"},
          {.more = settings.Columns() << GridColumn{.caption = Form::tr("Name"), .hidden = true, .tag = "SN"},
           .availableMore = QList<GridColumn>(),
           .modify = {"cmdLocationSettings", Form::tr("S&ettings...")}})
    , m_settings(settings)
    , m_defaults(settings.Defaults()) {
    Behaviour().admit = [this](const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                               QWidget* parent) { return AskRemoval(rows, toSelected, prompter, parent); };
    QObject::connect(&form, &Form::Edited, &form, [this](const Field* field) {
        if (field == this)
            FollowSettings();
    });
}

QList<GridColumn> PolicyLocationsField::Columns() const {
    return QList<GridColumn>{{.caption = Form::tr("Location")}} + Behaviour().more;
}

int PolicyLocationsField::ColumnOf(const QString& tag) const {
    const QList<GridColumn> columns = Columns();
    const auto column =
        std::find_if(columns.begin(), columns.end(), [&](const GridColumn& each) { return each.tag == tag; });
    return int(column - columns.begin());
}

QString PolicyLocationsField::Setting(const GridRow& row, const QString& tag) const {
    return row.cells.value(ColumnOf(tag));
}

QString PolicyLocationsField::NameOf(const GridRow& row) const {
    return Setting(row, "SN");
}

void PolicyLocationsField::Load(RequestChannel& channel) {
    QList<GridRow> available = ReadRows(channel, "AI", {}, {"AN"}, "SI");
    for (GridRow& row : available)
        row.cells.Own() += m_defaults + QStringList{row.cells[0]};
    QList<GridRow> selected = ReadRows(channel, "SI", {}, QStringList{"SN"} + TagsOf(Behaviour().more), "AI");
    for (GridRow& row : selected)
        row.cells[0] = Marked(NameOf(row), Setting(row, "CL") == u"Y", Setting(row, "PL") == u"Y");
    LoadLists(available, selected);
}

// The shown name follows the settings; a location that is in no group has no marks.
void PolicyLocationsField::FollowSettings() {
    QList<std::pair<QString, QString>> names;
    const auto follow = [&](const QList<GridRow>& rows, bool isSelected) {
        for (const GridRow& row : rows) {
            const QString name = Marked(NameOf(row), isSelected && Setting(row, "CL") == u"Y",
                                        isSelected && Setting(row, "PL") == u"Y");
            if (row.cells.value(0) != name)
                names.append({row.key, name});
        }
    };
    follow(Lists().Available(), false);
    follow(Lists().Selected(), true);
    if (!names.isEmpty())
        Move([&](PickedLists& lists) {
            for (const auto& [key, name] : names)
                lists.SetCells({key}, 0, name);
        });
}

void PolicyLocationsField::PutRows(RequestChannel& channel, const QString& group) const {
    const auto put = [&](const GridRow& row, const QString& state) {
        channel.PutField("LS", state);
        channel.PutField("ID", group);
        channel.PutField("SI", row.key);
    };
    const auto has = [](const QList<GridRow>& rows, const QString& key) {
        return std::any_of(rows.begin(), rows.end(), [&](const GridRow& row) { return row.key == key; });
    };
    const RowCodes codes;
    const QList<GridRow> added = Lists().Added();
    const QList<GridRow> altered = Lists().Altered();
    for (const GridRow& row : Lists().Selected()) {
        const bool isAdded = has(added, row.key);
        if (!isAdded && !has(altered, row.key))
            continue;
        put(row, isAdded ? codes.added : codes.changed);
        for (const GridColumn& column : m_settings.Columns())
            channel.PutField(column.tag, Setting(row, column.tag));
    }
    for (const GridRow& row : Lists().Removed())
        put(row, codes.removed);
}

QStringList PolicyLocationsField::Words() const {
    QStringList words;
    for (const GridRow& row : Lists().Selected())
        words.append(m_settings.InWords(row, Columns()));
    return words;
}

bool PolicyLocationsField::IsSelected(const QString& location) const {
    const QList<GridRow>& rows = Lists().Selected();
    return std::any_of(rows.begin(), rows.end(), [&](const GridRow& row) { return row.key == location; });
}

void PolicyLocationsField::SetOpacDesk(const QString& location) {
    Move([&](PickedLists& lists) {
        const QList<GridRow> rows = lists.Selected();
        for (const GridRow& row : rows)
            lists.SetCells({row.key}, ColumnOf("OD"), row.key == location ? "Y" : "N");
    });
}

bool PolicyLocationsField::IsLastPickup(const QString& location) const {
    const QList<GridRow>& rows = Lists().Selected();
    return std::none_of(rows.begin(), rows.end(), [&](const GridRow& row) {
        return row.key != location && Setting(row, "PL") == u"Y";
    });
}

QStringList PolicyLocationsField::AskRemoval(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                                             QWidget* parent) const {
    QStringList keys;
    QStringList desks;
    QStringList names;
    for (const GridRow& row : rows) {
        if (!toSelected && Setting(row, "OD") == u"Y") {
            prompter.ShowBox(parent, OpacDeskStays(NameOf(row)));
            continue;
        }
        keys.append(row.key);
        if (!toSelected && Setting(row, "CL") == u"Y") {
            desks.append(row.key);
            names.append("\t" + NameOf(row));
        }
    }
    if (desks.isEmpty() ||
        prompter.ShowBox(parent, {.text = Form::tr("You are about to remove Circulation Desk") + "\r\n\r\n" +
                                          names.join("\r\n") + "\r\n" + Form::tr("from this Policy Group.") +
                                          "\r\n" + Form::tr("Are you sure you want to remove it?"),
                                  .icon = Box::Icon::Exclamation,
                                  .buttons = Box::Buttons::YesNo,
                                  .title = Form::tr("Circ Desk Removal warning"),
                                  .careful = true}))
        return keys;
    keys.removeIf([&](const QString& key) { return desks.contains(key); });
    return keys;
}

void PolicyAlertsField::SetStored(const QString& location, const PatronAlerts& alerts) {
    m_stored[location] = m_draft[location] = alerts;
    NotifyChange();
}

void PolicyAlertsField::SetDraft(const QString& location, const PatronAlerts& alerts) {
    m_draft[location] = alerts;
    NotifyEdit();
}

void PolicyAlertsField::Clear() {
    m_stored.clear();
    m_draft.clear();
    NotifyChange();
}

void PolicyAlertsField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void PolicyAlertsField::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<QMap<QString, PatronAlerts>>(draft);
    NotifyChange();
}

// The alerts of a location that leaves the group go with it.
QStringList PolicyAlertsField::Changed() const {
    QStringList locations;
    for (auto each = m_draft.begin(); each != m_draft.end(); ++each)
        if (each.value() != m_stored.value(each.key()) && m_locations.IsSelected(each.key()))
            locations.append(each.key());
    return locations;
}

void PolicyAlertsField::Put(RequestChannel& channel) const {
    for (const QString& location : Changed()) {
        const PatronAlerts shown = m_draft[location];
        channel.PutField("CLEANLOCID", location);
        channel.PutField("ALRTAVL", shown.available);
        channel.PutField("ALRTFF", shown.finesFees);
        for (int i = 0; i < shown.alerts.GetColCount(); ++i) {
            channel.PutField("ALRTLOCID", location);
            channel.PutField("ALRTID", shown.alerts.GetAlertID(i));
            channel.PutField("ALRTDISP", shown.alerts.GetDisplay(i));
            channel.PutField("ALRTUSENAME", shown.alerts.GetName(i));
            channel.PutField("ALRTUSEBARCODE", shown.alerts.GetBarcode(i));
            channel.PutField("ALRTUSEPHONE", shown.alerts.GetPhone(i));
        }
    }
}

QStringList PolicyAlertsField::Words() const {
    QStringList words;
    for (auto each = m_draft.begin(); each != m_draft.end(); ++each) {
        QString name;
        for (const GridRow& row : m_locations.Lists().Selected())
            if (row.key == each.key())
                name = m_locations.NameOf(row);
        const PatronAlerts& shown = each.value();
        QStringList parts;
        if (shown.finesFees == u"Y")
            parts.append(Form::tr("fines/fees"));
        if (shown.available == u"Y")
            parts.append(Form::tr("available items"));
        for (int i = 0; i < shown.alerts.GetColCount(); ++i)
            parts.append(
                InWords(AlertRow(m_names.value(shown.alerts.GetAlertID(i), shown.alerts.GetAlertID(i)),
                                 shown.alerts, i),
                        QList<GridColumn>{{}} + AlertColumns()));
        words.append(name + ": " + parts.join(", "));
    }
    return words;
}

} // namespace sysadmin
