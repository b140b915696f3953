#pragma once

#include "circulation/MatrixDialog.h"

namespace sysadmin {

/// Chosen fields of several loan rules at once. It begins blank: the rules differ.
class frmCirculation_PolicyMatrixRecordMultiple : public MatrixDialog {
    Q_OBJECT

public:
    frmCirculation_PolicyMatrixRecordMultiple(Application& application, MatrixForm& rule,
                                              const MatrixGroup& group, const QList<MatrixEntry>& entries,
                                              QWidget* parent);

protected:
    bool Save() override;

private:
    void FollowLoanUnit();
    bool UnitsSuit();
    void TellChanged();

    QList<MatrixEntry> m_entries;
    QStringList m_units; // the loan unit and its dependent ones before the last edit
    bool m_following = false;
};

} // namespace sysadmin
