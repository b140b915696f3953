#include "server/remote/RemoteResult.h"

namespace sysadmin::server {

QString WordOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::Connected:
        return "connected";
    case Outcome::NoAddress:
        return "no-address";
    case Outcome::UnknownHost:
        return "unknown-host";
    case Outcome::Refused:
        return "refused";
    case Outcome::Unreachable:
        return "unreachable";
    case Outcome::TimedOut:
        return "timed-out";
    case Outcome::Closed:
        return "closed";
    case Outcome::OtherProtocol:
        return "other-protocol";
    case Outcome::TooLong:
        return "too-long";
    case Outcome::SignOnRefused:
        return "sign-on-refused";
    case Outcome::PasswordExpired:
        return "password-expired";
    case Outcome::PasswordUnreadable:
        return "password-unreadable";
    case Outcome::NewCertificate:
        return "new-certificate";
    case Outcome::OtherCertificate:
        return "other-certificate";
    case Outcome::WeakCertificate:
        return "weak-certificate";
    case Outcome::SearchRefused:
        return "search-refused";
    case Outcome::RecordRefused:
        return "record-refused";
    case Outcome::Busy:
        return "busy";
    case Outcome::Cancelled:
        return "cancelled";
    }
    Q_UNREACHABLE();
}

} // namespace sysadmin::server
