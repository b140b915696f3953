#include "search/FieldWeightWords.h"

#include "core/data/RequestChannel.h"
#include "core/data/Tr.h"
#include "framework/forms/ReadList.h"
#include "search/IndexSentences.h"

#include <algorithm>

namespace sysadmin {

namespace weights = wire::weights;

namespace {

const QString AllFields = "*";

} // namespace

qint16 ReadWeightedIndexes(RequestChannel& channel, QHash<QString, WeightedIndex>& indexes,
                           const std::function<void(qint16)>& report) {
    QString code;
    const auto readAll = [&](RequestChannel& reply) {
        for (const wire::Field& field : reply.ReplyFields()) {
            if (field.tag == u"WC")
                code = field.value;
            WeightedIndex& index = indexes[code];
            if (field.tag == u"WN")
                index.name = field.value;
            else if (field.tag == u"KF")
                index.fields.append({field.value});
            else if (field.tag == u"KSI")
                index.fields.last().include = field.value;
            else if (field.tag == u"KSE")
                index.fields.last().exclude = field.value;
            else if (field.tag == u"WF")
                index.weights.append({QString::number(index.weights.size()), {field.value, {}, {}}, {}});
            else if (field.tag == u"WS")
                index.weights.last().cells[1] = field.value;
            else if (field.tag == u"W")
                index.weights.last().cells[2] = field.value;
        }
    };
    return ReadList(channel, {.request = "AvlFldWt", .report = report, .readHead = readAll}, {});
}

weights::Place PlaceOf(const GridRow& row) {
    return {row.cells.value(0), row.cells.value(1)};
}

QList<weights::Place> PlacesOf(const QList<GridRow>& rows) {
    QList<weights::Place> places;
    for (const GridRow& row : rows)
        places.append(PlaceOf(row));
    return places;
}

int WeightOf(const GridRow& row) {
    return row.cells.value(2).toInt();
}

QString InWords(const weights::Place& place) {
    if (place.field == AllFields && place.subfields.isEmpty())
        return Tr("all other fields");
    const QString field = FieldInWords(place.field);
    return place.subfields.isEmpty() ? field
                                     : Tr("%1 of %2").arg(SubfieldsInWords(place.subfields, {}), field);
}

bool Takes(const QList<weights::WordField>& fields, const weights::Place& place) {
    return std::any_of(fields.begin(), fields.end(),
                       [&](const weights::WordField& field) { return weights::Takes(field, place); });
}

QList<WeightShare> SharesOf(const QList<weights::WordField>& fields, const QList<GridRow>& rows) {
    QList<WeightShare> shares;
    for (const GridRow& row : rows)
        shares.append({.place = InWords(PlaceOf(row)),
                       .label = QString(PlaceOf(row).field + ' ' + PlaceOf(row).subfields).trimmed(),
                       .weight = WeightOf(row),
                       .isTaken = Takes(fields, PlaceOf(row))});
    const QList<weights::Place> places = PlacesOf(rows);
    const bool hasRest = std::any_of(fields.begin(), fields.end(), [&](const weights::WordField& field) {
        return !weights::Cover(places, field);
    });
    if (hasRest)
        shares.append({.place = Tr("fields without a weight"),
                       .label = Tr("without"),
                       .weight = weights::UsualWeight,
                       .isRest = true});
    int sum = 0;
    for (const WeightShare& share : shares)
        sum += share.isTaken ? share.weight : 0;
    for (WeightShare& share : shares)
        share.part = share.isTaken && sum > 0 ? qreal(share.weight) / sum : 0;
    return shares;
}

QString WeightsInWords(const QList<GridRow>& rows) {
    QStringList words;
    for (const GridRow& row : rows)
        words.append(QString("%1 %2").arg(InWords(PlaceOf(row))).arg(WeightOf(row)));
    return words.join(", ");
}

QStringList FindingsOf(const WeightedIndex& index) {
    if (index.weights.isEmpty())
        return {Tr("Nothing has a weight: words count the same wherever they stand.")};
    QStringList findings;
    for (const GridRow& row : index.weights)
        if (!Takes(index.fields, PlaceOf(row)))
            findings.append(
                Tr("The weight of %1 has no effect: the index does not take it.").arg(InWords(PlaceOf(row))));
    const QList<WeightShare> shares = SharesOf(index.fields, index.weights);
    const bool areSame = std::all_of(shares.begin(), shares.end(), [&](const WeightShare& share) {
        return !share.isTaken || share.weight == shares.first().weight;
    });
    if (findings.isEmpty() && areSame)
        findings.append(Tr("All weights are the same: words count the same wherever they stand."));
    return findings;
}

} // namespace sysadmin
