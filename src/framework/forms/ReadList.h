#pragma once

#include "core/data/PickLists.h"

#include <functional>

namespace sysadmin {

class RequestChannel;

/// How a list reply that is not the last one (status 55) is taken.
enum class ListForm {
    Strict,     ///< it is reported like any failure and its records are not read; only the last reply counts
    Continuing, ///< its records are read; they stay even when a later reply fails
};

/// A list to ask for.
struct ListQuery {
    QString request;
    ListForm form = ListForm::Strict;
    std::function<void(RequestChannel&)> putKey{}; ///< puts what every sending needs; may be empty
    std::function<void(qint16 status)> report{};   ///< is told of every failure
    /// Reads what stands in front of the records of a reply that counts.
    std::function<void(RequestChannel&)> readHead{};
};

/// The records of a list reply that begin with a tag, and what is done at each.
struct ListStep {
    QString recordTag;
    std::function<void(RequestChannel&)> read;
};

/// Reads the records that begin with `idTag` as entries of a choice.
ListStep CollectItems(QList<PickItem>& items, const QString& idTag, const QString& textTag);

/// Sends the request until a reply is the last one and takes the steps through each reply that counts, one
/// step after the other. The status of the last reply; nothing of a strict list was read unless it is 0.
qint16 ReadList(RequestChannel& channel, const ListQuery& query, const QList<ListStep>& steps);

} // namespace sysadmin
