#pragma once

#include <QString>

namespace sysadmin {

/// What a right of a module's profile allows, in a sentence for the administrator who grants it. `word` is
/// the subject word of the profile's requests ("CaPrf"). Empty where there is no such right.
QString SentenceOfRight(const QString& word, const QString& tag);

} // namespace sysadmin
