#include "cataloging/DuplicateRows.h"

#include "cataloging/MarkField.h"
#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"
#include "wire/DuplicateDetection.h"

namespace sysadmin {

namespace duplicates = wire::duplicates;

namespace {

struct QualityForm : RowForm {
    MarkField txtRecordType{*this, "txtRecordType", "DRT", tr("Record Type Leader/06:")};
    MarkField txtEncodingLevel{*this, "txtEncodingLevel", "EN", tr("Encoding Level Leader/17:")};
    TextField txtOriginalAgency{*this,
                                {.name = "txtOriginalAgency",
                                 .tag = "NU",
                                 .caption = tr("Original Agency 040$a:"),
                                 .maxLength = duplicates::AgencyLength,
                                 .required = true,
                                 .initial = duplicates::Any}};
    TextField txtModifyingAgency{*this,
                                 {.name = "txtModifyingAgency",
                                  .tag = "MA",
                                  .caption = tr("Last Modifying Agency 040$d:"),
                                  .maxLength = duplicates::AgencyLength,
                                  .required = true,
                                  .initial = duplicates::Any}};
    TextField txtConventions{*this,
                             {.name = "txtConventions",
                              .tag = "QHDC",
                              .caption = tr("Description Conventions 040$e:"),
                              .maxLength = duplicates::AgencyLength,
                              .required = true,
                              .initial = duplicates::Any}};

    Layout Draw() override {
        return Below({txtRecordType, txtEncodingLevel, txtOriginalAgency, txtModifyingAgency, txtConventions,
                      Note(tr("* stands for any value, _ for a blank."))});
    }
};

struct MergeForm : RowForm {
    CheckedText txtField{*this,
                         {.name = "txtField",
                          .tag = "MF",
                          .caption = tr("Field:"),
                          .maxLength = 3,
                          .required = true,
                          .initial = "000"},
                         duplicates::IsField,
                         tr("A field is three digits.")};
    MarkField txtInd1{*this, "txtInd1", "MI1", tr("Ind1:")};
    MarkField txtInd2{*this, "txtInd2", "MI2", tr("Ind2:")};
    TextField txtNUC{*this,
                     {.name = "txtNUC",
                      .tag = "MN",
                      .caption = tr("NUC($5):"),
                      .maxLength = duplicates::AgencyLength,
                      .toolTip = tr("Only fields with this institution code in subfield 5; empty: "
                                    "all")}};

    Layout Draw() override { return Below({txtField, Beside({txtInd1, txtInd2}), txtNUC}); }
};

QList<RowTag> PutCells(const QList<GridColumn>& columns) {
    QList<RowTag> puts;
    for (qsizetype i = 0; i < columns.size(); ++i)
        puts.append(PutCell(columns[i].tag, int(i)));
    return puts;
}

} // namespace

QList<GridColumn> QualityColumns() {
    return {{.caption = Form::tr("Ldr/06"), .width = 80, .tag = "DRT"},
            {.caption = Form::tr("Ldr/17"), .width = 80, .tag = "EN"},
            {.caption = Form::tr("040$a"), .width = 110, .tag = "NU"},
            {.caption = Form::tr("040$d"), .width = 110, .tag = "MA"},
            {.caption = Form::tr("040$e"), .width = 110, .tag = "QHDC"}};
}

RowsSpec QualityRows() {
    return {.marker = "DRT",
            .puts = PutCells(QualityColumns()),
            .ranked = true,
            .add = {"cmdAddQuality", Form::tr("Add...")},
            .modify = {"cmdModifyQuality", Form::tr("Modify...")},
            .remove = {"cmdRemoveQuality", Form::tr("Remove")},
            .up = {"cmdUp", Form::tr("Priority Up")},
            .down = {"cmdDown", Form::tr("Priority Down")},
            .ask = AskInForm({.name = "frmCataloging_DuplicateQuality",
                              .title = Form::tr("Quality Hierarchy"),
                              .helpContext = 50443},
                             QualityColumns(), std::make_shared<QualityForm>()),
            .removeQuestion = Form::tr("Delete this Quality Hierarchy entry?")};
}

QList<GridColumn> MergeColumns(int width) {
    return {{.caption = Form::tr("Field"), .width = width, .tag = "MF"},
            {.caption = Form::tr("Ind1"), .width = width, .tag = "MI1"},
            {.caption = Form::tr("Ind2"), .width = width, .tag = "MI2"},
            {.caption = Form::tr("NUC($5)"), .tag = "MN"}};
}

RowsSpec MergeRows(int width) {
    return {
        .marker = "MF",
        .puts = PutCells(MergeColumns(width)),
        .add = {"cmdAddMerge", Form::tr("Add...")},
        .modify = {"cmdModifyMerge", Form::tr("Modify...")},
        .remove = {"cmdRemoveMerge", Form::tr("Remove")},
        .ask = AskInForm(
            {.name = "frmCataloging_DuplicateMerge", .title = Form::tr("Merge Field"), .helpContext = 50444},
            MergeColumns(width), std::make_shared<MergeForm>()),
        .removeQuestion = Form::tr("Delete this Merge Field Entry?")};
}

} // namespace sysadmin
