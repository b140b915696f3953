#pragma once

#include "cataloging/DuplicateScore.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/Layout.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/PutList.h"
#include "wire/DuplicateDetection.h"

namespace sysadmin {

/// What distinguishes the screens of bibliographic and authority profiles.
struct DuplicateSpec {
    QString recordType;
    QString formName;
    QString caption; ///< of the window
    QString subject;
    QString plural;     ///< makes the captions of reports, but that of a failed get
    QString recordId;   ///< what the record's own identifier is called among the indexes
    int mergeWidth = 0; ///< of the first columns of the merge fields, in pixels
};

/// The indexes that take part, in order, each with its overrides and its weight.
class DuplicateIndexes : public PickedField {
public:
    enum Cell { Name, Code, Status, FieldOverride, SubfieldOverride, Weight, Sequence, CellCount };

    explicit DuplicateIndexes(Form& form);

    /// What there is to choose from, in order: code, name and definition.
    struct Offer {
        QString code;
        QString name;
        QString definition;
    };
    void SetOffers(const QList<Offer>& offers) { m_offers = offers; }
    const QList<Offer>& Offers() const { return m_offers; }
    QString DefinitionOf(const QString& code) const;
    /// What is wrong with a selected row, in a sentence; empty when nothing is.
    QString RowProblem() const;
    /// Numbers the selected rows anew.
    void Number();

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { Choose({}); }

private:
    void Choose(const QList<GridRow>& selected);

    QList<Offer> m_offers;
    std::shared_ptr<Form> m_settings;
    bool m_numbering = false;
};

/// A profile by which incoming records are recognised as duplicates.
struct DuplicateForm : Form {
    explicit DuplicateForm(const DuplicateSpec& spec);

    Layout Draw();
    QList<PutStep> Puts() const;
    /// What fields that belong together say against each other.
    std::optional<Finding> FormProblem() override;
    /// The draft as values.
    DuplicateProfile Profile() const;

    DuplicateSpec spec;
    CheckedText txtProfileCode;
    TextField txtProfileName;
    LetterField optHandling;
    LetterField optCancellation;
    NumberField txtDuplicateWarn;
    NumberField txtDuplicateReplace;
    FlagField chkDiscardUnmatched;
    DuplicateIndexes indexes;
    RowsField vsfQuality;
    RowsField vsfMerge;
};

} // namespace sysadmin
