#pragma once

#include <QDialog>

class QPushButton;

namespace sysadmin {

class ClusterCollection;
class ListGrid;

/// Asks which circulation cluster the operator works in.
class frmSelectCluster : public QDialog {
    Q_OBJECT

public:
    /// The current cluster, if there is one, is selected at first.
    explicit frmSelectCluster(const ClusterCollection& clusters, QWidget* parent = nullptr);
    /// The id of the chosen cluster; empty while none is selected.
    QString SelectedId() const;

private:
    ListGrid* vsfClusters = nullptr;
    QPushButton* cmdOK = nullptr;
};

} // namespace sysadmin
