#include "wire/CallNumbers.h"

#include <algorithm>

namespace sysadmin::wire::callnumbers {

bool IsSubfields(const QString& value) {
    const auto isCode = [](QChar code) {
        return (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'z');
    };
    return value.size() <= MostSubfields && std::all_of(value.begin(), value.end(), [&](QChar code) {
               return isCode(code) && value.count(code) == 1;
           });
}

bool GoTogether(const QString& field, const QString& subfields) {
    return field.startsWith("00") == subfields.isEmpty();
}

} // namespace sysadmin::wire::callnumbers
