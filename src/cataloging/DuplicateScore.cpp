#include "cataloging/DuplicateScore.h"

#include "core/data/Tr.h"
#include "wire/DuplicateDetection.h"
#include "wire/ItemText.h"
#include "wire/SearchIndexes.h"

#include <algorithm>

namespace sysadmin {

namespace duplicates = wire::duplicates;
namespace handling = wire::duplicates::handling;
namespace key = wire::indexes::key;

namespace {

/// Letters and digits in small letters, everything else as one blank between them.
QString Normalised(const QString& text) {
    QString normalised;
    for (const QChar letter : text.normalized(QString::NormalizationForm_KD)) {
        if (letter.isLetterOrNumber())
            normalised += letter.toLower();
        else if (!letter.isMark() && !normalised.endsWith(' '))
            normalised += ' ';
    }
    return normalised.trimmed();
}

bool SuitsPattern(const QString& tag, const QString& pattern) {
    if (pattern == u"*")
        return true;
    return tag.size() == pattern.size() &&
           std::equal(tag.begin(), tag.end(), pattern.begin(),
                      [](QChar digit, QChar wanted) { return wanted == u'X' || digit == wanted; });
}

QChar MarkOf(QChar value) {
    return value == u' ' ? QChar(duplicates::Blank) : value;
}

bool HasIndicator(QChar indicator, const QString& include, const QString& exclude) {
    const QChar mark = MarkOf(indicator);
    return (include.isEmpty() || include.contains(mark)) && !exclude.contains(mark);
}

/// A standard number without marks and without what is said of it ("978-0-00-000001-9 (hardcover)").
QString NumberAlone(const QString& text) {
    return text.trimmed().section(' ', 0, 0).remove('-');
}

/// How many characters at its beginning the field says are not filed.
int NotFiled(const marc::Field& field) {
    const bool bySecond = field.tag == u"245" || field.tag == u"440" || field.tag == u"240";
    const bool byFirst = field.tag == u"130" || field.tag == u"730" || field.tag == u"740";
    return bySecond  ? std::max(0, field.indicator2.digitValue())
           : byFirst ? std::max(0, field.indicator1.digitValue())
                     : 0;
}

QString TextOf(const marc::Field& field, const QString& include, const QString& exclude) {
    if (field.IsControl())
        return field.value;
    const bool isNumber = field.tag == u"010" || field.tag == u"020" || field.tag == u"022";
    QStringList parts;
    for (const marc::Subfield& subfield : field.subfields)
        if ((include.isEmpty() || include.contains(subfield.code)) && !exclude.contains(subfield.code))
            parts.append(isNumber ? NumberAlone(subfield.value) : subfield.value);
    return parts.join(' ').mid(NotFiled(field));
}

/// The texts of one place in a record: of control fields the value, else the subfield.
QStringList TextsAt(const marc::Record& record, const QString& tag, const QString& subfield) {
    QStringList texts;
    for (const marc::Field& field : record.fields)
        if (field.tag == tag)
            texts.append(Normalised(TextOf(field, subfield, {})));
    texts.removeAll(QString());
    return texts;
}

QString WithBlanks(const QString& text) {
    return QString(text).replace(QChar(duplicates::Blank), ' ');
}

bool Suits(const QString& value, const QString& pattern) {
    return pattern == duplicates::Any ||
           value.trimmed().compare(WithBlanks(pattern).trimmed(), Qt::CaseInsensitive) == 0;
}

/// The place of the record in the hierarchy, from 1; behind all when nothing there is like it.
int QualityOf(const DuplicateProfile& profile, const marc::Record& record) {
    const marc::Field* source = record.First("040");
    const auto agency = [&](char code) { return source ? source->First(QLatin1Char(code)) : QString(); };
    // The last of several agencies is the one that modified it last.
    const QStringList modified = source ? source->All('d') : QStringList();
    for (qsizetype i = 0; i < profile.qualities.size(); ++i) {
        const DuplicateProfile::Quality& quality = profile.qualities[i];
        if (Suits(record.leader.mid(6, 1), quality.typeOfRecord) &&
            Suits(record.leader.mid(17, 1), quality.encodingLevel) &&
            Suits(agency('a'), quality.originalAgency) &&
            Suits(modified.isEmpty() ? QString() : modified.last(), quality.modifyingAgency) &&
            Suits(agency('e'), quality.conventions))
            return int(i) + 1;
    }
    return int(profile.qualities.size()) + 1;
}

/// The fields of a record that a merge keeps.
QStringList Kept(const DuplicateProfile& profile, const marc::Record& record) {
    QStringList kept;
    for (const marc::Field& field : record.fields) {
        const bool isNamed = std::any_of(
            profile.mergeFields.begin(), profile.mergeFields.end(),
            [&](const DuplicateProfile::MergeField& merge) {
                return field.tag == merge.field && Suits(MarkOf(field.indicator1), merge.indicator1) &&
                       Suits(MarkOf(field.indicator2), merge.indicator2) &&
                       (merge.institution.isEmpty() || field.All('5').contains(merge.institution));
            });
        if (isNamed && !kept.contains(field.tag))
            kept.append(field.tag);
    }
    return kept;
}

QString KeptInWords(const QStringList& tags, const QString& whose) {
    return tags.isEmpty() ? Tr("No field of %1 is kept: it has none of the merge fields.").arg(whose)
                          : Tr("Fields of %1 that are kept: %2.").arg(whose, tags.join(", "));
}

QStringList OfDuplicate(const DuplicateProfile& profile, const DuplicateScore& score,
                        const marc::Record& incoming, const marc::Record& existing) {
    const bool isLower = score.incomingQuality > score.existingQuality;
    const QString lower = Tr("The incoming record stands lower in the quality hierarchy (place %1, the one "
                             "that is there %2).")
                              .arg(score.incomingQuality)
                              .arg(score.existingQuality);
    if (profile.handling == handling::AddConditional)
        return {Tr("The incoming record is not added: it is there already.")};
    if (profile.handling == handling::Replace)
        return isLower ? QStringList{lower, Tr("The record that is there stays.")}
                       : QStringList{Tr("The incoming record replaces the one that is there.")};
    if (profile.handling == handling::Merge)
        return {Tr("The incoming record replaces the one that is there."),
                KeptInWords(Kept(profile, existing), Tr("the record that is there"))};
    if (profile.handling == handling::MergeBothWays)
        return isLower ? QStringList{lower, Tr("The record that is there stays."),
                                     KeptInWords(Kept(profile, incoming), Tr("the incoming record"))}
                       : QStringList{Tr("The incoming record replaces the one that is there."),
                                     KeptInWords(Kept(profile, existing), Tr("the record that is there"))};
    return {Tr("The incoming record is added, whatever it is a duplicate of.")};
}

QStringList OutcomeOf(const DuplicateProfile& profile, const DuplicateScore& score,
                      const marc::Record& incoming, const marc::Record& existing) {
    QStringList sentences;
    if (score.verdict == DuplicateScore::Verdict::Duplicate) {
        sentences
            << Tr("Duplicate: %1 reaches the replace threshold of %2.").arg(score.sum).arg(*profile.replace);
        return sentences << OfDuplicate(profile, score, incoming, existing);
    }
    if (score.verdict == DuplicateScore::Verdict::Possible)
        sentences << Tr("Possible duplicate: %1 reaches the warn threshold of %2.")
                         .arg(score.sum)
                         .arg(*profile.warn);
    else
        sentences << Tr("No duplicate: %1 reaches no threshold.").arg(score.sum);
    if (!profile.replace)
        sentences << Tr("Without a replace threshold nothing counts as a duplicate.");
    const bool isDiscarded = profile.discardsUnmatched && profile.handling != handling::AddUnconditional;
    sentences << (isDiscarded ? Tr("The incoming record is discarded: it matches no record that is there.")
                  : score.verdict == DuplicateScore::Verdict::Possible
                      ? Tr("The incoming record is added, with a warning.")
                      : Tr("The incoming record is added."));
    return sentences;
}

/// The index's own place, but another subfield of it.
QString WithSubfield(const QString& definition, const QString& subfield) {
    if (subfield.isEmpty())
        return definition;
    wire::ItemText items(definition);
    items.Set(key::IncludeSubfields, subfield);
    items.Set(key::ExcludeSubfields, {});
    return items.Text();
}

} // namespace

QStringList IndexTexts(const QString& definition, const marc::Record& record) {
    const wire::ItemText items(definition);
    const QString pattern = items.Value(key::BibField);
    const QString offset = items.Value(key::FixedOffset);
    const QString length = items.Value(key::FixedLength);
    QStringList texts;
    for (const marc::Field& field : record.fields) {
        if (pattern.isEmpty() || !SuitsPattern(field.tag, pattern))
            continue;
        if (!field.IsControl() && (!HasIndicator(field.indicator1, items.Value(key::IncludeFirstIndicator),
                                                 items.Value(key::ExcludeFirstIndicator)) ||
                                   !HasIndicator(field.indicator2, items.Value(key::IncludeSecondIndicator),
                                                 items.Value(key::ExcludeSecondIndicator))))
            continue;
        QString text = TextOf(field, items.Value(key::IncludeSubfields), items.Value(key::ExcludeSubfields));
        if (!offset.isEmpty() || !length.isEmpty())
            text = text.mid(offset.toInt(), length.isEmpty() ? -1 : length.toInt());
        text = Normalised(text);
        if (const int most = items.Value(key::TextLength).toInt(); most > 0)
            text = text.left(most).trimmed();
        if (!text.isEmpty())
            texts.append(text);
    }
    if (items.Value(key::FirstOccurrence) == u"Y")
        return texts.mid(0, 1);
    if (items.Value(key::LastOccurrence) == u"Y")
        return texts.mid(std::max<qsizetype>(0, texts.size() - 1));
    return texts;
}

DuplicateScore ScoreDuplicate(const DuplicateProfile& profile, const marc::Record& incoming,
                              const marc::Record& existing) {
    DuplicateScore score;
    const QString ownId = duplicates::RecordIdCode(profile.recordType);
    for (const DuplicateProfile::Index& index : profile.indexes) {
        const bool isOwnId = index.code == ownId;
        IndexMatch match{.code = index.code, .name = index.name, .weight = index.weight};
        match.existing = isOwnId ? TextsAt(existing, "001", {}) : IndexTexts(index.definition, existing);
        if (!index.fieldOverride.isEmpty())
            match.incoming = TextsAt(incoming, index.fieldOverride,
                                     index.subfieldOverride.isEmpty() ? "a" : index.subfieldOverride);
        else
            match.incoming =
                isOwnId ? TextsAt(incoming, "001", {})
                        : IndexTexts(WithSubfield(index.definition, index.subfieldOverride), incoming);
        match.matches = std::any_of(match.incoming.begin(), match.incoming.end(),
                                    [&](const QString& text) { return match.existing.contains(text); });
        score.sum += match.matches ? match.weight : 0;
        score.matches.append(match);
    }
    // Nothing in common is no duplicate, whatever the thresholds are.
    if (score.sum > 0 && profile.replace && score.sum >= *profile.replace)
        score.verdict = DuplicateScore::Verdict::Duplicate;
    else if (score.sum > 0 && profile.warn && score.sum >= *profile.warn)
        score.verdict = DuplicateScore::Verdict::Possible;
    if (!profile.qualities.isEmpty()) {
        score.incomingQuality = QualityOf(profile, incoming);
        score.existingQuality = QualityOf(profile, existing);
    }
    score.outcome = OutcomeOf(profile, score, incoming, existing);
    return score;
}

} // namespace sysadmin
