#include "cataloging/DuplicateSearch.h"

#include "cataloging/DuplicateForm.h"
#include "cataloging/DuplicateScore.h"
#include "core/data/RequestChannel.h"
#include "wire/Status.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("DuplicateSearch", text);
}

bool IsAuthority(const marc::Record& record) {
    return record.leader.size() > 6 && record.leader[6] == u'z';
}

/// "Owls (score 150: ISBN, Title)".
QString InWords(const QString& name, const DuplicateScore& score) {
    QStringList indexes;
    for (const IndexMatch& match : score.matches)
        if (match.matches)
            indexes.append(match.name);
    return Tr("%1 (score %2: %3)").arg(name).arg(score.sum).arg(indexes.join(", "));
}

} // namespace

std::optional<DuplicateProfile> ReadDuplicateProfile(RequestChannel& channel, const DuplicateSpec& spec,
                                                     const QString& id, qint16& status) {
    QList<DuplicateIndexes::Offer> offers{
        {wire::duplicates::RecordIdCode(spec.recordType), spec.recordId, {}}};
    channel.PutField("RT", spec.recordType);
    status = channel.SendRequest("AvlCatDp");
    if (status != wire::status::Ok)
        return std::nullopt;
    while (channel.NextRecord("DAC"))
        offers.append({channel.GetField("DAC"), channel.GetField("DAN"), channel.GetField("Ix")});
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
    m_known.append({record, name, IsAuthority(record)});
    m_byIdentifier.Add(record, name);
}

TriedMatch DuplicateSearch::Find(const marc::Record& record) const {
    const bool isAuthority = IsAuthority(record);
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
