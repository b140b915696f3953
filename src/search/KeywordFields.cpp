#include "search/KeywordFields.h"

#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"
#include "wire/SearchIndexes.h"

namespace sysadmin {

namespace indexes = wire::indexes;

namespace {

struct KeywordFieldForm : RowForm {
    CheckedText txtField{
        *this,
        {.name = "txtField",
         .tag = "KF",
         .caption = tr("Field:"),
         .maxLength = 3,
         .required = true,
         .toolTip = tr("Three digits; X at the end stands for any digit, * for all fields")},
        indexes::IsFieldPattern,
        tr("A field is three digits, such as 245; 24X and 6XX stand for several, * for all.")};
    CheckedText txtIncludeSubfields{*this,
                                    {.name = "txtIncludeSubfields",
                                     .tag = "KSI",
                                     .caption = tr("Include Subfields:"),
                                     .maxLength = indexes::SubfieldsLength},
                                    indexes::AreSubfields,
                                    SubfieldsProblem()};
    CheckedText txtExcludeSubfields{*this,
                                    {.name = "txtExcludeSubfields",
                                     .tag = "KSE",
                                     .caption = tr("Exclude Subfields:"),
                                     .maxLength = indexes::SubfieldsLength},
                                    indexes::AreSubfields,
                                    SubfieldsProblem()};

    Layout Draw() override { return Below({txtField, txtIncludeSubfields, txtExcludeSubfields}); }
};

} // namespace

QList<GridColumn> KeywordColumns() {
    return {{.caption = Form::tr("Field"), .width = 80, .tag = "KF"},
            {.caption = Form::tr("Include Subfields"), .width = 200, .tag = "KSI"},
            {.caption = Form::tr("Exclude Subfields"), .tag = "KSE"}};
}

RowsSpec KeywordRows() {
    return {.marker = "KF",
            .puts = {PutCell("KF", 0), PutCell("KSI", 1), PutCell("KSE", 2)},
            .add = {"cmdAdd", Form::tr("Add...")},
            .modify = {"cmdModify", Form::tr("Modify...")},
            .remove = {"cmdRemove", Form::tr("Remove")},
            .ask = AskInForm(
                {.name = "frmSearch_KeywordField", .title = Form::tr("Keyword Field"), .helpContext = 50625},
                KeywordColumns(), std::make_shared<KeywordFieldForm>()),
            .several = true};
}

QString SubfieldsProblem() {
    return Form::tr("Subfields are digits and lower-case letters without anything between, each once.");
}

} // namespace sysadmin
