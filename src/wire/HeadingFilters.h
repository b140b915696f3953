#pragma once

#include <QList>
#include <QString>

/// What both ends know of heading filters: which headings a browse index leaves out.
namespace sysadmin::wire::headings {

inline constexpr int SourceLength = 20;
/// Of a kind or a vocabulary.
inline const QString Any = "*";
/// The vocabulary that subfield $2 names.
inline const QString NamedInSubfield = "7";

/// A kind of heading: the last two digits of the fields that hold it (00: 100, 600, 700, 800).
struct Kind {
    QString code;
    const char* plural;
};
const QList<Kind>& Kinds();

/// Where a subject heading comes from, as the second indicator says.
struct Vocabulary {
    QString indicator;
    const char* name;
};
const QList<Vocabulary>& Vocabularies();

/// An entry of a filter: these headings are left out.
struct LeftOut {
    QString kind = Any;
    QString vocabulary = Any;
    QString source{}; ///< a code of $2, where that names the vocabulary; empty: whatever it names
};

/// A kind's or vocabulary's code, or "any".
bool IsKind(const QString& text);
bool IsVocabulary(const QString& text);
/// Lower-case letters, digits, hyphens and slashes; empty for none.
bool IsSource(const QString& text);
/// Whether the entry says something: not all headings at once, and a source only where $2 names it.
bool IsInOrder(const LeftOut& entry);
/// Whether the second entry leaves nothing out that the first one does not.
bool Covers(const LeftOut& entry, const LeftOut& other);

} // namespace sysadmin::wire::headings
