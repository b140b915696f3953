#include "wire/Message.h"

namespace sysadmin::wire {

QString FirstValue(const Fields& fields, const QString& tag) {
    for (const Field& field : fields)
        if (field.tag == tag)
            return field.value;
    return {};
}

} // namespace sysadmin::wire
