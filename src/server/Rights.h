#pragma once

#include "wire/Area.h"

#include <QList>
#include <QString>

namespace sysadmin::server {

class Database;

using wire::Area;

/// A right of the master profiles: its tag in requests and the column that stores it.
struct MasterRight {
    QString tag;
    QString column;
};

/// All rights of a master profile, in the order in which they are listed.
const QList<MasterRight>& MasterRights();

/// What an operator may do: the rights of all master profiles that the operator belongs to, taken together.
class Rights {
public:
    /// Reads the rights in force.
    static Rights Of(Database& database, qint64 operatorRow);

    bool MayEdit(Area area) const;
    /// Who may edit may view too.
    bool MayView(Area area) const;
    /// A single right by its tag ("ChgPwd").
    bool Has(const QString& tag) const;

private:
    quint64 m_held = 0; ///< a bit for each of `MasterRights`; every session has these
};

} // namespace sysadmin::server
