#include "security/ProfileSpec.h"

#include "core/data/Tr.h"

namespace sysadmin {

ProfileSpec CatalogingProfileSpec() {
    return {.formName = "frmSecurity_CatalogingProfiles",
            .caption = Tr("Security Cataloging Profiles"),
            .subject = Tr("Cataloging Profile"),
            .word = "CaPrf",
            .availableRequest = "AvlCaPrf",
            .editCaption = "Edit Security Cataloging Profile",
            .groups = {{Tr("Bibliographic records"),
                        {{"VwBR", Tr("View bibliographic records")},
                         {"AddBR", Tr("Add bibliographic records")},
                         {"UpdBR", Tr("Change bibliographic records")},
                         {"DelBR", Tr("Delete bibliographic records")}}},
                       {Tr("Holdings records"),
                        {{"VwHR", Tr("View holdings records")},
                         {"AddHR", Tr("Add holdings records")},
                         {"UpdHR", Tr("Change holdings records")},
                         {"DelHR", Tr("Delete holdings records")},
                         {"GlHR", Tr("Change holdings records globally")}}},
                       {Tr("Item records"),
                        {{"VwIR", Tr("View item records")},
                         {"AddIR", Tr("Add item records")},
                         {"UpdIR", Tr("Change item records")},
                         {"DelIR", Tr("Delete item records")}}},
                       {Tr("Authority records"),
                        {{"VwAR", Tr("View authority records")},
                         {"AddAR", Tr("Add authority records")},
                         {"UpdAR", Tr("Change authority records")},
                         {"DelAR", Tr("Delete authority records")}}},
                       {Tr("Templates"),
                        {{"VwMBT", Tr("View bibliographic templates")},
                         {"AddMBT", Tr("Add bibliographic templates")},
                         {"VwMHT", Tr("View holdings templates")},
                         {"AddMHT", Tr("Add holdings templates")},
                         {"VwMAT", Tr("View authority templates")},
                         {"AddMAT", Tr("Add authority templates")},
                         {"UT", Tr("Use templates")},
                         {"UTP", Tr("Change template preferences")}}},
                       {Tr("Import, export and ownership"),
                        {{"BEO", Tr("Export bibliographic records")},
                         {"MEO", Tr("Export holdings records")},
                         {"AEO", Tr("Export authority records")},
                         {"BOL", Tr("Overlay bibliographic records on import")},
                         {"BOC", Tr("Change the owner of bibliographic records")},
                         {"HIO", Tr("Work on holdings and items of other locations")}}}}};
}

} // namespace sysadmin
