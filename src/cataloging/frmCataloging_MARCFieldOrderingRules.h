#pragma once

#include "cataloging/FieldOrderForm.h"
#include "framework/MaintenanceScreen.h"

class QAction;

namespace sysadmin {

/// In which order the fields of MARC records are to stand: configurations, each a list of field groups with
/// the options by which the fields of a group are sorted.
class frmCataloging_MARCFieldOrderingRules : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCataloging_MARCFieldOrderingRules(Application& application, QWidget* parent);

protected:
    bool FillForm(Table& table, const GridRow& row) override;
    void ReadRecord(Table& table) override;
    bool SendSteps(Table& table) override;
    void ReportSaveFailure(Table& table, qint16 status) override;
    void StartCopy() override;

private:
    void TryOrder();
    void MarkName(bool isTaken);

    FieldOrderForm& m_form;
    bool m_isCopy = false;       // what is read next becomes a new configuration
    bool m_isIncomplete = false; // the rules of a group could not be read
    QAction* m_nameTaken = nullptr;
};

} // namespace sysadmin
