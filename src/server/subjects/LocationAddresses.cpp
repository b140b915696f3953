#include "server/subjects/LocationAddresses.h"

#include "server/subjects/PostalFields.h"

namespace sysadmin::server {

Children LocationAddresses() {
    const Children phones{
        .table = "location_phones",
        .owner = "address_id",
        .fields = {SubjectField::Text("PhNm", "number", PhoneLength).Required(),
                   SubjectField::Reference("PhTp", "phone_type_id", "phone_types")},
        .idTag = "PhID",
        .state = "PhRq",
        .ownerTag = "PhAID",
        .replyOrder = {"PhAID", "PhTp", "PhNm", "PhID"},
    };
    return {
        .table = "location_addresses",
        .owner = "location_id",
        .fields = QList<SubjectField>{SubjectField::Text("AdrNm", "contact", NameLength)} + PostalFields() +
                  QList<SubjectField>{
                      SubjectField::Flag("Ship", "is_ship_to"),
                      SubjectField::Flag("Bill", "is_bill_to"),
                      SubjectField::Flag("Strt", "is_street"),
                      SubjectField::Flag("Cmp", "is_campus"),
                      SubjectField::Flag("CDsk", "is_circ_desk"),
                      SubjectField::Flag("Other", "is_other"),
                  },
        .marker = "AdrRq",
        .idTag = "AdrID",
        .state = "AdrRq",
        .byState = true,
        .most = MostAddresses,
        .children = {phones},
    };
}

} // namespace sysadmin::server
