#include "server/subjects/Ranks.h"

#include "server/store/Database.h"

#include <algorithm>
#include <iterator>

namespace sysadmin::server {

namespace {

/// The numbers that a request carries under a tag, in its order; none when one is no number.
std::optional<QList<qint64>> Numbers(const wire::Fields& request, const QString& tag) {
    QList<qint64> numbers;
    for (const wire::Field& field : request) {
        if (field.tag != tag)
            continue;
        bool isNumber = false;
        numbers << field.value.toLongLong(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    return numbers;
}

} // namespace

qint64 NextRank(Context& context, const Ranks& ranks) {
    return context.database.FirstValue("SELECT COUNT(*) FROM " + ranks.table).toLongLong() + 1;
}

void CloseGap(Context& context, const Ranks& ranks, const QVariant& rank) {
    context.database.Run(QString("UPDATE %1 SET %2=%2-1 WHERE %2>?").arg(ranks.table, ranks.column), {rank});
}

Answer StoreOrder(Context& context, const Ranks& ranks, const wire::Fields& request) {
    const auto ids = Numbers(request, ranks.idTag);
    const auto places = Numbers(request, ranks.rankTag);
    if (!ids || !places || ids->size() != places->size())
        return {status::ColumnError};
    QList<qint64> ordered(ids->size(), 0); // the keys, first to last
    for (qsizetype i = 0; i < ids->size(); ++i) {
        const qint64 place = places->at(i);
        if (place < 1 || place > ids->size() || ordered[place - 1] != 0 || ids->at(i) == 0)
            return {status::ColumnError};
        ordered[place - 1] = ids->at(i);
    }
    if (QSet<qint64>(ordered.begin(), ordered.end()).size() != ordered.size())
        return {status::ColumnError};
    QHash<qint64, qint64> former; // the places, by key
    context.database.Each(
        QString("SELECT id, %1 FROM %2").arg(ranks.column, ranks.table), {},
        [&](const ResultRow& row) { former.insert(row.value(0).toLongLong(), row.value(1).toLongLong()); });
    // An order in which a record is missing, or one too many stands, is that of an older list.
    const bool isWhole =
        former.size() == ordered.size() &&
        std::all_of(ordered.begin(), ordered.end(), [&](qint64 id) { return former.contains(id); });
    if (!isWhole)
        return {status::RecordChanged};
    QList<qint64> before;
    for (const qint64 id : ordered)
        before << former[id];
    const QSet<qint64> moved = Moved(before);
    for (qsizetype i = 0; i < ordered.size(); ++i)
        if (moved.contains(before[i]))
            context.records.Update(ranks.table, ordered[i], {{ranks.column, i + 1}});
        else if (before[i] != i + 1)
            context.database.Run(QString("UPDATE %1 SET %2=? WHERE id=?").arg(ranks.table, ranks.column),
                                 {i + 1, ordered[i]});
    return {};
}

QSet<qint64> Moved(const QList<qint64>& numbers) {
    QList<qsizetype> ends; // by length: where the rising sequence with the least end stands
    QList<qsizetype> before(numbers.size(), -1);
    for (qsizetype i = 0; i < numbers.size(); ++i) {
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), numbers[i],
                             [&](qsizetype end, qint64 number) { return numbers[end] < number; });
        if (place != ends.begin())
            before[i] = *std::prev(place);
        if (place == ends.end())
            ends.append(i);
        else
            *place = i;
    }
    QSet<qint64> moved(numbers.begin(), numbers.end());
    for (qsizetype i = ends.isEmpty() ? -1 : ends.last(); i >= 0; i = before[i])
        moved.remove(numbers[i]);
    return moved;
}

} // namespace sysadmin::server
