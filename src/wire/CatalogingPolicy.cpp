#include "wire/CatalogingPolicy.h"

namespace sysadmin::wire::catalogingpolicy {

bool IsConsequence(const QString& value) {
    return value == Warn || value == Refuse;
}

} // namespace sysadmin::wire::catalogingpolicy
