#include "acquisitions/PolicyLocations.h"

#include "core/Prompter.h"
#include "core/data/RequestChannel.h"
#include "framework/DetailedRows.h"

#include <algorithm>

namespace sysadmin {

namespace {

// The cells of a row; those between state and id are the settings, in the order in which they travel.
constexpr int NameCell = 0;
constexpr int StateCell = 1;
constexpr int OrderCell = 2;
constexpr int ReceiveCell = 3;
constexpr int PrintCell = 6;
constexpr int LastSetting = 8;
constexpr int IdCell = 9;
constexpr int InUseCell = 10;

GridColumn Hidden(const QString& caption, const QString& tag = {}) {
    return {.caption = caption, .hidden = true, .tag = tag};
}

/// The columns behind the name of a location that is in no group, as they have always been called.
QList<GridColumn> AvailableColumns() {
    return {Hidden("Status"),
            Hidden("OpLoc", "3e"),
            Hidden("RecieveLoc", "3f"),
            Hidden("DesLoc", "3g"),
            Hidden("OpacDisplay", "3h"),
            Hidden("PrintLoc", "3c"),
            Hidden("DefaultItem", "3i"),
            Hidden("RecieveDefaultItems", "3j")};
}

QList<GridColumn> SelectedColumns() {
    return {Hidden("Status"),
            Hidden("Order Loc", "3e"),
            Hidden("Rec Loc", "3f"),
            Hidden("DesLoc", "3g"),
            Hidden("OpacDisplay", "3h"),
            Hidden("PrintLoc", "3c"),
            Hidden("DefaultItem", "3i"),
            Hidden("RecieveDefaultItems", "3j"),
            Hidden("Location"),
            Hidden("InUse", "IU")};
}

QStringList SettingTags() {
    return TagsOf(AvailableColumns().mid(1));
}

} // namespace

AcqLocationsField::AcqLocationsField(Form& form, AcqLocationForm& settings)
    : PickedField(form, {.name = "movLocations"},
                  {.availableGrid = "vsfSelect",
                   .availableCaption = Form::tr("Available"),
                   .selectedGrid = "vsfSelected",
                   .selectedCaption = Form::tr("Selected")},
                  {.more = SelectedColumns(), .availableMore = AvailableColumns(), .settings = &settings})
    , m_settings(settings) {
    Behaviour().admit = [this](const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                               QWidget* parent) { return AskRemoval(rows, toSelected, prompter, parent); };
    QObject::connect(&form, &Form::Edited, &form, [this](const Field* field) {
        if (field == this)
            FollowSettings();
    });
}

QList<GridRow> AcqLocationsField::ReadAvailable(const RequestChannel& channel) {
    return ReadRows(channel, "1", {}, QStringList{"2", {}} + SettingTags(), "3");
}

QList<GridRow> AcqLocationsField::ReadSelected(const RequestChannel& channel) {
    return ReadRows(channel, "3", {}, QStringList{"4", {}} + SettingTags() + QStringList{{}, "IU"}, "1");
}

void AcqLocationsField::LoadRows(const QList<GridRow>& available, const QList<GridRow>& selected) {
    m_names.clear();
    m_inUse.clear();
    for (const GridRow& row : available + selected) {
        m_names.insert(row.key, row.cells.value(NameCell));
        if (row.cells.value(InUseCell) == u"Y")
            m_inUse.insert(row.key);
    }
    LoadLists(available, selected);
    Accept();
}

/// What follows from the rest of a row: the shown name, where it was loaded, its id, whether it is in use.
QStringList AcqLocationsField::DerivedCells(const GridRow& row, bool isSelected) const {
    const auto marked = [&](int cell, const char* mark) {
        return QString(isSelected && row.cells.value(cell) == u"Y" ? mark : "");
    };
    QStringList cells = row.cells.Texts();
    while (cells.size() <= InUseCell)
        cells.append(QString());
    cells[NameCell] = m_names.value(row.key) + marked(OrderCell, " (o)") + marked(ReceiveCell, " (r)");
    cells[StateCell] = row.state;
    cells[IdCell] = row.key;
    cells[InUseCell] = m_inUse.contains(row.key) ? "Y" : "N";
    return cells;
}

void AcqLocationsField::FollowSettings() {
    QList<GridRow> other;
    const auto follow = [&](const QList<GridRow>& rows, bool isSelected) {
        for (const GridRow& row : rows)
            if (const QStringList cells = DerivedCells(row, isSelected); row.cells != cells)
                other.append({row.key, cells, row.state});
    };
    follow(Lists().Available(), false);
    follow(Lists().Selected(), true);
    if (!other.isEmpty())
        Move([&](PickedLists& lists) {
            for (const GridRow& row : other)
                for (const int cell : {NameCell, StateCell, IdCell, InUseCell})
                    lists.SetCells({row.key}, cell, row.cells[cell]);
        });
}

// The rows are where they belong now: their states say so from here on.
void AcqLocationsField::Accept() {
    PickedField::Accept();
    const auto derived = [this](QList<GridRow> rows, bool isSelected) {
        for (GridRow& row : rows)
            row.cells = DerivedCells(row, isSelected);
        return rows;
    };
    LoadLists(derived(Lists().Available(), false), derived(Lists().Selected(), true));
}

void AcqLocationsField::GiveDraft(const std::any& draft) {
    PickedField::GiveDraft(draft);
    FollowSettings();
}

bool AcqLocationsField::LacksDefaults() const {
    const QList<GridRow>& rows = Lists().Selected();
    return std::any_of(rows.begin(), rows.end(), [](const GridRow& row) {
        for (int cell = PrintCell; cell <= LastSetting; ++cell)
            if (row.cells.value(cell).isEmpty())
                return true;
        return false;
    });
}

void AcqLocationsField::PutRows(RequestChannel& channel) const {
    const RowCodes codes;
    const auto put = [&](const GridRow& row, const QString& state) {
        channel.PutField("3", row.key);
        channel.PutField("3d", state);
    };
    for (const GridRow& row : Lists().Removed())
        put(row, codes.removed);
    const QStringList tags = SettingTags();
    for (const GridRow& row : Lists().Selected()) {
        put(row, row.state == PickedLists::LoadedAvailable ? codes.added : codes.changed);
        for (qsizetype i = 0; i < tags.size(); ++i)
            channel.PutField(tags[i], row.cells.value(OrderCell + i));
    }
}

QStringList AcqLocationsField::Words() const {
    QStringList words;
    for (GridRow row : Lists().Selected()) {
        row.cells[NameCell] = m_names.value(row.key);
        words << DetailsInWords(row, QList<GridColumn>{{}} + Behaviour().more, m_settings);
    }
    return words;
}

QStringList AcqLocationsField::AskRemoval(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                                          QWidget* parent) const {
    QStringList keys;
    for (const GridRow& row : rows)
        if (toSelected || !m_inUse.contains(row.key))
            keys.append(row.key);
    if (keys.size() < rows.size())
        prompter.ShowBox(
            parent,
            {.text = Form::tr("This location is in use in one or more ledgers; it cannot be removed.")});
    return keys;
}

} // namespace sysadmin
