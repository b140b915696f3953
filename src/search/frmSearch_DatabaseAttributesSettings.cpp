#include "search/frmSearch_DatabaseAttributesSettings.h"

#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"
#include "framework/forms/ValueFields.h"
#include "wire/Bib1.h"
#include "wire/SearchDatabases.h"

namespace sysadmin {

namespace databases = wire::databases;
namespace bib1 = wire::bib1;

namespace {

constexpr int SearchCodeColumn = 0;

/// The column of an attribute type in the grid, and the type.
const QList<std::pair<int, bib1::Type>> TypeColumns{
    {2, bib1::Use}, {3, bib1::Relation}, {4, bib1::Position}, {5, bib1::Structure}, {6, bib1::Completeness}};

QList<PickItem> Values(bib1::Type type) {
    QList<PickItem> items{{{}, Form::tr("<unspecified>")}};
    for (const bib1::Value& value : bib1::ValuesOf(type))
        items.append({QString::number(value.number), QString(value.name)});
    return items;
}

struct AttributeForm : RowForm {
    TextField txtSearchCode{*this,
                            {.name = "txtSearchCode",
                             .tag = "ASC",
                             .caption = tr("Search Code:"),
                             .maxLength = databases::SearchCodeLength,
                             .required = true}};
    TextField txtParentCode{*this,
                            {.name = "txtParentCode",
                             .tag = "PSC",
                             .caption = tr("Parent Code:"),
                             .maxLength = databases::SearchCodeLength}};
    ChoiceField cboUse{*this,
                       {.name = "cboUse", .tag = "A1", .caption = tr("Use:"), .options = Values(bib1::Use)}};
    ChoiceField cboRelation{
        *this,
        {.name = "cboRelation", .tag = "A2", .caption = tr("Relation:"), .options = Values(bib1::Relation)}};
    ChoiceField cboPosition{
        *this,
        {.name = "cboPosition", .tag = "A3", .caption = tr("Position:"), .options = Values(bib1::Position)}};
    ChoiceField cboStructure{*this,
                             {.name = "cboStructure",
                              .tag = "A4",
                              .caption = tr("Structure:"),
                              .options = Values(bib1::Structure)}};
    ChoiceField cboCompleteness{*this,
                                {.name = "cboCompleteness",
                                 .tag = "A6",
                                 .caption = tr("Completeness:"),
                                 .options = Values(bib1::Completeness)}};
    FlagField chkAndWords{*this,
                          {.name = "chkAndWords",
                           .tag = "AA",
                           .caption = tr("And all words"),
                           .toolTip = tr("Each word is searched by itself, and all of them must be found")}};
    FlagField chkLeft{*this, {.name = "chkLeft", .tag = "LT", .caption = tr("Left truncation")}};
    FlagField chkBoth{*this, {.name = "chkBoth", .tag = "BE", .caption = tr("Truncation at both ends")}};
    FlagField chkRight{*this, {.name = "chkRight", .tag = "RT", .caption = tr("Right truncation")}};
    TextField txtDescription{*this,
                             {.name = "txtDescription",
                              .tag = "AD",
                              .caption = tr("Description:"),
                              .maxLength = databases::NameLength}};

    AttributeForm() {
        // A search truncates in one way.
        When([this] { return chkLeft.IsOn(); }).Set(chkBoth, "N").Set(chkRight, "N");
        When([this] { return chkBoth.IsOn(); }).Set(chkLeft, "N").Set(chkRight, "N");
        When([this] { return chkRight.IsOn(); }).Set(chkLeft, "N").Set(chkBoth, "N");
    }

    Layout Draw() override {
        return Below({Beside({txtSearchCode, txtParentCode}), txtDescription,
                      Frame("fraAttributes", tr("Attributes"),
                            {cboUse, cboRelation, cboPosition, cboStructure, cboCompleteness}),
                      Frame("fraFlags", tr("Truncation"), {Beside({chkLeft, chkRight}), chkBoth}),
                      chkAndWords});
    }
};

} // namespace

QList<GridColumn> AttributeColumns() {
    return {{.caption = Form::tr("Search Code"), .width = 84, .tag = "ASC"},
            {.caption = Form::tr("Parent"), .width = 56, .tag = "PSC"},
            {.caption = Form::tr("Use"), .width = 60, .tag = "A1"},
            {.caption = Form::tr("Relation"), .width = 58, .tag = "A2"},
            {.caption = Form::tr("Position"), .width = 58, .tag = "A3"},
            {.caption = Form::tr("Structure"), .width = 62, .tag = "A4"},
            {.caption = Form::tr("Complete"), .width = 64, .tag = "A6"},
            {.caption = Form::tr("And"), .width = 36, .yesNo = true, .tag = "AA"},
            {.caption = Form::tr("Left"), .width = 36, .yesNo = true, .tag = "LT"},
            {.caption = Form::tr("Both"), .width = 38, .yesNo = true, .tag = "BE"},
            {.caption = Form::tr("Right"), .width = 42, .yesNo = true, .tag = "RT"},
            {.caption = Form::tr("Description"), .tag = "AD"}};
}

RowsSpec AttributeRows() {
    RowsSpec spec{.marker = "ASC",
                  .keyColumn = SearchCodeColumn,
                  .puts = {PutRank("AS")},
                  .add = {"cmdAdd", Form::tr("Add...")},
                  .modify = {"cmdModify", Form::tr("Modify...")},
                  .remove = {"cmdRemove", Form::tr("Remove")},
                  .ask = AskInForm({.name = "frmSearch_DatabaseAttributesSettings",
                                    .title = Form::tr("Database Attributes Settings"),
                                    .helpContext = 50612},
                                   AttributeColumns(), std::make_shared<AttributeForm>()),
                  .removeQuestion = Form::tr("Delete this search code's attributes?")};
    const QList<GridColumn> columns = AttributeColumns();
    for (qsizetype i = 0; i < columns.size(); ++i)
        spec.puts.append(PutCell(columns[i].tag, int(i)));
    for (const auto& [column, type] : TypeColumns)
        spec.shown.insert(column, [column = column, type = type](const GridRow& row) {
            const QString value = row.cells.value(column);
            return value.isEmpty() ? QString() : QString("[%1=%2]").arg(type).arg(value);
        });
    return spec;
}

} // namespace sysadmin
