#include "search/IndexUses.h"

#include "core/data/Tr.h"
#include "framework/forms/RowsField.h"
#include "search/FieldWeightWords.h"
#include "search/HeadingFilterWords.h"

namespace sysadmin {

void IndexUses::Load(const RequestChannel& channel) {
    leftOut = ReadRows(channel, LeftOutTags.first(), {}, LeftOutTags);
    weights = ReadRows(channel, WeightTags.first(), {}, WeightTags);
    links = ReadRows(channel, "LkCp", {}, {"LkCp", "LkFF", "LkSF"});
}

QStringList IndexUses::InWords(const QString& definition) const {
    QStringList sentences;
    if (!leftOut.isEmpty())
        sentences.append(
            Tr("Its heading filter leaves out: %1.").arg(LeftOutInWords(leftOut, definition).join("; ")));
    if (!weights.isEmpty())
        sentences.append(Tr("For relevance its fields count: %1.").arg(WeightsInWords(weights)));
    QStringList looking;
    for (const GridRow& link : links)
        looking.append(
            QString("%1 (%2)").arg(link.cells[0], QString(link.cells[1] + ' ' + link.cells[2]).trimmed()));
    if (!looking.isEmpty())
        sentences.append(Tr("Links between records look in it: %1.").arg(looking.join("; ")));
    return sentences;
}

} // namespace sysadmin
