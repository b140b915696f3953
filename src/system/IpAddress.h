#pragma once

#include <QStringList>

#include <optional>

// Addresses of access control groups. They are kept and compared in one canonical form: eight groups of four
// lower-case hexadecimal digits separated by ":" (39 characters), an IPv4 address as an IPv4-mapped IPv6 one.
// The form has a fixed width, so comparing two addresses as text orders them as numbers.

namespace sysadmin {

enum class IpFamily { V4, V6 };

/// How many boxes an address of the family is entered in.
int IpGroupCount(IpFamily family);
/// Whether the text may stand in a box: 0 to 255 in decimal, 0 to FFFF in hexadecimal digits.
bool IsIpGroup(IpFamily family, const QString& text);
/// The canonical form of an address given by its boxes; none when their number or a text is wrong.
std::optional<QString> CanonicalIp(IpFamily family, const QStringList& groups);
/// The canonical form of an address as people write it, "::" and IPv4 endings included; none when the text is
/// no whole address.
std::optional<QString> ParseIp(const QString& text);
/// Whether the text is an address in canonical form.
bool IsCanonicalIp(const QString& text);

/// V4 for an IPv4-mapped address.
IpFamily FamilyOfIp(const QString& canonical);
/// The address as it stands in the boxes of a family, without leading zeros: of V4 only one of that family.
/// A text that is not in canonical form has no groups.
QStringList IpGroups(const QString& canonical, IpFamily family);
/// The address as operators read it: dotted decimal, or eight groups without leading zeros. A text that is
/// not in canonical form is shown as it is.
QString ShowIp(const QString& canonical);

/// A range of addresses in canonical form, both ends included.
struct IpRange {
    QString least;
    QString most;
    bool operator==(const IpRange&) const = default;
};

/// Whether the ranges have an address in common.
bool Overlap(const IpRange& one, const IpRange& other);
/// Both ends joined by " - ".
QString ShowIpRange(const IpRange& range);

} // namespace sysadmin
