#pragma once

#include <QString>
#include <QStringList>

namespace sysadmin {

/// The communication library's session: the connection's parameters and who is signed on.
class Session {
public:
    virtual ~Session() = default;
    /// Takes the program's command line (without the program's name) unchanged.
    virtual void SetCommandLine(const QStringList& arguments) = 0;
    /// The caption of the library's information entry in the File menu.
    virtual QString InformationCaption() const = 0;
    /// The signed-on operator's id; empty before sign-on. Preferences are kept under it.
    virtual QString OperatorId() const = 0;
};

} // namespace sysadmin
