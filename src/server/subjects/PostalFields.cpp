#include "server/subjects/PostalFields.h"

#include "server/subjects/Registrations.h"

namespace sysadmin::server {

QList<Field> PostalFields() {
    constexpr int LineLength = 60;
    return {
        Field::Text("EMl", "email", NameLength),   Field::Text("Adr1", "line1", LineLength),
        Field::Text("Adr2", "line2", LineLength),  Field::Text("Adr3", "line3", LineLength),
        Field::Text("Adr4", "line4", LineLength),  Field::Text("Adr5", "line5", LineLength),
        Field::Text("City", "city", LineLength),   Field::Text("St", "state", 40),
        Field::Text("Zip", "postal_code", 20),     Field::Text("Cty", "country", LineLength),
        Field::Text("SAN", "standard_number", 20),
    };
}

} // namespace sysadmin::server
