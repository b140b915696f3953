#pragma once

#include "marc/Record.h"

#include <QHash>

namespace sysadmin {

/// Finds records that have an identifier in common: control number, LC control number, ISBN, ISSN or system
/// number.
class SameRecords {
public:
    /// Takes in a record; what is found later is called `name`.
    void Add(const marc::Record& record, const QString& name);
    /// What the first record is called that has an identifier of this one, and which; empty: there is none.
    QString Find(const marc::Record& record) const;

private:
    QHash<QString, QString> m_names; ///< by identifier
};

} // namespace sysadmin
