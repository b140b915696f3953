#pragma once

class QWidget;

namespace sysadmin {

class Application;

/// Shows the policies of all patron groups of the current cluster as one table and stores what was changed in
/// it, row by row; what could not be stored is told and stays open. True when anything was stored.
bool EditAllUbPolicies(Application& application, QWidget* parent, bool readOnly, bool usesDemerits);

} // namespace sysadmin
