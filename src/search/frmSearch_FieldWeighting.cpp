#include "search/frmSearch_FieldWeighting.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/Rules.h"
#include "search/IndexItems.h"
#include "search/IndexSentences.h"
#include "search/KeywordFields.h"
#include "search/WeightShares.h"
#include "wire/SearchIndexes.h"
#include "wire/Status.h"

#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

namespace sysadmin {

namespace indexes = wire::indexes;
namespace weights = wire::weights;

namespace {

constexpr int WeightMeaningLines = 4;
const QString NamesTag = "Name";

QList<GridColumn> WeightColumns() {
    return {{.caption = Form::tr("Field"), .width = 90, .tag = "WF"},
            {.caption = Form::tr("Subfields"), .width = 160, .tag = "WS"},
            {.caption = Form::tr("Weight"), .width = 90, .tag = "W"}};
}

struct WeightForm : RowForm {
    CheckedText txtField{
        *this,
        {.name = "txtField",
         .tag = "WF",
         .caption = tr("Field:"),
         .maxLength = 3,
         .required = true,
         .toolTip = tr("Three digits; X at the end stands for any digit, * for all other fields")},
        indexes::IsFieldPattern,
        tr("A field is three digits, such as 245; 24X and 6XX stand for several, * for all.")};
    CheckedText txtSubfields{*this,
                             {.name = "txtSubfields",
                              .tag = "WS",
                              .caption = tr("Subfields:"),
                              .maxLength = indexes::SubfieldsLength,
                              .toolTip = tr("Letters and digits without anything between; empty: all")},
                             indexes::AreSubfields,
                             SubfieldsProblem()};
    NumberField txtWeight{*this,
                          {.name = "txtWeight",
                           .tag = "W",
                           .caption = tr("Weight:"),
                           .required = true,
                           .unit = tr("(0-100)"),
                           .initial = QString::number(weights::UsualWeight),
                           .most = weights::MostWeight}};

    Layout Draw() override { return Below({txtField, txtSubfields, txtWeight}); }
};

RowsSpec WeightRows() {
    return {.marker = "WF",
            .puts = {PutCell("WF", 0), PutCell("WS", 1), PutCell("W", 2)},
            .edits = {{2, {.kind = CellEdit::Kind::Number, .most = weights::MostWeight}}},
            .add = {"cmdAdd", Form::tr("Add...")},
            .modify = {"cmdModify", Form::tr("Modify...")},
            .remove = {"cmdRemove", Form::tr("Remove")},
            .ask = AskInForm(
                {.name = "frmSearch_FieldWeight", .title = Form::tr("Field Weight"), .helpContext = 50652},
                WeightColumns(), std::make_shared<WeightForm>()),
            .several = true};
}

/// What the check found, index by index.
struct FindingsForm : Form {
    RowsField vsfFindings{*this,
                          {.name = "vsfFindings", .displayOnly = true, .accessible = tr("Findings")},
                          {{.caption = tr("Code"), .width = 90},
                           {.caption = tr("Name"), .width = 200},
                           {.caption = tr("Finding"), .width = 450}}};
};

QString SortedMarks(QString marks) {
    std::sort(marks.begin(), marks.end());
    return marks;
}

} // namespace

FieldWeightForm::FieldWeightForm()
    : vsfWeights(*this, {.name = "vsfWeights", .tag = "WF", .caption = tr("Weights:"), .required = true},
                 WeightColumns(), WeightRows()) {
    vsfWeights.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        return Refusal(row, former);
    };
    When([this] { return !cboIndex.Stored().isEmpty(); }).Disable(cboIndex);
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field != &txtMeaning)
            SayMeaning();
    });
}

Layout FieldWeightForm::Draw() {
    return Below({cboIndex, vsfWeights,
                  Button(
                      "cmdFillIn", tr("Fi&ll In Fields"), [this] { FillIn(); },
                      [this] { return !isLocked && !cboIndex.IsBlank(); }),
                  Slot("picShares"), txtMeaning});
}

const QList<weights::WordField>& FieldWeightForm::WordFields() const {
    static const QList<weights::WordField> none;
    const auto index = indexes.constFind(cboIndex.Draft());
    return index == indexes.constEnd() ? none : index->fields;
}

void FieldWeightForm::OfferIndexes() {
    cboIndex.SetItems(IndexItems(indexes));
}

void FieldWeightForm::FillIn() {
    QList<GridRow> rows;
    for (const weights::WordField& field : WordFields()) {
        const bool hasWeight = weights::Cover(PlacesOf(vsfWeights.Rows() + rows), field);
        if (!hasWeight)
            rows.append({vsfWeights.NewKey(),
                         {field.field, field.include, QString::number(weights::UsualWeight)},
                         {}});
    }
    vsfWeights.PutRows(rows);
}

QList<WeightShare> FieldWeightForm::Shares() const {
    return SharesOf(WordFields(), vsfWeights.Rows());
}

QString FieldWeightForm::Refusal(const GridRow& row, const GridRow* former) const {
    const weights::Place place = PlaceOf(row);
    for (const GridRow& other : vsfWeights.Rows())
        if ((!former || other.key != former->key) && PlaceOf(other).field == place.field &&
            SortedMarks(PlaceOf(other).subfields) == SortedMarks(place.subfields))
            return tr("There is a weight of %1 already.").arg(InWords(place));
    if (!cboIndex.IsBlank() && !Takes(WordFields(), place))
        return tr("The index does not take %1.").arg(InWords(place));
    return {};
}

std::optional<Form::Finding> FieldWeightForm::FormProblem() {
    for (const GridRow& row : vsfWeights.Rows())
        if (!Takes(WordFields(), PlaceOf(row)))
            return Finding{&vsfWeights, tr("The index does not take %1.").arg(InWords(PlaceOf(row)))};
    const bool counts = std::any_of(vsfWeights.Rows().begin(), vsfWeights.Rows().end(),
                                    [](const GridRow& row) { return WeightOf(row) > 0; });
    return counts ? std::nullopt : std::optional(Finding{&vsfWeights, tr("At least one weight is above 0.")});
}

void FieldWeightForm::SayMeaning() {
    QStringList words;
    if (!cboIndex.IsBlank()) {
        QList<GridRow> fields;
        for (const weights::WordField& field : WordFields())
            fields.append({{}, {field.field, field.include, field.exclude}, {}});
        QString taken = IndexInWords(indexes::Family::Keyword, {}, fields, {});
        if (!fields.isEmpty()) {
            taken[0] = taken[0].toLower();
            taken = tr("The index takes %1").arg(taken);
        }
        words.append(taken);
        words += FindingsOf({.fields = WordFields(), .weights = vsfWeights.Rows()});
    }
    if (const QString meaning = words.join('\n'); meaning != txtMeaning.Draft())
        txtMeaning.SetStored(meaning);
}

frmSearch_FieldWeighting::frmSearch_FieldWeighting(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_FieldWeighting", tr("Indexes - Field Weighting"),
                        Area::System, parent) {
    AddTable({.subject = tr("Field Weighting"),
              .word = "FldWt",
              .plural = "Search Field Weighting",
              .listAfterChange = true, // the list shows the index's name
              .columns = {{.caption = tr("Codes"), .width = 110, .tag = "Cd"},
                          {.caption = tr("Names"), .tag = NamesTag}},
              .recordTag = "Cd",
              .saveWords = {{wire::status::DuplicateCode,
                             {tr("This index has weights already.  Please edit those."),
                              tr("Cannot Save Field Weighting")}}}},
             m_form, m_form.Draw(), {PutValue(m_form.cboIndex), PutValue(m_form.vsfWeights)},
             [this](const QString&) { return picShares = new WeightShares(this); });
    cmdCheck = MakeButton("cmdCheck", tr("Chec&k..."));
    AddListButton(cmdCheck);
    Finish();
    if (auto* meaning = findChild<QPlainTextEdit*>("txtMeaning"))
        meaning->setMaximumHeight((WeightMeaningLines + 1) * meaning->fontMetrics().lineSpacing());
    connect(cmdCheck, &QPushButton::clicked, this, &frmSearch_FieldWeighting::CheckWeights);
    connect(&m_form, &Form::Changed, this, &frmSearch_FieldWeighting::ShowShares);
    ReloadOn({"KSrch", "MKSrch"}, [this] {
        LoadIndexes();
        ReloadLists(); // weights follow the codes of indexes and go with them
    });
}

void frmSearch_FieldWeighting::BeforeLoad() {
    LoadIndexes();
}

/// The indexes, each with its fields and its weights.
bool frmSearch_FieldWeighting::LoadIndexes() {
    QHash<QString, WeightedIndex> read;
    const auto report = [&](qint16 result) {
        App().ReportRequestFailure(result, Current().spec.loadCaption, Current().spec.subject);
    };
    if (ReadWeightedIndexes(App().channel, read, report) != wire::status::Ok)
        return false;
    m_form.indexes = read;
    m_form.OfferIndexes();
    return true;
}

GridRow frmSearch_FieldWeighting::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    row.cells = {row.key, m_form.indexes.value(row.key).name};
    return row;
}

void frmSearch_FieldWeighting::RefreshOwnControls() {
    m_form.isLocked = IsReadOnly();
    cmdCheck->setEnabled(GetState() == State::List);
    ShowShares();
}

void frmSearch_FieldWeighting::ShowShares() {
    if (picShares)
        picShares->Show(GetState() == State::List ? QList<WeightShare>() : m_form.Shares());
}

/// Lists the indexes without weights, and weights that change nothing; from there the operator can go on to
/// the index.
void frmSearch_FieldWeighting::CheckWeights() {
    if (!LoadIndexes())
        return;
    FindingsForm form;
    QList<GridRow> rows;
    QStringList codes = m_form.indexes.keys();
    codes.sort();
    for (const QString& code : codes) {
        const WeightedIndex index = m_form.indexes.value(code);
        for (const QString& finding : FindingsOf(index))
            rows.append({form.vsfFindings.NewKey(), {code, index.name, finding}, {}});
    }
    if (rows.isEmpty()) {
        App().prompter.ShowBox(this,
                               {.text = tr("All keyword indexes have weights, and each of them counts."),
                                .icon = Box::Icon::Information});
        return;
    }
    form.vsfFindings.SetStoredRows(rows);
    FormDialog dialog(App().prompter, form, Below({form.vsfFindings}),
                      {.name = "frmSearch_FieldWeightCheck",
                       .title = tr("Check Field Weighting"),
                       .helpContext = 50653,
                       .okCaption = tr("&Edit"),
                       .readOnly = IsReadOnly()},
                      this);
    dialog.resize(820, 420);
    const auto* findings = dialog.findChild<ListGrid*>("vsfFindings");
    if (!IsReadOnly())
        connect(findings, &ListGrid::RowActivated, &dialog, &FormDialog::accept);
    if (!App().prompter.RunDialog(dialog))
        return;
    const GridRow* chosen = form.vsfFindings.FindRow(findings->SelectedKey());
    if (chosen)
        OpenIndex(chosen->cells[0]);
}

void frmSearch_FieldWeighting::OpenIndex(const QString& code) {
    if (Current().grid->Model().FindRow(code)) {
        Current().grid->SelectKey(code);
        StartEdit();
        return;
    }
    StartNew();
    if (GetState() == State::EditingNew)
        m_form.cboIndex.SetDraft(code);
}

} // namespace sysadmin

#include "moc_frmSearch_FieldWeighting.cpp"
