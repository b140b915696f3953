#include "requests/RequestFormForm.h"

#include "framework/forms/Rules.h"
#include "requests/frmOpac_RequestFormsSettings.h"

namespace sysadmin {

namespace {

QStringList BookLabels() {
    return {Form::tr("Author"),  Form::tr("Title"), Form::tr("Place of Pub"), Form::tr("Publisher"),
            Form::tr("Edition"), Form::tr("Year"),  Form::tr("Volume")};
}

QStringList ArticleLabels() {
    return {Form::tr("Journal Title"), Form::tr("Volume"),         Form::tr("Part"), Form::tr("Year"),
            Form::tr("Article Title"), Form::tr("Article Author"), Form::tr("Pages")};
}

/// What both lists of fields have in common: order, and the buttons, whose names end in `role`.
RowsSpec FieldsSpec(const QString& role) {
    return {.marker = "FS",
            .puts = {PutRank("FS")},
            .ranked = true,
            .add = {"cmdAddField" + role, Form::tr("Add...")},
            .modify = {"cmdEditField" + role, Form::tr("Modify...")},
            .remove = {"cmdRemoveField" + role, Form::tr("Remove")},
            .up = {"cmdUp" + role, Form::tr("Priority Up")},
            .down = {"cmdDown" + role, Form::tr("Priority Down")}};
}

QStringList LabelsOf(const RowsField& fields, int column) {
    QStringList labels;
    for (const GridRow& row : fields.Rows())
        labels.append(row.cells.value(column));
    return labels;
}

QString Shown(const QList<PickItem>& items, const QString& id) {
    for (const PickItem& item : items)
        if (item.id == id)
            return item.text;
    return id;
}

QString StateOf(const RowsField& fields, const GridRow& wanted) {
    if (RowsField::IsNewKey(wanted.key))
        return Form::tr("New");
    for (const auto& [row, state] : fields.Changes())
        if (row.key == wanted.key && state == RowState::Changed)
            return Form::tr("Changed");
    return {};
}

} // namespace

QString EmailField::Problem() const {
    const QString address = Draft().trimmed();
    if (!address.isEmpty() && !requestforms::IsEmailAddress(address))
        return Form::tr("The e-mail address is not valid.\r\nPlease enter one address, such as "
                        "requests@library.example.edu.");
    return TextField::Problem();
}

RequestFormForm::RequestFormForm()
    : vsfFieldLabel1(*this, {.name = "vsfFieldLabel1", .accessible = tr("Fields of the form")},
                     SimpleFieldColumns(), FieldsSpec("1"))
    , vsfFieldLabel(*this, {.name = "vsfFieldLabel", .accessible = tr("Fields that are exchanged")},
                    MappedFieldColumns(), FieldsSpec("")) {
    RowsSpec& simple = vsfFieldLabel1.Behaviour();
    simple.puts += {PutCell("FL", SimpleColumn::Label), PutCell("FR", SimpleColumn::Required)};
    simple.edits = {{SimpleColumn::Required, {.kind = CellEdit::Kind::Check}}};
    simple.ask = AskSimpleField();
    simple.keepsRows = [this] { return IsCallSlip(); }; // the system knows its fields
    simple.belongs = [this](const GridRow&) { return !IsExchanged(); };
    RowsSpec& mapped = vsfFieldLabel.Behaviour();
    mapped.puts += {PutCell("CTAG", MappedColumn::OutsideField), PutCell("FL", MappedColumn::Label),
                    PutCell("CMAP", MappedColumn::Mapping), PutCell("FR", MappedColumn::Required),
                    PutCell("COC", MappedColumn::Change)};
    mapped.edits = {{MappedColumn::Required, {.kind = CellEdit::Kind::Check}}};
    mapped.ask = AskMappedField([this] { return cboFormType.Draft(); });
    mapped.belongs = [this](const GridRow&) { return IsExchanged(); };
    mapped.shown.insert(MappedColumn::Change, [](const GridRow& row) {
        return Shown(PatronChanges(), row.cells.value(MappedColumn::Change));
    });
    mapped.shown.insert(MappedColumn::State,
                        [this](const GridRow& row) { return StateOf(vsfFieldLabel, row); });
    FollowType();
}

void RequestFormForm::FollowType() {
    const auto isType = [this](const QString& type) {
        return [this, type] { return cboFormType.Draft() == type; };
    };
    // The system finds its own form by its code.
    When([this] {
        return cboFormType.Draft() == requestforms::WithoutBibliographicData ||
               txtFormCode.Stored() == requestforms::CallSlipCode;
    }).Disable(txtFormCode);
    When([this] { return txtFormCode.Stored() == requestforms::CallSlipCode; }).Disable(cboFormType);
    When(isType(requestforms::WithoutBibliographicData))
        .Set(txtFormCode, requestforms::WithoutBibliographicDataCode);
    When([this] { return cboFormType.Draft() != requestforms::WithoutBibliographicData; }).Clear(txtFormCode);
    When(isType(requestforms::ItemLevel)).Disable(optOutput);
    When([this] { return !HasVouchers(); })
        .Disable(vouchers.txtLogin, vouchers.txtPassword, vouchers.txtPrefix, vouchers.txtStart,
                 vouchers.txtEnd, vouchers.txtLastUsed);
    When([this] { return HasVouchers(); }).Page("voucher");
    When([this] { return requestforms::IsUniversalBorrowing(cboFormType.Draft()); }).Page("ub");
    When([this] { return !IsExchanged(); }).Page("simple").Do([this] {
        TakeLabels(vsfFieldLabel, vsfFieldLabel1);
    });
    When([this] { return IsExchanged(); }).Page("mapped").Do([this] {
        TakeLabels(vsfFieldLabel1, vsfFieldLabel);
    });
    When(isType(requestforms::Book)).Do([this] { FillLabels(BookLabels()); });
    When(isType(requestforms::Article)).Do([this] { FillLabels(ArticleLabels()); });
}

/// Labels that the operator entered are not overwritten.
void RequestFormForm::FillLabels(const QStringList& labels) {
    const QStringList there = LabelsOf(vsfFieldLabel1, SimpleColumn::Label);
    if (!isNew || !(there.isEmpty() || there == BookLabels() || there == ArticleLabels()))
        return;
    QList<GridRow> rows;
    for (const QString& label : labels)
        rows.append({vsfFieldLabel1.NewKey(), {"N", label}, {}});
    vsfFieldLabel1.SetRows(rows);
}

/// A form that comes to be exchanged, or no longer is, keeps its labels.
void RequestFormForm::TakeLabels(const RowsField& from, RowsField& into) {
    if (!into.Rows().isEmpty() || from.Rows().isEmpty())
        return;
    const bool intoMapped = &into == &vsfFieldLabel;
    QList<GridRow> rows;
    for (const GridRow& row : from.Rows()) {
        const QString label = row.cells.value(intoMapped ? SimpleColumn::Label : MappedColumn::Label);
        const QString required =
            row.cells.value(intoMapped ? SimpleColumn::Required : MappedColumn::Required);
        const QStringList cells =
            intoMapped ? QStringList{requestforms::OutsideFields().contains(label) ? label : QString(),
                                     label,
                                     {},
                                     required,
                                     PatronMay::Edit,
                                     {}}
                       : QStringList{required, label};
        rows.append({into.NewKey(), cells, {}});
    }
    into.SetRows(rows);
}

std::optional<Form::Finding> RequestFormForm::FormProblem() {
    if (const auto problem = vouchers.Problem(); HasVouchers() && problem)
        return problem;
    RowsField& fields = IsExchanged() ? vsfFieldLabel : vsfFieldLabel1;
    if (fields.IsBlank())
        return Finding{&fields, tr("The form has no fields.  Please add at least one.")};
    if (fields.Rows().size() > requestforms::MostFields)
        return Finding{&fields, tr("The form has more than %1 fields.").arg(requestforms::MostFields)};
    if (IsExchanged())
        for (const GridRow& row : fields.Rows())
            if (row.cells.value(MappedColumn::OutsideField).isEmpty())
                return Finding{
                    &fields,
                    tr("Please choose the CLIO field of \"%1\".").arg(row.cells.value(MappedColumn::Label))};
    return {};
}

} // namespace sysadmin
