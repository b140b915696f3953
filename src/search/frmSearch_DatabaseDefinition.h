#pragma once

#include "framework/MaintenanceScreen.h"
#include "search/DatabaseForm.h"

class QTabWidget;

namespace sysadmin {

/// The databases that staff and public clients can search: this library's own, other libraries' and Z39.50
/// targets.
class frmSearch_DatabaseDefinition : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_DatabaseDefinition(Application& application, QWidget* parent);

protected:
    GridRow ReadRow(const Table& table) override;
    GridRow RowFromForm(const Table& table, const QString& key) const override;
    void ReadRecord(Table& table) override;
    bool PrepareNew(Table& table) override;
    bool MayDeleteRow(const GridRow& row) const override;
    void RefreshOwnControls() override;

private:
    void ReadCache();
    void RefreshCache();
    void ShowClusters();
    void TestConnection();
    void TestAll();

    DatabaseForm& m_form = KeepForm<DatabaseForm>();
    QString m_databaseId; ///< of the record in the form; empty for a new one
    bool m_cacheRead = false;
    QTabWidget* m_tabs = nullptr;
    QPushButton* m_cmdTest = nullptr;
    QPushButton* m_cmdTestAll = nullptr;
};

} // namespace sysadmin
