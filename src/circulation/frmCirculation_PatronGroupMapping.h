#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/RowsField.h"

namespace sysadmin {

struct PatronGroupMappingForm : Form {
    PatronGroupMappingForm();

    /// Cells of a local group; what it is mapped to is the key of a remote row.
    enum LocalCell { LocalName, Suggestion, Target, TargetCluster };

    /// Remote rows that are no group: mapped to none, and staff choose for each patron.
    static const QString Blank;
    static const QString Manual;

    /// Takes both lists: groups that are not mapped yet come first, each with the remote group of its name.
    void Take(QList<GridRow> local, const QList<GridRow>& remote);
    /// Maps local groups to a remote row.
    void Map(const QStringList& localKeys, const QString& remoteKey);
    /// Maps each group that is not mapped yet to the one that is suggested.
    void MapSuggested();

    RowsField vsfLocalGroups;
    /// Cells: the text, the name of the group alone, the cluster's id.
    RowsField vsfRemoteGroups;

private:
    QString RemoteText(const QString& key) const;
    QString SuggestionFor(const QString& name) const;
};

/// Maps the patron groups of the current cluster to those of another library's database, for universal
/// borrowing.
class frmCirculation_PatronGroupMapping : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_PatronGroupMapping(Application& application, QWidget* parent);

    bool MayClose() override;
    void OnClusterChanged() override;

protected:
    void PutListKey(const Table& table) override;
    GridRow ReadRow(const Table& table) override;
    bool FillForm(Table& table, const GridRow& row) override;
    bool SendRecord(Table& table) override;
    void AfterSave(Table& table, const GridRow& row, bool wasNew) override;
    bool StaysOpen() const override { return true; }
    void RefreshOwnControls() override;

private:
    void PutCurrentCluster();
    void TellChangedByOthers(Table& table, const QList<GridRow>& changed);
    void Assign(const QString& remoteKey);
    QString SelectedRemote() const;

    PatronGroupMappingForm& m_form = KeepForm<PatronGroupMappingForm>();
    QPushButton* m_save = nullptr;
    QPushButton* m_cancel = nullptr;
    bool m_isSaved = false; // since the edit was opened
};

} // namespace sysadmin
