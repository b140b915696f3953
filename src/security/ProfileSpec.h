#pragma once

#include <QList>
#include <QString>

namespace sysadmin {

/// A right of a profile: a Y/N flag with its check box.
struct ProfileRight {
    QString tag;
    QString caption;
    QString control{}; ///< the check box's name; empty: "chk" and the tag
};

/// Rights that stand in one frame.
struct RightGroup {
    QString caption;
    QList<ProfileRight> rights;
};

/// A pair of lists that a profile has besides its operators and locations.
struct ProfileLists {
    QString name; ///< the field's, without type prefix ("ItemBlocks")
    QString pageCaption;
    QString availableCaption;
    QString selectedCaption;
    QString availableId, availableName; ///< tags
    QString selectedId, selectedName;
    QString stateTag; ///< per moved row: "1" added, "3" removed
};

/// All that one of the module rights profiles has of its own.
struct ProfileSpec {
    QString formName;
    QString caption;
    QString subject;
    QString word; ///< the subject word of its requests ("MPrf")
    QString availableRequest;
    QString editCaption; ///< operation caption of a failed get
    QList<RightGroup> groups;
    int groupsPerRow = 3;
    QStringList putOrder{}; ///< the order of the rights in requests; empty: as they stand on the screen
    QStringList alwaysNo{}; ///< tags in the put order that are sent as N
    bool hasLocations = true;
    bool hasAllLocations = false; ///< "AllLoc": the rights hold at every location
    bool hasLevel = false;        ///< "RepPrfLevId"
    QString listsRequest{};       ///< what a new profile's further lists may hold
    QList<ProfileLists> lists{};
    QString listsUpdateRequest{}; ///< stores the last of the lists, after the profile itself
};

/// The profiles of the modules.
ProfileSpec MasterProfileSpec();
ProfileSpec CatalogingProfileSpec();
ProfileSpec CirculationProfileSpec();
ProfileSpec AcqSerialsProfileSpec();
ProfileSpec ReportingProfileSpec();
ProfileSpec GlobalDataChangeProfileSpec();

} // namespace sysadmin
