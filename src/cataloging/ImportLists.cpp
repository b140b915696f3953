#include "cataloging/ImportLists.h"

#include "wire/BulkImport.h"

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

namespace {

QList<GridColumn> PlaceColumns(const QString& tags) {
    return {{.caption = Form::tr("Indicator 1"), .width = 90, .tag = tags + "I1"},
            {.caption = Form::tr("Indicator 2"), .width = 90, .tag = tags + "I2"},
            {.caption = Form::tr("Field"), .width = 90, .tag = tags + "F"},
            {.caption = Form::tr("Subfield"), .tag = tags + "SF"}};
}

/// The question before a row goes; `item` names it.
QString RemoveQuestion(const QString& what, const QString& item) {
    return Form::tr("You will delete the selected %1").arg(what) + ":\r\n\"" + item + "\"\r\n\r\n" +
           Form::tr("Are you sure?");
}

/// A field of a record, with its parts in the columns of the list.
struct PlaceForm : RowForm {
    explicit PlaceForm(const PlaceListSpec& spec)
        : place(*this, {.name = "fra" + spec.role, .caption = tr("Look in:"), .required = true},
                {.field = {spec.tags + "F", "txtField"},
                 .indicator1 = {spec.tags + "I1", "txtIndicator1"},
                 .indicator2 = {spec.tags + "I2", "txtIndicator2"},
                 .subfield = {spec.tags + "SF", "txtSubfield"}}) {}

    Layout Draw() override { return Below({place}); }
    void TakeRow(const GridRow* row, const QList<GridColumn>&) override {
        Clear();
        const Loading loading(*this);
        for (qsizetype column = 0; row && column < Parts.size(); ++column)
            place.SetDraft(Parts[column], row->cells.value(column));
    }
    GridRow MakeRow(const GridRow* former, const QList<GridColumn>&) const override {
        GridRow row = former ? *former : GridRow();
        row.cells = {};
        for (const MarcPlaceField::Part part : Parts)
            row.cells.Own().append(place.Draft(part));
        return row;
    }
    QString Refusal() override {
        return place.Draft(MarcPlaceField::FieldTag).isEmpty() ||
                       place.Draft(MarcPlaceField::Subfield).isEmpty()
                   ? tr("Please enter the field and the subfield.")
                   : QString();
    }

    inline static const QList<MarcPlaceField::Part> Parts{MarcPlaceField::Indicator1,
                                                          MarcPlaceField::Indicator2,
                                                          MarcPlaceField::FieldTag, MarcPlaceField::Subfield};
    MarcPlaceField place;
};

RowsSpec PlaceRows(const PlaceListSpec& spec) {
    RowsSpec rows{.marker = spec.tags + "I1",
                  .puts = {PutCell(spec.tags + "I1", PlaceColumn::Indicator1),
                           PutCell(spec.tags + "I2", PlaceColumn::Indicator2),
                           PutCell(spec.tags + "F", PlaceColumn::Field),
                           PutCell(spec.tags + "SF", PlaceColumn::Subfield)},
                  .ranked = true,
                  .add = {"cmdAdd" + spec.role, Form::tr("Add...")},
                  .modify = {"cmdModify" + spec.role, Form::tr("Modify...")},
                  .remove = {"cmdRemove" + spec.role, Form::tr("Remove")},
                  .up = {"cmdUp" + spec.role, Form::tr("Up")},
                  .down = {"cmdDown" + spec.role, Form::tr("Down")},
                  .ask = AskInForm(spec.dialog, PlaceColumns(spec.tags), std::make_shared<PlaceForm>(spec)),
                  .removeQuestion = RemoveQuestion(spec.what, "%3 %4"),
                  .removeTitle = Form::tr("Delete the selected %1").arg(spec.what)};
    return rows;
}

QString TextOf(const QList<PickItem>& items, const QString& id) {
    for (const PickItem& item : items)
        if (item.id == id)
            return item.text;
    return id;
}

QList<GridColumn> MappingColumns() {
    return {{.caption = Form::tr("MARC Item"), .width = 84, .tag = "DMI"},
            {.caption = Form::tr("Item Type"), .width = 110, .tag = "DMId"},
            {.caption = Form::tr("MARC Loc"), .width = 84, .tag = "DLI"},
            {.caption = Form::tr("Location"), .tag = "DML"},
            {.caption = Form::tr("Hierarchy"), .width = 130, .tag = "DMH"}};
}

RowsSpec MappingRows() {
    return {.marker = "DMI",
            .puts = {PutCell("DMI", MappingColumn::MarcItem), PutCell("DMId", MappingColumn::ItemType),
                     PutCell("DLI", MappingColumn::MarcLocation), PutCell("DML", MappingColumn::Location),
                     PutCell("DMH", MappingColumn::Hierarchy)},
            .add = {"cmdAddMapping", Form::tr("Add...")},
            .modify = {"cmdModifyMapping", Form::tr("Modify...")},
            .remove = {"cmdRemoveMapping", Form::tr("Remove")},
            .removeQuestion = RemoveQuestion(Form::tr("Mapping Item Type"), Form::tr("%1, For Location: %3")),
            .removeTitle = Form::tr("Delete the selected %1").arg(Form::tr("Mapping Item Type"))};
}

bool IsSameCode(const QString& one, const QString& other) {
    return one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0;
}

} // namespace

PlaceList::PlaceList(Form& form, const PlaceListSpec& spec)
    : RowsField(form, {.name = spec.grid, .accessible = spec.what}, PlaceColumns(spec.tags),
                PlaceRows(spec)) {
    Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        for (const GridRow& other : Rows())
            if (!(former && other.key == former->key) && other.cells == row.cells)
                return Form::tr("This field is in the list already.");
        return Rows().size() >= bulkimport::MostFields && !former
                   ? Form::tr("There are no more than %1 fields in a list.").arg(bulkimport::MostFields)
                   : QString();
    };
}

MappingForm::MappingForm()
    : txtMarcItem(*this, {.name = "txtMarcItem",
                          .tag = "DMI",
                          .caption = tr("MARC Item:"),
                          .maxLength = bulkimport::ValueLength,
                          .required = true,
                          .toolTip = tr("The item type as records have it; * is any, and none")})
    , cboItemType(*this,
                  {.name = "cboItemType", .tag = "DMId", .caption = tr("Item Type:"), .required = true})
    , txtMarcLoc(*this, {.name = "txtMarcLoc",
                         .tag = "DLI",
                         .caption = tr("MARC Loc:"),
                         .maxLength = bulkimport::ValueLength,
                         .required = true,
                         .toolTip = tr("The location as records have it; * is any, and none")})
    , cboLocation(*this, {.name = "cboLocation", .tag = "DML", .caption = tr("Location:"), .required = true})
    , cboHierarchy(*this, {.name = "cboHierarchy", .tag = "DMH", .caption = tr("Hierarchy:")}) {}

Layout MappingForm::Draw() {
    return Below({txtMarcItem, cboItemType, txtMarcLoc, cboLocation, cboHierarchy});
}

void MappingForm::Begin(FormDialog&, Prompter&, const GridRow* former) {
    if (former || !hasCatchAll || hasCatchAll())
        return;
    txtMarcItem.SetStored(bulkimport::AnyCode);
    txtMarcLoc.SetStored(bulkimport::AnyCode);
}

MappingList::MappingList(Form& form)
    : RowsField(form, {.name = "vsfMapping", .accessible = Form::tr("Item Type Mapping")}, MappingColumns(),
                MappingRows())
    , m_dialog(std::make_shared<MappingForm>()) {
    m_dialog->hasCatchAll = [this] { return HasCatchAll(); };
    RowsSpec& rows = Behaviour();
    rows.ask = AskInForm({.name = "frmCataloging_BulkImportMapping",
                          .title = Form::tr("Bulk Import Item Type Mapping"),
                          .helpContext = 50433},
                         MappingColumns(), m_dialog);
    const auto show = [&rows](int column, const ChoiceField& choice) {
        rows.shown.insert(column, [column, &choice](const GridRow& row) {
            const QString id = row.cells.value(column);
            return id.isEmpty() ? QString() : TextOf(choice.Items(), id);
        });
    };
    show(MappingColumn::ItemType, m_dialog->cboItemType);
    show(MappingColumn::Location, m_dialog->cboLocation);
    show(MappingColumn::Hierarchy, m_dialog->cboHierarchy);
    rows.check = [this](const GridRow& row, const GridRow* former) {
        const auto isSame = [&](const GridRow& other, int column) {
            return IsSameCode(other.cells.value(column), row.cells.value(column));
        };
        for (const GridRow& other : Rows())
            if (!(former && other.key == former->key) && isSame(other, MappingColumn::MarcItem) &&
                isSame(other, MappingColumn::MarcLocation))
                return Form::tr("There is a mapping of this MARC item and MARC location already.");
        return QString();
    };
}

void MappingList::SetChoices(const QList<PickItem>& itemTypes, const QList<PickItem>& locations,
                             const QList<PickItem>& hierarchies) {
    m_dialog->cboItemType.SetItems(itemTypes);
    m_dialog->cboLocation.SetItems(locations);
    m_dialog->cboHierarchy.SetItems(hierarchies);
}

bool MappingList::HasCatchAll() const {
    for (const GridRow& row : Rows())
        if (row.cells.value(MappingColumn::MarcItem).trimmed() == bulkimport::AnyCode &&
            row.cells.value(MappingColumn::MarcLocation).trimmed() == bulkimport::AnyCode)
            return true;
    return false;
}

} // namespace sysadmin
