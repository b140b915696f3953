#pragma once

#include <QList>
#include <QString>

/// What both ends know of field weights: how much the words of a field count for the relevance of a result.
namespace sysadmin::wire::weights {

inline constexpr int MostWeight = 100;
/// Of words in fields that have no weight of their own.
inline constexpr int UsualWeight = 1;

/// The field whose words a keyword index takes.
struct WordField {
    QString field;     ///< three digits, "X" for any at the end, "*" for all
    QString include{}; ///< subfields; empty: all
    QString exclude{};
};

/// A place whose words have a weight: a field pattern and subfields (empty: all).
struct Place {
    QString field;
    QString subfields{};
};

/// Whether some words that the index takes from the field stand in the place.
bool Takes(const WordField& word, const Place& place);
/// Whether all words that the index takes from the field stand in one of the places.
bool Cover(const QList<Place>& places, const WordField& word);

} // namespace sysadmin::wire::weights
