#include "framework/ClusterSelection.h"

#include "core/Application.h"
#include "core/Prompter.h"
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
    RequestChannel& channel = application.channel;
    qint16 result = status::Ok;
    do {
        channel.PutField("OI", application.OperatorId());
        if (result == status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest("GetClusterList");
        if (result == status::NoClusterLocation)
            ReportNoCluster(application, parent);
        else if (result != status::Ok)
            application.ReportRequestFailure(result, "Get Clusters", "Select Cluster Dialog");
    } while (result == status::Continues);
    if (result != status::Ok)
        return false;

    application.clusters.Clear();
    while (channel.NextRecord("CID"))
        application.clusters.Put(ReadCluster(channel));
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
