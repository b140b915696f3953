#include "wire/MarcMark.h"

namespace sysadmin::wire {

bool IsMarcMark(const QString& text) {
    if (text.size() != 1)
        return false;
    const QChar mark = text[0];
    return (mark >= u'0' && mark <= u'9') || (mark >= u'a' && mark <= u'z') || mark == u'_' || mark == u'*';
}

} // namespace sysadmin::wire
