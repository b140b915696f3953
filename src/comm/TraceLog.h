#pragma once

#include "wire/Message.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

namespace sysadmin {

/// One request with its answer, as the trace tells it.
struct TraceEntry {
    QDateTime time;
    QString request;
    wire::Fields put;
    wire::Fields reply;
    qint16 status = 0;
    double milliseconds = 0;
};

/// The file of all requests and replies, one JSON object per line, for an administrator to send to support.
/// Passwords and session tokens are masked, sealed or not.
class TraceLog {
    Q_DECLARE_TR_FUNCTIONS(TraceLog)

public:
    /// Opens the file and appends to it; an empty text, or why it cannot be written.
    QString Open(const QString& fileName);
    bool IsOpen() const { return m_file.isOpen(); }
    void Write(const TraceEntry& entry);

private:
    QFile m_file;
};

} // namespace sysadmin
