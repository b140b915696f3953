#include "core/data/Clusters.h"

namespace sysadmin {

void ClusterCollection::Clear() {
    m_clusters.clear();
    m_currentId.clear();
}

void ClusterCollection::Put(const clsCluster& cluster) {
    m_clusters[cluster.sClusterID] = cluster;
}

void ClusterCollection::Remove(const QString& id) {
    m_clusters.erase(id);
}

const clsCluster* ClusterCollection::Find(const QString& id) const {
    const auto found = m_clusters.find(id);
    return found == m_clusters.end() ? nullptr : &found->second;
}

} // namespace sysadmin
