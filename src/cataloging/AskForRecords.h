#pragma once

#include "marc/ReadRecords.h"

#include <optional>

class QWidget;

namespace sysadmin {

class Prompter;

/// Asks for a file of MARC records and reads it (see `marc::ReadRecords`); none when the operator gave up, or
/// when it could not be read, which was told. `name`: takes the file's name without its path.
std::optional<marc::Result> AskForRecords(Prompter& prompter, QWidget* parent, const QString& title,
                                          int limit = marc::MostRecords, QString* name = nullptr);

} // namespace sysadmin
