#include "search/MatchRows.h"

#include "search/KeywordFields.h"
#include "wire/MatchKeys.h"
#include "wire/SearchIndexes.h"

namespace sysadmin {

namespace indexes = wire::indexes;
namespace normal = wire::matching::normal;

namespace {

namespace MatchColumn {
enum Place { Field, Subfields, Normalisation, Index };
}

QList<PickItem> Normalisations() {
    return {{normal::AsItStands, Form::tr("As it stands")},
            {normal::Text, Form::tr("Text")},
            {normal::StandardNumber, Form::tr("Standard number")},
            {normal::ControlNumber, Form::tr("LC control number")},
            {normal::SystemNumber, Form::tr("System number")}};
}

QList<GridColumn> ColumnsOf(const MatchSpec& spec) {
    QList<GridColumn> columns{{.caption = Form::tr("Field"), .width = 60, .tag = spec.fieldTag},
                              {.caption = Form::tr("Subfields"), .width = 90, .tag = spec.subfieldsTag},
                              {.caption = Form::tr("Normalize As"),
                               .width = spec.indexTag.isEmpty() ? 0 : 140,
                               .tag = spec.normalisationTag,
                               .items = Normalisations()}};
    if (!spec.indexTag.isEmpty())
        columns.append({.caption = Form::tr("Search In"), .tag = spec.indexTag});
    return columns;
}

RowsSpec RowsOf(const MatchSpec& spec, const std::shared_ptr<MatchForm>& form) {
    RowsSpec rows{.marker = spec.fieldTag,
                  .ranked = true,
                  .add = {"cmdAdd", Form::tr("Add...")},
                  .modify = {"cmdModify", Form::tr("Modify...")},
                  .remove = {"cmdRemove", Form::tr("Remove")},
                  .up = {"cmdUp", Form::tr("Up")},
                  .down = {"cmdDown", Form::tr("Down")},
                  .ask = AskInForm(spec.dialog, ColumnsOf(spec), form)};
    const QList<GridColumn> columns = ColumnsOf(spec);
    for (int i = 0; i < columns.size(); ++i)
        rows.puts.append(PutCell(columns[i].tag, i));
    if (!spec.indexTag.isEmpty())
        rows.shown.insert(MatchColumn::Index, [choice = form->cboIndex.get()](const GridRow& row) {
            const QString code = row.cells.value(MatchColumn::Index);
            for (const PickItem& item : choice->Items())
                if (item.id == code)
                    return item.text;
            return code;
        });
    return rows;
}

} // namespace

MatchForm::MatchForm(const MatchSpec& theSpec)
    : spec(theSpec)
    , txtField(*this,
               {.name = "txtField",
                .tag = spec.fieldTag,
                .caption = tr("Field:"),
                .maxLength = 3,
                .required = true,
                .toolTip = tr("Three digits; X at the end stands for any digit, * for all fields")},
               indexes::IsFieldPattern,
               tr("A field is three digits, such as 245; 24X and 6XX stand for several, * for all."))
    , txtSubfields(*this,
                   {.name = "txtSubfields",
                    .tag = spec.subfieldsTag,
                    .caption = tr("Subfields:"),
                    .maxLength = indexes::SubfieldsLength,
                    .toolTip = tr("Empty: all of them, or the value of a control field")},
                   indexes::AreSubfields, SubfieldsProblem())
    , cboIndex(spec.indexTag.isEmpty()
                   ? nullptr
                   : std::make_unique<ChoiceField>(*this, FieldSpec{.name = "cboIndex",
                                                                    .tag = spec.indexTag,
                                                                    .caption = tr("Search In:"),
                                                                    .required = true}))
    , cboNormalisation(*this, {.name = "cboNormalisation",
                               .tag = spec.normalisationTag,
                               .caption = tr("Normalize As:"),
                               .required = true,
                               .initial = normal::AsItStands,
                               .options = Normalisations()})
    , txtExample(*this, {.name = "txtExample",
                         .caption = tr("Example:"),
                         .maxLength = NameLength,
                         .toolTip = tr("A text as records have it, to see what it becomes")})
    , txtBecomes(*this, {.name = "txtBecomes", .caption = tr("Becomes:"), .displayOnly = true}) {
    connect(this, &Form::Edited, this, [this](const sysadmin::Field*) {
        txtBecomes.SetStored(wire::matching::Normalised(txtExample.Draft(), cboNormalisation.Draft()));
    });
}

Layout MatchForm::Draw() {
    Layout layout = Below({txtField, txtSubfields});
    if (cboIndex)
        layout.children.append(*cboIndex);
    layout.children << cboNormalisation << txtExample << txtBecomes;
    return layout;
}

MatchField::MatchField(Form& form, const FieldSpec& field, const MatchSpec& spec)
    : MatchField(form, field, std::make_shared<MatchForm>(spec)) {}

MatchField::MatchField(Form& form, const FieldSpec& field, std::shared_ptr<MatchForm> match)
    : RowsField(form, field, ColumnsOf(match->spec), RowsOf(match->spec, match))
    , m_match(std::move(match)) {
    Behaviour().check = [this](const GridRow& row, const GridRow* former) { return Refused(row, former); };
}

QString MatchField::Refused(const GridRow& row, const GridRow* former) const {
    for (const GridRow& other : Rows()) {
        if (former && other.key == former->key)
            continue;
        const bool isSame =
            other.cells.value(MatchColumn::Field) == row.cells.value(MatchColumn::Field) &&
            other.cells.value(MatchColumn::Subfields) == row.cells.value(MatchColumn::Subfields) &&
            other.cells.value(MatchColumn::Index) == row.cells.value(MatchColumn::Index);
        if (isSame)
            return Form::tr("This match is in the list already.");
    }
    return {};
}

} // namespace sysadmin
