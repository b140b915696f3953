#include "framework/frmSelectCluster.h"

#include "core/Prompter.h"
#include "core/data/Clusters.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

/// From so many clusters on a filter helps more than it is in the way.
constexpr qsizetype ManyClusters = 10;

} // namespace

frmSelectCluster::frmSelectCluster(const ClusterCollection& clusters, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmSelectCluster");
    setProperty(HelpContextProperty, 50501);
    setWindowTitle(tr("Select Cluster"));

    vsfClusters = new ListGrid("vsfClusters", {{tr("Cluster Names")}}, this);
    vsfClusters->setAccessibleName(tr("Cluster Names"));
    vsfClusters->sortByColumn(0, Qt::AscendingOrder);
    vsfClusters->setMinimumSize(fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 12);
    auto* buttons = new QDialogButtonBox(this);
    cmdOK = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    auto* whole = new QVBoxLayout(this);
    if (clusters.Count() >= ManyClusters) {
        whole->addWidget(vsfClusters->FilterBox());
        setTabOrder(vsfClusters->FilterBox(), vsfClusters);
    }
    whole->addWidget(vsfClusters, 1);
    whole->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(vsfClusters, &ListGrid::RowActivated, this, &QDialog::accept);
    connect(vsfClusters, &ListGrid::SelectionMoved, this,
            [this] { cmdOK->setEnabled(!SelectedId().isEmpty()); });

    QList<GridRow> rows;
    for (const auto& [id, cluster] : clusters)
        rows.append({id, {cluster.sClusterName}, {}});
    vsfClusters->SetRows(rows);
    if (const clsCluster* current = clusters.Current())
        vsfClusters->SelectKey(current->sClusterID);
    vsfClusters->setFocus();
    AssignMnemonics(*this);
}

QString frmSelectCluster::SelectedId() const {
    return vsfClusters->SelectedKey();
}

} // namespace sysadmin

#include "moc_frmSelectCluster.cpp"
