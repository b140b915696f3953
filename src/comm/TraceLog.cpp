#include "comm/TraceLog.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <iterator>

namespace sysadmin {

namespace {

// Passwords old and new, the session's token, the PIN given to patrons who have none, and the line that says
// which password opens a sample library.
constexpr const char* SecretTags[] = {"PW", "OPW", "SID", "DP", "HINT"};

bool IsSecret(const QString& request, const QString& tag) {
    // The voucher password of request forms; elsewhere the tag means other things.
    if (tag == u"P" && request.endsWith("OFrm"))
        return true;
    return std::any_of(std::begin(SecretTags), std::end(SecretTags),
                       [&](const char* secret) { return tag == secret; });
}

QJsonArray FieldsAsJson(const QString& request, const wire::Fields& fields) {
    QJsonArray array;
    for (const wire::Field& field : fields)
        array.append(QJsonArray{field.tag, IsSecret(request, field.tag) ? QString("***") : field.value});
    return array;
}

// A JSON object of the document class has its members in alphabetical order; people read a request before its
// reply.
QByteArray Member(const char* name, const QJsonValue& value) {
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return '"' + QByteArray(name) + "\":" + array.mid(1, array.size() - 2);
}

} // namespace

QString TraceLog::Open(const QString& fileName) {
    m_file.setFileName(fileName);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append))
        return tr("The trace cannot be written to %1: %2")
            .arg(QDir::toNativeSeparators(fileName), m_file.errorString());
    // Patrons' and operators' data stand in it.
    m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return {};
}

void TraceLog::Write(const TraceEntry& entry) {
    if (!m_file.isOpen())
        return;
    const QByteArrayList members{Member("time", entry.time.toString(Qt::ISODateWithMs)),
                                 Member("request", entry.request),
                                 Member("put", FieldsAsJson(entry.request, entry.put)),
                                 Member("reply", FieldsAsJson(entry.request, entry.reply)),
                                 Member("status", entry.status),
                                 Member("ms", entry.milliseconds)};
    m_file.write('{' + members.join(',') + "}\n");
    m_file.flush();
}

} // namespace sysadmin
