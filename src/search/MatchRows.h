#pragma once

#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"

namespace sysadmin {

/// The tags under which ranked matches travel, and what their dialog is.
struct MatchSpec {
    QString fieldTag;
    QString subfieldsTag;
    QString normalisationTag;
    QString indexTag{}; ///< of the index in which the text is looked for; empty: it is compared
    FormDialogSpec dialog{};
};

/// A place in a record, and how its text is made comparable.
struct MatchForm : RowForm {
    explicit MatchForm(const MatchSpec& spec);
    Layout Draw() override;

    MatchSpec spec;
    CheckedText txtField;
    CheckedText txtSubfields;
    std::unique_ptr<ChoiceField> cboIndex; ///< only where a match names one
    ChoiceField cboNormalisation;
    TextField txtExample;
    TextField txtBecomes;
};

/// The ranked matches of a record.
class MatchField : public RowsField {
public:
    MatchField(Form& form, const FieldSpec& field, const MatchSpec& spec);

    /// The indexes that a match can name: code and text.
    void OfferIndexes(const QList<PickItem>& indexes) { m_match->cboIndex->SetItems(indexes); }

private:
    MatchField(Form& form, const FieldSpec& field, std::shared_ptr<MatchForm> match);
    QString Refused(const GridRow& row, const GridRow* former) const;

    std::shared_ptr<MatchForm> m_match;
};

} // namespace sysadmin
