#include "search/HeadingFilterWords.h"

#include "core/data/Tr.h"
#include "search/IndexSentences.h"
#include "wire/ItemText.h"

#include <algorithm>

namespace sysadmin {

namespace headings = wire::headings;
namespace indexes = wire::indexes;

namespace {

constexpr QChar SubjectField = '6'; ///< begins the fields of subject headings: they name a vocabulary
constexpr QChar AnyDigit = 'X';

QString KindInWords(const QString& kind) {
    for (const headings::Kind& known : headings::Kinds())
        if (known.code == kind)
            return known.plural;
    return Tr("headings");
}

QString NameOf(const QString& vocabulary) {
    for (const headings::Vocabulary& known : headings::Vocabularies())
        if (known.indicator == vocabulary)
            return known.name;
    return vocabulary;
}

/// Whether the field pattern stands for a field that ends in the kind's digits.
bool HoldsKind(const QString& pattern, const QString& kind) {
    if (pattern.size() != 3 || kind == headings::Any)
        return true;
    return std::equal(kind.begin(), kind.end(), pattern.begin() + 1,
                      [](QChar digit, QChar place) { return place == AnyDigit || place == digit; });
}

} // namespace

headings::LeftOut LeftOutOf(const GridRow& row) {
    return {row.cells.value(0), row.cells.value(1), row.cells.value(2)};
}

QString InWords(const headings::LeftOut& entry) {
    const QString kind = KindInWords(entry.kind);
    if (entry.vocabulary == headings::Any)
        return kind;
    if (entry.vocabulary != headings::NamedInSubfield)
        return Tr("%1 of %2 (second indicator %3)").arg(kind, NameOf(entry.vocabulary), entry.vocabulary);
    return entry.source.isEmpty() ? Tr("%1 of whatever vocabulary $2 names").arg(kind)
                                  : Tr("%1 of the vocabulary %2 ($2)").arg(kind, entry.source);
}

QString WhyWithoutEffect(const headings::LeftOut& entry, const QString& definition) {
    const wire::ItemText items(definition);
    const QString field = items.Value(indexes::key::BibField);
    if (field.isEmpty())
        return {};
    if (!HoldsKind(field, entry.kind))
        return Tr("the index takes %1 only").arg(FieldInWords(field));
    if (entry.vocabulary == headings::Any)
        return {};
    if (field.size() == 3 && field[0] != SubjectField)
        return Tr("only subject headings (fields 600 to 699) name a vocabulary, and the index takes %1")
            .arg(FieldInWords(field));
    const QString included = items.Value(indexes::key::IncludeSecondIndicator);
    if (!included.isEmpty() && !included.contains(entry.vocabulary))
        return Tr("the index lets in the second indicator %1 only")
            .arg(included.split(QString(), Qt::SkipEmptyParts).join(", "));
    if (items.Value(indexes::key::ExcludeSecondIndicator).contains(entry.vocabulary))
        return Tr("the index keeps out the second indicator %1 by itself").arg(entry.vocabulary);
    return {};
}

QStringList LeftOutInWords(const QList<GridRow>& entries, const QString& definition) {
    QStringList lines;
    for (const GridRow& row : entries) {
        const headings::LeftOut entry = LeftOutOf(row);
        const QString why = WhyWithoutEffect(entry, definition);
        lines.append(why.isEmpty() ? InWords(entry) : Tr("%1 (no effect: %2)").arg(InWords(entry), why));
    }
    return lines;
}

} // namespace sysadmin
