#pragma once

#include "marc/Record.h"

#include <QStringList>

#include <optional>

namespace sysadmin {

/// A profile by which incoming records are recognised as duplicates, as plain values.
struct DuplicateProfile {
    /// An index that takes part, with its definition as it is stored, and where the incoming record has the
    /// text when that is not the index's own place.
    struct Index {
        QString code{};
        QString name{};
        QString definition{};
        QString fieldOverride{};
        QString subfieldOverride{};
        int weight = 0;
    };
    /// A kind of record; "*" stands for any value, "_" for a blank.
    struct Quality {
        QString typeOfRecord{};
        QString encodingLevel{};
        QString originalAgency{};
        QString modifyingAgency{};
        QString conventions{};
    };
    struct MergeField {
        QString field{};
        QString indicator1{};
        QString indicator2{};
        QString institution{};
    };

    QString recordType{};
    QString handling{};
    std::optional<int> warn{};
    std::optional<int> replace{};
    bool discardsUnmatched = false;
    QList<Index> indexes{};
    QList<Quality> qualities{}; ///< the best first; none: records are not told apart
    QList<MergeField> mergeFields{};
};

/// What an index made of two records.
struct IndexMatch {
    QString code{};
    QString name{};
    QStringList incoming{}; ///< the texts as they are compared
    QStringList existing{};
    int weight = 0;
    bool matches = false;
};

/// What a profile makes of an incoming record and one that is there.
struct DuplicateScore {
    enum class Verdict { Different, Possible, Duplicate };

    QList<IndexMatch> matches{};
    int sum = 0; ///< of the weights of those that match
    Verdict verdict = Verdict::Different;
    /// The places of the two records in the quality hierarchy, from 1; 0 when there is none.
    int incomingQuality = 0;
    int existingQuality = 0;
    QStringList outcome{}; ///< what would happen, a sentence each
};

/// Compares two records by a profile.
DuplicateScore ScoreDuplicate(const DuplicateProfile& profile, const marc::Record& incoming,
                              const marc::Record& existing);

/// The texts that an index takes from a record, in the form in which they are compared: no letter case, marks
/// or articles that the record itself says are not filed.
QStringList IndexTexts(const QString& definition, const marc::Record& record);

} // namespace sysadmin
