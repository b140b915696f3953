#include "wire/TitleLists.h"

#include "wire/SearchIndexes.h"

namespace sysadmin::wire::titles {

bool IsTextField(const QString& text) {
    return text.isEmpty() || indexes::IsFieldPattern(text);
}

} // namespace sysadmin::wire::titles
