#pragma once

#include "server/files/Compare.h"

namespace sysadmin::server {

/// A record that differs, as a choice names it.
struct RecordKey {
    QString table;
    QString key;
    bool operator==(const RecordKey&) const = default;
};

/// Of the records in which a library differs from settings those that are to be taken over.
struct CopyPlan {
    /// What is done, and what stands against it. Its tables are all that there are: nothing goes unseen with
    /// what is removed.
    Comparison comparison = {};
    /// Of those that nobody chose, why they come along: the sentence by table and key.
    QHash<RecordKey, QString> because = {};
};

size_t qHash(const RecordKey& record, size_t seed = 0);

/// What is done when these records are taken over into the library (`before`, all tables of `settings`). What
/// has to come along is part of it: new records to which chosen ones refer; whatever lets go of a record that
/// is removed; all rows of a list that are known by their place in it; the other record where only one can
/// have a mark. What is chosen and does not differ is left out.
CopyPlan PlanCopy(FileForm& form, const Settings& before, const Settings& settings,
                  const QList<RecordKey>& chosen);

} // namespace sysadmin::server
