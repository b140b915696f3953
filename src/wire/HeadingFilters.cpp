#include "wire/HeadingFilters.h"

#include <QRegularExpression>

#include <algorithm>

namespace sysadmin::wire::headings {

const QList<Kind>& Kinds() {
    static const QList<Kind> kinds{
        {"00", "personal names"},        {"10", "corporate names"},       {"11", "meeting names"},
        {"30", "uniform titles"},        {"47", "named events"},          {"48", "chronological terms"},
        {"50", "topical terms"},         {"51", "geographic names"},      {"53", "uncontrolled terms"},
        {"54", "faceted topical terms"}, {"55", "genre and form terms"},  {"56", "occupation terms"},
        {"57", "function terms"},        {"58", "curriculum objectives"}, {"62", "hierarchical place names"}};
    return kinds;
}

const QList<Vocabulary>& Vocabularies() {
    static const QList<Vocabulary> vocabularies{{"0", "Library of Congress Subject Headings"},
                                                {"1", "Library of Congress Children's Subject Headings"},
                                                {"2", "Medical Subject Headings"},
                                                {"3", "National Agricultural Library subject headings"},
                                                {"4", "source not specified"},
                                                {"5", "Canadian Subject Headings"},
                                                {"6", "Répertoire de vedettes-matière"},
                                                {NamedInSubfield, "source named in $2"}};
    return vocabularies;
}

bool IsKind(const QString& text) {
    return text == Any ||
           std::any_of(Kinds().begin(), Kinds().end(), [&](const Kind& kind) { return kind.code == text; });
}

bool IsVocabulary(const QString& text) {
    return text == Any ||
           std::any_of(Vocabularies().begin(), Vocabularies().end(),
                       [&](const Vocabulary& vocabulary) { return vocabulary.indicator == text; });
}

bool IsSource(const QString& text) {
    static const QRegularExpression pattern("^[a-z0-9/-]*$");
    return pattern.match(text).hasMatch();
}

bool IsInOrder(const LeftOut& entry) {
    const bool isAll = entry.kind == Any && entry.vocabulary == Any;
    return !isAll && (entry.source.isEmpty() || entry.vocabulary == NamedInSubfield);
}

bool Covers(const LeftOut& entry, const LeftOut& other) {
    return (entry.kind == Any || entry.kind == other.kind) &&
           (entry.vocabulary == Any || entry.vocabulary == other.vocabulary) &&
           (entry.source.isEmpty() || entry.source == other.source);
}

} // namespace sysadmin::wire::headings
