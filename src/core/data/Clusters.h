#pragma once

#include <QString>

#include <map>

namespace sysadmin {

/// A circulation cluster.
struct clsCluster {
    QString sInUsePULoc; ///< id of its default pickup location
    QString sClusterName;
    QString sClusterCD;
    QString sClusterID;
};

/// The clusters available to the operator, by id, in the order of their ids, and the one worked in.
class ClusterCollection {
public:
    void Clear();
    /// Adds the cluster or replaces the one with its id.
    void Put(const clsCluster& cluster);
    void Remove(const QString& id);
    /// The cluster of an id, or null.
    const clsCluster* Find(const QString& id) const;
    qsizetype Count() const { return qsizetype(m_clusters.size()); }
    auto begin() const { return m_clusters.begin(); }
    auto end() const { return m_clusters.end(); }

    /// Null while none is selected.
    const clsCluster* Current() const { return Find(m_currentId); }
    /// Selects a cluster of the collection; an empty id selects none.
    void SetCurrent(const QString& id) { m_currentId = id; }

private:
    std::map<QString, clsCluster> m_clusters;
    QString m_currentId;
};

} // namespace sysadmin
