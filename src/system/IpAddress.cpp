#include "system/IpAddress.h"

#include <QHostAddress>
#include <QRegularExpression>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int Hex = 16;
constexpr int BytesInIpv6 = 16;
const QString MappedPrefix = "0000:0000:0000:0000:0000:ffff:";

QString Padded(uint value, int digits) {
    return QString("%1").arg(value, digits, Hex, QChar('0'));
}

} // namespace

int IpGroupCount(IpFamily family) {
    return family == IpFamily::V4 ? 4 : 8;
}

bool IsIpGroup(IpFamily family, const QString& text) {
    static const QRegularExpression decimal("^[0-9]{1,3}\\z");
    static const QRegularExpression hexadecimal("^[0-9A-Fa-f]{1,4}\\z");
    if (family == IpFamily::V4)
        return decimal.match(text).hasMatch() && text.toUInt() <= 255;
    return hexadecimal.match(text).hasMatch();
}

std::optional<QString> CanonicalIp(IpFamily family, const QStringList& groups) {
    const bool fits = groups.size() == IpGroupCount(family) &&
                      std::all_of(groups.begin(), groups.end(),
                                  [family](const QString& group) { return IsIpGroup(family, group); });
    if (!fits)
        return std::nullopt;
    if (family == IpFamily::V4)
        return MappedPrefix + Padded(groups[0].toUInt(), 2) + Padded(groups[1].toUInt(), 2) + ':' +
               Padded(groups[2].toUInt(), 2) + Padded(groups[3].toUInt(), 2);
    QStringList padded;
    for (const QString& group : groups)
        padded.append(Padded(group.toUInt(nullptr, Hex), 4));
    return padded.join(':');
}

std::optional<QString> ParseIp(const QString& text) {
    const QString whole = text.trimmed();
    if (!whole.contains(':')) // the class below would take "10.1" for an address, too
        return CanonicalIp(IpFamily::V4, whole.split('.'));
    // A zone ("%eth0") names an interface of one computer: it is no part of an address to be kept.
    const QHostAddress address(whole);
    if (address.protocol() != QAbstractSocket::IPv6Protocol || !address.scopeId().isEmpty())
        return std::nullopt;
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    QStringList groups;
    for (int i = 0; i < BytesInIpv6; i += 2)
        groups.append(Padded(uint(bytes[i]) << 8 | bytes[i + 1], 4));
    return groups.join(':');
}

bool IsCanonicalIp(const QString& text) {
    static const QRegularExpression form("^([0-9a-f]{4}:){7}[0-9a-f]{4}\\z");
    return form.match(text).hasMatch();
}

IpFamily FamilyOfIp(const QString& canonical) {
    return canonical.startsWith(MappedPrefix) ? IpFamily::V4 : IpFamily::V6;
}

QStringList IpGroups(const QString& canonical, IpFamily family) {
    QStringList groups;
    if (!IsCanonicalIp(canonical))
        return groups;
    if (family == IpFamily::V4) {
        const QString bytes = canonical.right(9).remove(':');
        for (int i = 0; i < bytes.size(); i += 2)
            groups.append(QString::number(bytes.mid(i, 2).toUInt(nullptr, Hex)));
        return groups;
    }
    for (const QString& group : canonical.split(':'))
        groups.append(QString::number(group.toUInt(nullptr, Hex), Hex));
    return groups;
}

QString ShowIp(const QString& canonical) {
    const IpFamily family = FamilyOfIp(canonical);
    const QStringList groups = IpGroups(canonical, family);
    if (groups.isEmpty())
        return canonical;
    return groups.join(family == IpFamily::V4 ? '.' : ':');
}

bool Overlap(const IpRange& one, const IpRange& other) {
    return one.least <= other.most && other.least <= one.most;
}

QString ShowIpRange(const IpRange& range) {
    return ShowIp(range.least) + " - " + ShowIp(range.most);
}

} // namespace sysadmin
