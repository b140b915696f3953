#pragma once

#include "core/data/RequestChannel.h"
#include "core/data/Session.h"

#include <memory>

class QWidget;

namespace sysadmin {

/// What the program needs of the communication library besides the request channel.
class Communication {
public:
    virtual ~Communication() = default;
    virtual Session& GetSession() = 0;
    virtual RequestChannel& GetChannel() = 0;

    /// True ends start-up at once and silently.
    virtual bool PreCheck() = 0;
    /// Shows the sign-on dialog until the operator is accepted or gives up.
    virtual void ShowSignOn() = 0;
    virtual void CloseSignOn() = 0;
    /// Runs after sign-on, before the rights are loaded; true when the program may go on.
    virtual bool PostSignOn() = 0;

    /// The library that is worked on, and where it is ("settings.example.org"; "this computer" for one that
    /// needs no server). Both are empty before sign-on.
    virtual QString LibraryName() const = 0;
    virtual QString ServerName() const = 0;
    /// The colour that the library was given ("#c03028"), by which it is told from others; empty: none.
    virtual QString LibraryColour() const { return {}; }

    /// Lets the operator sign on to another library, beside the session that there is; null when he gave up.
    /// Its session ends with the object.
    virtual std::unique_ptr<Communication> SignOnElsewhere(QWidget* /*parent*/) { return nullptr; }

    virtual void ShowLoginInformation(QWidget* parent) = 0;
    virtual void ChangePassword(QWidget* parent) = 0;
    /// Seals a plain password for the server; the only form in which one is ever put into a request.
    virtual QString EncodePassword(const QString& plain) const = 0;
};

} // namespace sysadmin
