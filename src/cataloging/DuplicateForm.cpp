#include "cataloging/DuplicateForm.h"

#include "cataloging/DuplicateRows.h"
#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "wire/MarcMark.h"

#include <algorithm>

namespace sysadmin {

namespace duplicates = wire::duplicates;
namespace handling = wire::duplicates::handling;

namespace {

/// What a row's status says follows from where it was loaded.
const QString LoadedAvailable = "A";
const QString LoadedSelected = "S";

/// The settings of the selected index, drawn beside the lists.
struct IndexSettings : Form {
    TextField txtFieldOverride{*this,
                               {.name = "txtFieldOverride",
                                .tag = "DFO",
                                .caption = tr("Field Override:"),
                                .maxLength = 3,
                                .toolTip = tr("The field of the incoming record, when not the index's own")}};
    TextField txtSubFieldOverride{
        *this,
        {.name = "txtSubFieldOverride", .tag = "DSO", .caption = tr("Sub Field Override:"), .maxLength = 1}};
    NumberField txtFieldWeight{*this,
                               {.name = "txtFieldWeight",
                                .tag = "DFW",
                                .caption = tr("Field Weight:"),
                                .most = duplicates::MostWeight}};
};

bool IsSubfield(const QString& value) {
    return wire::IsMarcMark(value) && value != duplicates::Any && value != QString(duplicates::Blank);
}

PickedSpec IndexLists(Form* settings) {
    const GridColumn code{.caption = Form::tr("Code"), .width = 46};
    const auto status = [](const QString& id, const QString& text) {
        return GridColumn{
            .caption = Form::tr("Status"),
            .width = 70,
            .items = {{id, text}, {id == LoadedAvailable ? LoadedSelected : LoadedAvailable, {}}}};
    };
    PickedSpec spec;
    spec.more = {code,
                 status(LoadedAvailable, Form::tr("New")),
                 {.caption = Form::tr("Field"), .width = 46, .tag = "DFO"},
                 {.caption = Form::tr("Subfield"), .width = 62, .tag = "DSO"},
                 {.caption = Form::tr("Field Weight"), .width = 84, .tag = "DFW"},
                 {.caption = Form::tr("Seq"), .width = 40, .tag = "DS#"}};
    spec.availableMore = {code, status(LoadedSelected, Form::tr("Removed"))};
    spec.settings = settings;
    return spec;
}

std::optional<int> Threshold(const NumberField& field) {
    return field.IsBlank() ? std::nullopt : std::optional(field.Value());
}

} // namespace

DuplicateIndexes::DuplicateIndexes(Form& form)
    : PickedField(form, {.name = "fraIndexes", .tag = "DSC"},
                  {.availableGrid = "vsfAvailableIndexes",
                   .availableCaption = Form::tr("Available Indexes"),
                   .selectedGrid = "vsfSelectedIndexes",
                   .selectedCaption = Form::tr("Selected Indexes")})
    , m_settings(std::make_shared<IndexSettings>()) {
    Behaviour() = IndexLists(m_settings.get());
}

QString DuplicateIndexes::DefinitionOf(const QString& code) const {
    for (const Offer& offer : m_offers)
        if (offer.code == code)
            return offer.definition;
    return {};
}

void DuplicateIndexes::Choose(const QList<GridRow>& selected) {
    QList<GridRow> available;
    for (const Offer& offer : m_offers) {
        const bool isSelected = std::any_of(selected.begin(), selected.end(),
                                            [&](const GridRow& row) { return row.key == offer.code; });
        if (!isSelected)
            available.append({offer.code,
                              {offer.name,
                               offer.code,
                               LoadedAvailable,
                               {},
                               {},
                               QString::number(duplicates::UsualWeight),
                               {}},
                              {}});
    }
    LoadLists(available, selected);
}

void DuplicateIndexes::Load(RequestChannel& channel) {
    QList<GridRow> selected;
    for (GridRow row : ReadRows(channel, "DSC", {}, {"DSN", "DSC", "DSC", "DFO", "DSO", "DFW", "DS#"})) {
        row.cells[Status] = LoadedSelected;
        row.cells[Sequence] = QString::number(selected.size() + 1);
        for (const Offer& offer : m_offers)
            if (offer.code == row.key)
                row.cells[Name] = offer.name; // of the record's own identifier only the screen knows it
        selected.append(row);
    }
    Choose(selected);
}

void DuplicateIndexes::Put(RequestChannel& channel) const {
    int sequence = 0;
    for (const GridRow& row : Lists().Selected()) {
        channel.PutField("DSC", row.key);
        channel.PutField("DSN", row.cells.value(Name));
        channel.PutField("DFO", row.cells.value(FieldOverride).trimmed());
        channel.PutField("DSO", row.cells.value(SubfieldOverride).trimmed());
        channel.PutField("DFW", row.cells.value(Weight).trimmed());
        channel.PutField("DS#", QString::number(++sequence));
    }
}

void DuplicateIndexes::Number() {
    if (m_numbering)
        return;
    m_numbering = true;
    const QList<GridRow> rows = Lists().Selected();
    for (qsizetype i = 0; i < rows.size(); ++i)
        if (const QString place = QString::number(i + 1); rows[i].cells.value(Sequence) != place)
            Move([&](PickedLists& lists) { lists.SetCells({rows[i].key}, Sequence, place); });
    m_numbering = false;
}

QString DuplicateIndexes::RowProblem() const {
    for (const GridRow& row : Lists().Selected()) {
        const QString field = row.cells.value(FieldOverride).trimmed();
        const QString subfield = row.cells.value(SubfieldOverride).trimmed();
        bool isNumber = false;
        const int weight = row.cells.value(Weight).trimmed().toInt(&isNumber);
        const QString name = row.cells.value(Name);
        if (!field.isEmpty() && !duplicates::IsField(field))
            return Form::tr("The field override of \"%1\" is not three digits.").arg(name);
        if (!subfield.isEmpty() && !IsSubfield(subfield))
            return Form::tr("The sub field override of \"%1\" is no digit or lower-case letter.").arg(name);
        if (!isNumber || weight < 0 || weight > duplicates::MostWeight)
            return Form::tr("The field weight of \"%1\" is not a number from 0 to %2.")
                .arg(name)
                .arg(duplicates::MostWeight);
    }
    return {};
}

DuplicateForm::DuplicateForm(const DuplicateSpec& theSpec)
    : spec(theSpec)
    , txtProfileCode(*this,
                     {.name = "txtProfileCode",
                      .tag = "DCd",
                      .caption = tr("Profile Code:"),
                      .maxLength = duplicates::CodeLength,
                      .required = true,
                      .column = {tr("Codes"), 130}},
                     duplicates::IsProfileCode, tr("A code has letters, digits and _ only."))
    , txtProfileName(*this, {.name = "txtProfileName",
                             .tag = "DNm",
                             .caption = tr("Profile Name:"),
                             .maxLength = duplicates::NameLength,
                             .required = true,
                             .column = {tr("Names")}})
    , optHandling(*this, {.name = "optHandling",
                          .tag = "DH",
                          .caption = tr("Duplicate Handling:"),
                          .initial = handling::AddConditional,
                          .options = {{handling::AddUnconditional, tr("Add-Unconditional")},
                                      {handling::AddConditional, tr("Add-Conditional")},
                                      {handling::Replace, tr("Replace")},
                                      {handling::Merge, tr("Merge")},
                                      {handling::MergeBothWays, tr("Bi-Directional Merge")}}})
    , optCancellation(*this, {.name = "optCancellation",
                              .tag = "DC",
                              .caption = tr("Cancellation:"),
                              .initial = "N",
                              .options = {{"N", tr("None")}, {"O", tr("OCLC")}, {"R", tr("RLIN")}}})
    , txtDuplicateWarn(*this, {.name = "txtDuplicateWarn",
                               .tag = "W",
                               .caption = tr("Duplicate Warn:"),
                               .most = duplicates::MostScore})
    , txtDuplicateReplace(*this, {.name = "txtDuplicateReplace",
                                  .tag = "R",
                                  .caption = tr("Duplicate Replace:"),
                                  .most = duplicates::MostScore})
    , chkDiscardUnmatched(*this,
                          {.name = "chkDiscardUnmatched",
                           .tag = "DDUM",
                           .caption = tr("Discard incoming records that do not match existing records")})
    , indexes(*this)
    , vsfQuality(*this, {.name = "vsfQuality", .accessible = tr("Quality hierarchy")}, QualityColumns(),
                 QualityRows())
    , vsfMerge(*this, {.name = "vsfMerge", .accessible = tr("Merge fields")}, MergeColumns(spec.mergeWidth),
               MergeRows(spec.mergeWidth)) {
    // What a code cannot hold is not taken, typed or pasted.
    When([this] { return !duplicates::IsProfileCode(txtProfileCode.Draft()); }).Do([this] {
        QString code = txtProfileCode.Draft();
        code.removeIf([](QChar letter) { return !duplicates::CodeCharacters.contains(letter); });
        txtProfileCode.SetDraft(code);
    });
    connect(this, &Form::Edited, this, [this](const Field* field) {
        if (field == &indexes)
            indexes.Number();
    });
}

Layout DuplicateForm::Draw() {
    return Tabs("tabProfile",
                {Page(tr("&Profile"), {txtProfileCode, txtProfileName, optHandling, optCancellation,
                                       txtDuplicateWarn, txtDuplicateReplace, chkDiscardUnmatched}),
                 Page(tr("&Field Definitions"), {indexes}), Page(tr("&Quality Hierarchy"), {vsfQuality}),
                 Page(tr("&Merge Fields"), {vsfMerge})});
}

QList<PutStep> DuplicateForm::Puts() const {
    return {OnUpdate(PutOriginalKey("DID")),
            PutConstant("RT", spec.recordType),
            PutValue(optHandling),
            PutValue(optCancellation),
            PutValue(txtDuplicateWarn),
            PutValue(txtDuplicateReplace),
            PutValue(chkDiscardUnmatched),
            PutDraft("NNm", txtProfileName),
            PutDraft("NCd", txtProfileCode),
            PutValue(indexes),
            PutValue(vsfQuality),
            PutValue(vsfMerge)};
}

std::optional<Form::Finding> DuplicateForm::FormProblem() {
    if (!txtDuplicateWarn.IsBlank() && !txtDuplicateReplace.IsBlank() &&
        txtDuplicateWarn.Value() > txtDuplicateReplace.Value())
        return Finding{&txtDuplicateWarn, tr("The warn threshold is above the replace threshold.")};
    if (const QString problem = indexes.RowProblem(); !problem.isEmpty())
        return Finding{&indexes, problem};
    return {};
}

DuplicateProfile DuplicateForm::Profile() const {
    DuplicateProfile profile{.recordType = spec.recordType,
                             .handling = optHandling.Draft(),
                             .warn = Threshold(txtDuplicateWarn),
                             .replace = Threshold(txtDuplicateReplace),
                             .discardsUnmatched = chkDiscardUnmatched.IsOn()};
    for (const GridRow& row : indexes.Lists().Selected())
        profile.indexes.append(
            {.code = row.key,
             .name = row.cells.value(DuplicateIndexes::Name),
             .definition = indexes.DefinitionOf(row.key),
             .fieldOverride = row.cells.value(DuplicateIndexes::FieldOverride).trimmed(),
             .subfieldOverride = row.cells.value(DuplicateIndexes::SubfieldOverride).trimmed(),
             .weight = row.cells.value(DuplicateIndexes::Weight).toInt()});
    for (const GridRow& row : vsfQuality.Rows())
        profile.qualities.append({row.cells.value(0), row.cells.value(1), row.cells.value(2),
                                  row.cells.value(3), row.cells.value(4)});
    for (const GridRow& row : vsfMerge.Rows())
        profile.mergeFields.append(
            {row.cells.value(0), row.cells.value(1), row.cells.value(2), row.cells.value(3)});
    return profile;
}

} // namespace sysadmin
