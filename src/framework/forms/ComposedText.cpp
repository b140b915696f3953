#include "framework/forms/ComposedText.h"

#include "core/data/RequestChannel.h"

#include <algorithm>

namespace sysadmin {

QString ComposedText::Text() const {
    return IsChanged() ? join(m_loaded) : m_loaded;
}

void ComposedText::Load(RequestChannel& channel) {
    m_loaded = channel.GetField(Tag());
    split(m_loaded);
}

void ComposedText::Put(RequestChannel& channel) const {
    channel.PutField(Tag(), Text());
}

bool ComposedText::IsChanged() const {
    return std::any_of(parts.begin(), parts.end(), [](const Field* part) { return part->IsChanged(); });
}

} // namespace sysadmin
