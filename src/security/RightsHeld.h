#pragma once

#include "core/ScreenCatalogue.h"
#include "core/data/PickLists.h"

#include <QSet>

namespace sysadmin {

class RequestChannel;
struct ProfileForm;

/// A right that operators can have, by a check box of a profile or by what follows from one.
struct KnownRight {
    QString key;
    QString where;    ///< the module and the group of rights, or "Screen" and the navigation group
    QString caption;  ///< "Discharge", "Calendars (view)"
    QString sentence; ///< what it allows
    /// What a holder needs: of each list one, by the profiles' own keys.
    QList<QSet<QString>> needs;
    QSet<QString> unless{}; ///< whoever has one of these has not
};

/// A rights profile with its members.
struct RightsProfile {
    QString word; ///< of its requests: "MPrf"
    QString id;
    QString module; ///< "Cataloging"
    QString name;
    QSet<QString> rights;    ///< keys: "MPrf Sec"
    QSet<QString> operators; ///< ids
    QString places;          ///< where it holds, in words; empty: it does not depend on places
};

/// An operator who has a right, and by what.
struct RightHolder {
    PickItem person;
    QList<const RightsProfile*> through;
};

/// Who has which right through which profile, read from all profiles of all modules. A profile counts for its
/// members wherever it holds.
class RightsHeld {
public:
    /// Reads the operators and every profile. The status of the first request that failed, else 0; after a
    /// failure it holds nothing. `screens` are those to which rights lead.
    qint16 Read(RequestChannel& channel, const ScreenCatalogue& screens);

    /// All operators by name, with their ids.
    const QList<PickItem>& Operators() const { return m_operators; }
    const QList<RightsProfile>& Profiles() const { return m_profiles; }
    /// The screens first, then the modules.
    const QList<KnownRight>& Rights() const { return m_rights; }
    const KnownRight* Find(const QString& key) const;

    /// The operator's profiles that give any of what the right takes.
    QList<const RightsProfile*> Through(const KnownRight& right, const QString& operatorId) const;
    /// The ids of all who have it.
    QSet<QString> WhoHas(const KnownRight& right) const;
    /// Everybody who has it, by name, and by what.
    QList<RightHolder> HoldersOf(const KnownRight& right) const;

private:
    qint16 ReadProfiles(RequestChannel& channel, size_t module);
    void AddProfile(ProfileForm& form, size_t module, const QString& id);
    void AddScreens(const ScreenCatalogue& screens);
    void AddRights(ProfileForm& form, size_t module);

    QList<PickItem> m_operators;
    QList<RightsProfile> m_profiles;
    QList<KnownRight> m_rights;
};

} // namespace sysadmin
