#pragma once

#include "cataloging/DuplicateForm.h"
#include "cataloging/ImportTrial.h"
#include "cataloging/SameRecords.h"

#include <optional>

namespace sysadmin {

class RequestChannel;

/// Reads the indexes by which records of the type can be compared; the record's own identifier comes first,
/// whatever the status, which is that of the request.
qint16 ReadDuplicateIndexes(RequestChannel& channel, const DuplicateSpec& spec,
                            QList<DuplicateIndexes::Offer>& offers);

/// Reads a duplicate detection profile as it is stored, without counting as having seen it; none when a
/// request failed: `status` says how.
std::optional<DuplicateProfile> ReadDuplicateProfile(RequestChannel& channel, const DuplicateSpec& spec,
                                                     const QString& id, qint16& status);

/// Finds the records that a profile calls duplicates. Without a profile, or with one that compares by no
/// index, records are the same that have an identifier in common.
class DuplicateSearch {
public:
    DuplicateSearch(const std::optional<DuplicateProfile>& bibs,
                    const std::optional<DuplicateProfile>& authorities)
        : m_bibs(bibs)
        , m_authorities(authorities) {}

    /// Takes in a record of the library's; what is found later is called `name`.
    void Add(const marc::Record& record, const QString& name);
    /// The record that comes nearest to this one.
    TriedMatch Find(const marc::Record& record) const;

private:
    struct Known {
        marc::Record record;
        QString name;
        bool isAuthority = false;
    };

    std::optional<DuplicateProfile> m_bibs;
    std::optional<DuplicateProfile> m_authorities;
    QList<Known> m_known;
    SameRecords m_byIdentifier;
};

} // namespace sysadmin
