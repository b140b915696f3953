#include "framework/forms/PutList.h"

#include "core/data/RequestChannel.h"
#include "core/data/YesNo.h"

namespace sysadmin {

namespace {

PutStep PutMoves(const QList<GridRow> (*moved)(const PickedLists&), const PickedLists& lists,
                 const QString& idTag, const QString& stateTag, const QString& state) {
    return [=, &lists](RequestChannel& channel, const SaveContext&) {
        for (const GridRow& row : moved(lists)) {
            channel.PutField(idTag, row.key);
            channel.PutField(stateTag, state);
        }
    };
}

} // namespace

PutStep PutValue(const Field& field) {
    return [&field](RequestChannel& channel, const SaveContext&) { field.Put(channel); };
}

PutStep PutConstant(const QString& tag, const QString& value) {
    return [=](RequestChannel& channel, const SaveContext&) { channel.PutField(tag, value); };
}

PutStep PutChanged(const QString& tag, const Field& field) {
    return [tag, &field](RequestChannel& channel, const SaveContext&) {
        channel.PutField(tag, BoolToYN(field.IsChanged()));
    };
}

PutStep PutOriginalKey(const QString& tag) {
    return [tag](RequestChannel& channel, const SaveContext& context) {
        channel.PutField(tag, context.originalKey);
    };
}

PutStep PutWhenOn(const FlagField& flag, const Field& value) {
    return [&](RequestChannel& channel, const SaveContext&) {
        flag.Put(channel);
        if (flag.IsOn())
            value.Put(channel);
    };
}

PutStep PutRemovals(const PickedLists& lists, const QString& idTag, const QString& stateTag) {
    return PutMoves([](const PickedLists& all) -> const QList<GridRow> { return all.Removed(); }, lists,
                    idTag, stateTag, "3");
}

PutStep PutAdditions(const PickedLists& lists, const QString& idTag, const QString& stateTag) {
    return PutMoves([](const PickedLists& all) -> const QList<GridRow> { return all.Added(); }, lists, idTag,
                    stateTag, "1");
}

PutStep OnUpdate(PutStep step) {
    return [step = std::move(step)](RequestChannel& channel, const SaveContext& context) {
        if (!context.isNew)
            step(channel, context);
    };
}

PutStep OnAdd(PutStep step) {
    return [step = std::move(step)](RequestChannel& channel, const SaveContext& context) {
        if (context.isNew)
            step(channel, context);
    };
}

} // namespace sysadmin
