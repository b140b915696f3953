#pragma once

#include "framework/MaintenanceScreen.h"
#include "requests/RequestFormForm.h"

namespace sysadmin {

/// The request forms that patrons fill in from the public catalogue: what becomes of a request, who may place
/// it and where, and the fields to fill in.
class frmOPAC_RequestForms : public MaintenanceScreen {
    Q_OBJECT

public:
    frmOPAC_RequestForms(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    GridRow ReadRow(const Table& table) override;
    bool FillForm(Table& table, const GridRow& row) override;
    bool PrepareNew(Table& table) override;
    bool GoOnWithoutAvailable(Table& table, qint16 status) override;

private:
    void ShowPages();

    RequestFormForm& m_form = KeepForm<RequestFormForm>();
    QList<PickItem> m_types;        // all that a form can have
    QList<PickItem> m_offeredTypes; // those that a new one can have in this library
};

} // namespace sysadmin
