#pragma once

class QWidget;

namespace sysadmin {

class Application;

/// Lets the operator choose the circulation cluster to work in and makes it the current one, without asking
/// where there is only one. Fills the collection of clusters anew and announces the choice. True when a
/// cluster is current afterwards; otherwise the operator was told why, or gave up.
bool GetClusterList(Application& application, QWidget* parent);

/// The same while the program runs: an operator who gives up, or a request that fails, leaves the cluster
/// that was current until now.
void ChangeCluster(Application& application, QWidget* parent);

/// Tells the operator that none of the operator's locations belongs to a cluster.
void ReportNoCluster(Application& application, QWidget* parent);

} // namespace sysadmin
