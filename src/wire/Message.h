#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace sysadmin::wire {

/// One tagged value of a request or reply. All values are text.
struct Field {
    QString tag;
    QString value;
    bool operator==(const Field&) const = default;
};

/// The fields of a message, in the order in which they were put; a tag may stand there many times.
using Fields = QList<Field>;

/// A named request. `number` counts a session's requests from 1 and never repeats within it.
struct Request {
    quint64 number = 0;
    QString name;
    Fields fields;
    bool operator==(const Request&) const = default;
};

/// The answer to the request of the same number. `status` 0 is success.
struct Reply {
    quint64 number = 0;
    qint16 status = 0;
    Fields fields;
    /// The words of the subjects ("VenTp", "Loc") that others changed since the session's last request.
    QStringList changed = {};
    bool operator==(const Reply&) const = default;
};

/// The value of the first field with this tag, or an empty text.
QString FirstValue(const Fields& fields, const QString& tag);

} // namespace sysadmin::wire
