#pragma once

#include "framework/VoucherFields.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/ComposedText.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/PutList.h"
#include "search/IndexUses.h"
#include "wire/SearchIndexes.h"

namespace sysadmin {

/// Codes chosen in order out of those that the library has. A code that it does not have survives load and
/// save.
class CodesField : public PickedField {
public:
    /// With tags it reads and puts itself: a code under each.
    CodesField(Form& form, const FieldSpec& spec, const PickedNames& names, const PickedSpec& picked,
               const QStringList& tags = {})
        : PickedField(form, spec, names, picked)
        , m_tags(tags) {}

    /// What there is to choose from: key the code, cells name and code.
    void Offer(const QList<GridRow>& all) { m_all = all; }
    const QList<GridRow>& Offered() const { return m_all; }
    void Choose(const QStringList& codes);
    QStringList Codes() const;
    /// A step for each tag.
    QList<PutStep> Puts() const;

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { Choose({}); }

private:
    QList<GridRow> m_all;
    QStringList m_tags;
};

/// Where the text of a headings or left-anchored index comes from.
struct HeadingFields {
    explicit HeadingFields(Form& form);
    Layout Draw();

    CheckedText txtBibField;
    CheckedText txtInclude1;
    CheckedText txtExclude1;
    CheckedText txtInclude2;
    CheckedText txtExclude2;
    CheckedText txtIncludeSubfields;
    CheckedText txtExcludeSubfields;
    LetterField optBibDefinitions;
    NumberField txtTextLength;
    NumberField txtFixedOffset;
    NumberField txtFixedLength;
    FlagField chkCallNumberSearch;
};

/// The definition of a search index. The families have the same record; what an index is made of differs.
struct IndexForm : Form {
    explicit IndexForm(wire::indexes::Family family);

    Layout Draw();
    /// What a save puts, in order.
    QList<PutStep> Puts() const;
    /// What fields that belong together say against each other.
    std::optional<Finding> FormProblem() override;

    wire::indexes::Family family;
    IndexUses uses;
    CheckedText txtCode;
    TextField txtName;
    ChoiceField cboUse;
    FlagField chkStaffSuppress;
    ComposedText definition;
    std::unique_ptr<RowsField> vsfFields;   ///< of keyword indexes
    std::unique_ptr<CodesField> components; ///< of composite ones
    std::unique_ptr<HeadingFields> heading; ///< of headings and left-anchored ones
    FlagField chkShowIndexColumn;
    MultiLineField txtMeaning; ///< the definition in sentences
    CodesField displays;
    ChoiceField cboPrimarySort;
    ChoiceField cboSecondSort;
    ChoiceField cboTeritarySort;
    ComposedText rdaFormats;
    FlagField chkRDAformats;
    LetterField optRDADisplay;
    FlagField chkRDAField_0; ///< media
    FlagField chkRDAField_1; ///< carrier
    FlagField chkRDAField_2; ///< content
    VoucherFields vouchers;

private:
    void BindDefinition();
    void BindRdaFormats();
    void SayMeaning();
    Layout DrawDefinition();
};

} // namespace sysadmin
