#include "server/subjects/PostalFields.h"

#include "server/subjects/Registrations.h"

namespace sysadmin::server {

QList<Field> PostalFields() {
    return {
        Field::Text("EMl", "email", NameLength),
        Field::Text("Adr1", "line1", AddressLineLength),
        Field::Text("Adr2", "line2", AddressLineLength),
        Field::Text("Adr3", "line3", AddressLineLength),
        Field::Text("Adr4", "line4", AddressLineLength),
        Field::Text("Adr5", "line5", AddressLineLength),
        Field::Text("City", "city", AddressLineLength),
        Field::Text("St", "state", StateLength),
        Field::Text("Zip", "postal_code", PostalCodeLength),
        Field::Text("Cty", "country", AddressLineLength),
        Field::Text("SAN", "standard_number", StandardNumberLength),
    };
}

} // namespace sysadmin::server
