#pragma once

#include <QString>

class QWidget;

namespace sysadmin {

class Application;

/// A record of which is asked where it is used.
struct UsedRecord {
    QString word; ///< of its requests: "Loc" of "GetLoc"
    QString key;
    QString name;
};

/// Shows what refers to the record, and goes to what the operator chooses there; true when he did. A failure
/// is reported.
bool ShowWhereUsed(Application& application, QWidget* parent, const UsedRecord& record);

} // namespace sysadmin
