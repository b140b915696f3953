#pragma once

#include "circulation/MatrixDialog.h"

namespace sysadmin {

/// One loan rule for every pair of the chosen patron groups and item types.
struct MatrixCopyForm : MatrixForm {
    MatrixCopyForm(const Application& application, const MatrixSettings& settings,
                   const MatrixChoices& choices, MatrixKind kind);

    CheckedField vsfPatronGroups;
    CheckedField vsfItemTypes;

    void Choose(const QList<MatrixEntry>& pairs);
    /// The ids of the entries that are checked.
    static QStringList Ids(const CheckedField& list);
    /// Some of the chosen item types are lent as short loans, and others are not.
    bool MixesKinds() const;

private:
    void FollowList(CheckedField& list);
    bool HasChosen(bool isShortLoan) const;

    MatrixChoices m_choices;
    MatrixKind m_kind; // while no item type is chosen
    QHash<const CheckedField*, bool> m_all;
    bool m_following = false;
};

/// Adds loan rules, or copies one to other pairs; rules that are there are overwritten after a question.
class frmCirculation_PolicyMatrixRecordSettingsCopy : public MatrixDialog {
    Q_OBJECT

public:
    frmCirculation_PolicyMatrixRecordSettingsCopy(Application& application, MatrixCopyForm& rule,
                                                  const MatrixGroup& group, bool isCopy, QWidget* parent);

protected:
    bool Save() override;

private:
    void PutAll(bool overwrites);

    MatrixCopyForm& m_copy;
};

} // namespace sysadmin
