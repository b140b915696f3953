#include "cataloging/DuplicateSearch.h"

#include "cataloging/DuplicateForm.h"
#include "cataloging/DuplicateScore.h"
#include "core/data/RequestChannel.h"
#include "core/data/Tr.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

/// "Owls (score 150: ISBN, Title)".
QString InWords(const QString& name, const DuplicateScore& score) {
    QStringList indexes;
    for (const IndexMatch& match : score.matches)
        if (match.matches)
            indexes.append(match.name);
    return Tr("%1 (score %2: %3)").arg(name).arg(score.sum).arg(indexes.join(", "));
}

} // namespace

qint16 ReadDuplicateIndexes(RequestChannel& channel, const DuplicateSpec& spec,
                            QList<DuplicateIndexes::Offer>& offers) {
    offers = {{wire::duplicates::RecordIdCode(spec.recordType), spec.recordId, {}}};
    channel.PutField("RT", spec.recordType);
    const qint16 status = channel.SendRequest("AvlCatDp");
    if (status == wire::status::Ok)
        while (channel.NextRecord("DAC"))
            offers.append({channel.GetField("DAC"), channel.GetField("DAN"), channel.GetField("Ix")});
    return status;
}

std::optional<DuplicateProfile> ReadDuplicateProfile(RequestChannel& channel, const DuplicateSpec& spec,
                                                     const QString& id, qint16& status) {
    QList<DuplicateIndexes::Offer> offers;
    status = ReadDuplicateIndexes(channel, spec, offers);
    if (status != wire::status::Ok)
        return std::nullopt;
    channel.PutField("DID", id);
    channel.PutField("Look", "Y"); // the profile's own screen may be editing it
    status = channel.SendRequest("GetCatDp");
    if (status != wire::status::Ok)
        return std::nullopt;
    DuplicateForm form(spec);
    form.indexes.SetOffers(offers);
    form.Load(channel);
    return form.Profile();
}

void DuplicateSearch::Add(const marc::Record& record, const QString& name) {
    m_known.append({record, name, record.IsAuthority()});
    m_byIdentifier.Add(record, name);
}

TriedMatch DuplicateSearch::Find(const marc::Record& record) const {
    const bool isAuthority = record.IsAuthority();
    const std::optional<DuplicateProfile>& profile = isAuthority ? m_authorities : m_bibs;
    if (!profile || profile->indexes.isEmpty())
        return {.same = m_byIdentifier.Find(record)};
    int best = 0;
    TriedMatch match;
    for (const Known& known : m_known) {
        if (known.isAuthority != isAuthority)
            continue;
        const DuplicateScore score = ScoreDuplicate(*profile, record, known.record);
        if (score.sum <= best || score.verdict == DuplicateScore::Verdict::Different)
            continue;
        best = score.sum;
        match = score.verdict == DuplicateScore::Verdict::Duplicate
                    ? TriedMatch{.same = InWords(known.name, score)}
                    : TriedMatch{.possible = InWords(known.name, score)};
    }
    return match;
}

} // namespace sysadmin
