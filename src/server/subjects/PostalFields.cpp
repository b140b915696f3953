#include "server/subjects/PostalFields.h"

#include "server/subjects/Registrations.h"

namespace sysadmin::server {

QList<SubjectField> PostalFields() {
    return {
        SubjectField::Text("EMl", "email", NameLength),
        SubjectField::Text("Adr1", "line1", AddressLineLength),
        SubjectField::Text("Adr2", "line2", AddressLineLength),
        SubjectField::Text("Adr3", "line3", AddressLineLength),
        SubjectField::Text("Adr4", "line4", AddressLineLength),
        SubjectField::Text("Adr5", "line5", AddressLineLength),
        SubjectField::Text("City", "city", AddressLineLength),
        SubjectField::Text("St", "state", StateLength),
        SubjectField::Text("Zip", "postal_code", PostalCodeLength),
        SubjectField::Text("Cty", "country", AddressLineLength),
        SubjectField::Text("SAN", "standard_number", StandardNumberLength),
    };
}

} // namespace sysadmin::server
