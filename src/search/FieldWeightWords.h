#pragma once

#include "framework/forms/GridRow.h"
#include "wire/FieldWeights.h"

#include <QHash>

#include <functional>

namespace sysadmin {

class RequestChannel;

/// Weights travel under these tags, place by place: field, subfields, weight.
inline const QStringList WeightTags{"WF", "WS", "W"};

/// A keyword index as far as weights go.
struct WeightedIndex {
    QString name{};
    QList<wire::weights::WordField> fields{}; ///< whose words it takes
    QList<GridRow> weights{};                 ///< as they are stored
};

/// Reads all keyword indexes with their weights, by code. The status; `report` is told of a failure.
qint16 ReadWeightedIndexes(RequestChannel& channel, QHash<QString, WeightedIndex>& indexes,
                           const std::function<void(qint16)>& report = {});

/// What part of the weights a place has.
struct WeightShare {
    QString place;   ///< in words
    QString label{}; ///< the same in short
    int weight = 0;
    qreal part = 0;      ///< 0 to 1
    bool isTaken = true; ///< else the index has no words of it
    bool isRest = false; ///< the fields without a weight of their own, or several places together
    bool operator==(const WeightShare&) const = default;
};

wire::weights::Place PlaceOf(const GridRow& row);
QList<wire::weights::Place> PlacesOf(const QList<GridRow>& rows);
int WeightOf(const GridRow& row);
/// "subfields a and b of field 245"; the pattern for all fields stands for all other ones.
QString InWords(const wire::weights::Place& place);
/// Whether the index takes words from the place.
bool Takes(const QList<wire::weights::WordField>& fields, const wire::weights::Place& place);
/// The shares of the places, and of the fields without a weight where there are any.
QList<WeightShare> SharesOf(const QList<wire::weights::WordField>& fields, const QList<GridRow>& rows);
/// "field 245 10, all other fields 1": what the definition of the index says of it.
QString WeightsInWords(const QList<GridRow>& rows);
/// What is wrong with the stored weights of an index, in sentences.
QStringList FindingsOf(const WeightedIndex& index);

} // namespace sysadmin
