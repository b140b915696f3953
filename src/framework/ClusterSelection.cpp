#include "framework/ClusterSelection.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/forms/ReadList.h"
#include "framework/frmSelectCluster.h"
#include "wire/Status.h"

#include <QCoreApplication>

namespace sysadmin {

namespace status = wire::status;

namespace {

clsCluster ReadCluster(const RequestChannel& channel) {
    clsCluster cluster;
    cluster.sClusterID = channel.GetField("CID");
    cluster.sClusterCD = channel.GetField("CCD");
    cluster.sClusterName = channel.GetField("CNM");
    cluster.sInUsePULoc = channel.GetField("CPL");
    return cluster;
}

/// Fills the collection; false when that failed and was reported.
bool LoadClusters(Application& application, QWidget* parent) {
    const auto putOperator = [&](RequestChannel& channel) {
        channel.PutField("OI", application.OperatorId());
    };
    const auto report = [&](qint16 result) {
        if (result == status::NoClusterLocation)
            ReportNoCluster(application, parent);
        else
            application.ReportRequestFailure(result, "Get Clusters", "Select Cluster Dialog");
    };
    QList<clsCluster> found;
    const auto read = [&](RequestChannel& channel) { found.append(ReadCluster(channel)); };
    if (ReadList(application.channel, {.request = "GetClusterList", .putKey = putOperator, .report = report},
                 {{"CID", read}}) != status::Ok)
        return false;

    application.clusters.Clear();
    for (const clsCluster& cluster : found)
        application.clusters.Put(cluster);
    if (application.clusters.Count() > 0)
        return true;
    ReportNoCluster(application, parent);
    return false;
}

bool ChooseCluster(Application& application, QWidget* parent) {
    if (!LoadClusters(application, parent))
        return false;
    ClusterCollection& clusters = application.clusters;
    if (clusters.Count() == 1) {
        clusters.SetCurrent(clusters.begin()->first);
        return true;
    }
    frmSelectCluster dialog(clusters, parent);
    if (!application.prompter.RunDialog(dialog))
        return false;
    clusters.SetCurrent(dialog.SelectedId());
    return clusters.Current() != nullptr;
}

} // namespace

bool GetClusterList(Application& application, QWidget* parent) {
    application.clusters.SetCurrent({});
    const bool chosen = ChooseCluster(application, parent);
    emit application.notices.CurrentClusterChanged();
    return chosen;
}

void ChangeCluster(Application& application, QWidget* parent) {
    const clsCluster* current = application.clusters.Current();
    const QString former = current ? current->sClusterID : QString();
    if (!ChooseCluster(application, parent))
        application.clusters.SetCurrent(former);
    emit application.notices.CurrentClusterChanged();
}

void ReportNoCluster(Application& application, QWidget* parent) {
    application.prompter.ShowBox(
        parent, {.text = QCoreApplication::translate("ClusterSelection",
                                                     "Access not allowed due to missing cluster-affiliated "
                                                     "locations available for current operator."),
                 .icon = Box::Icon::Critical});
}

} // namespace sysadmin
