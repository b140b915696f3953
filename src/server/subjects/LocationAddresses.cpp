#include "server/subjects/LocationAddresses.h"

#include "server/subjects/PostalFields.h"

namespace sysadmin::server {

Children LocationAddresses() {
    const Children phones{
        .table = "location_phones",
        .owner = "address_id",
        .fields = {Field::Text("PhNm", "number", PhoneLength).Required(),
                   Field::Reference("PhTp", "phone_type_id", "phone_types")},
        .idTag = "PhID",
        .state = "PhRq",
        .ownerTag = "PhAID",
        .replyOrder = {"PhAID", "PhTp", "PhNm", "PhID"},
    };
    return {
        .table = "location_addresses",
        .owner = "location_id",
        .fields = QList<Field>{Field::Text("AdrNm", "contact", NameLength)} + PostalFields() +
                  QList<Field>{
                      Field::Flag("Ship", "is_ship_to"),
                      Field::Flag("Bill", "is_bill_to"),
                      Field::Flag("Strt", "is_street"),
                      Field::Flag("Cmp", "is_campus"),
                      Field::Flag("CDsk", "is_circ_desk"),
                      Field::Flag("Other", "is_other"),
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
