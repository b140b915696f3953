#pragma once

#include "security/Configuration.h"

namespace sysadmin {

/// Shows what a copy would do and what stands against it; true when it is to be done.
bool ShowCopyPreview(Application& application, QWidget* parent, const ConfigurationDifferences& plan,
                     const QString& source, const QString& target);

} // namespace sysadmin
