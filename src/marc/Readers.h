#pragma once

#include "marc/ReadRecords.h"

#include <QCoreApplication>

namespace sysadmin::marc {

/// What the readers say, for its translations.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(Marc)
};

inline constexpr qsizetype BytesAtOnce = 64 * 1024;           ///< that are read from a file
inline constexpr qsizetype MostRecordBytes = 4 * 1024 * 1024; ///< that one record may take in a file

/// Gathers what a reader finds.
class Collector {
public:
    explicit Collector(int limit)
        : m_limit(limit) {}

    /// No further record is wanted.
    bool IsFull() const { return m_seen >= m_limit; }
    /// Takes the record, unless it has a fault that any record can have.
    void Add(Record record, const QString& where);
    /// Leaves a record out: "Record 3 (WHERE): FAULT".
    void Refuse(const QString& where, const QString& fault);
    void SayMore() { m_result.hasMore = true; }
    Result Take() { return std::move(m_result); }

private:
    Result m_result;
    const int m_limit;
    int m_seen = 0;
};

void ReadIso2709(QIODevice& device, Collector& into);
void ReadMarcXml(QIODevice& device, Collector& into);
void ReadLineText(QIODevice& device, Collector& into);

} // namespace sysadmin::marc
