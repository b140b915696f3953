#pragma once

#include <QString>

namespace sysadmin::wire {

/// The module areas by which requests and screens are allowed or refused.
enum class Area {
    AnyOperator, ///< pick-lists and the like: whoever is signed on
    Acquisitions,
    Cataloging,
    Circulation,
    CirculationConversion,
    PatronGroups,
    Security,
    System,
};

/// The rights of an area, by their tags in requests. Whoever may edit may view too.
struct AreaRights {
    Area area;
    QString edit;
    QString view;
};

/// All areas that have rights of their own, in the order in which a sign-on asks for them.
inline const QList<AreaRights>& AreasWithRights() {
    static const QList<AreaRights> areas{
        {Area::Acquisitions, "ASPG", "ASPGV"},
        {Area::Cataloging, "CatPG", "CatPGV"},
        {Area::Circulation, "CrcPG", "CrcPGV"},
        {Area::CirculationConversion, "CrCnv", "CrCnvV"},
        {Area::Security, "Sec", "SecV"},
        {Area::System, "SysDf", "SysDfV"},
        {Area::PatronGroups, "EditPatGrp", "PatGrpV"},
    };
    return areas;
}

/// The tags of an area's rights; empty texts for an area without.
inline AreaRights RightsOf(Area area) {
    for (const AreaRights& rights : AreasWithRights())
        if (rights.area == area)
            return rights;
    return {area, {}, {}};
}

} // namespace sysadmin::wire
