#pragma once

#include "circulation/MatrixDialog.h"

namespace sysadmin {

/// The loan rule of one pair of patron group and item type.
class frmCirculation_PolicyMatrixRecordSettings : public MatrixDialog {
    Q_OBJECT

public:
    frmCirculation_PolicyMatrixRecordSettings(Application& application, MatrixForm& rule,
                                              const MatrixGroup& group, const MatrixEntry& entry,
                                              QWidget* parent);

protected:
    bool Save() override;

private:
    qint16 SendRule();

    MatrixEntry m_entry;
};

} // namespace sysadmin
