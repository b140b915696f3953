#include "framework/forms/PutList.h"

#include "core/data/RequestChannel.h"
#include "core/data/YesNo.h"

namespace sysadmin {

namespace {

void PutMoves(RequestChannel& channel, const PutStep& step, const QList<GridRow>& rows,
              const QString& state) {
    for (const GridRow& row : rows) {
        channel.PutField(step.tag, row.key);
        channel.PutField(step.stateTag, state);
    }
}

PutStep MovesOf(PutStep::Kind kind, const PickedLists& lists, const QString& idTag, const QString& stateTag) {
    PutStep step(kind, idTag);
    step.lists = &lists;
    step.stateTag = stateTag;
    return step;
}

} // namespace

void PutStep::operator()(RequestChannel& channel, const SaveContext& context) const {
    if (when != When::Always && context.isNew != (when == When::Add))
        return;
    switch (kind) {
    case Kind::Value:
        field->Put(channel);
        break;
    case Kind::Constant:
        channel.PutField(tag, value);
        break;
    case Kind::Changed:
        channel.PutField(tag, BoolToYN(field->IsChanged()));
        break;
    case Kind::OriginalKey:
        channel.PutField(tag, context.originalKey);
        break;
    case Kind::WhenOn:
        field->Put(channel);
        if (static_cast<const FlagField*>(field)->IsOn())
            dependent->Put(channel);
        break;
    case Kind::Removals:
        PutMoves(channel, *this, lists->Removed(), "3");
        break;
    case Kind::Additions:
        PutMoves(channel, *this, lists->Added(), "1");
        break;
    case Kind::Own:
        own(channel, context);
        break;
    }
}

QString PutStep::Tag() const {
    return kind == Kind::Value || kind == Kind::WhenOn ? field->Tag() : tag;
}

PutStep PutValue(const Field& field) {
    return {PutStep::Kind::Value, {}, &field};
}

PutStep PutConstant(const QString& tag, const QString& value) {
    PutStep step(PutStep::Kind::Constant, tag);
    step.value = value;
    return step;
}

PutStep PutChanged(const QString& tag, const Field& field) {
    return {PutStep::Kind::Changed, tag, &field};
}

PutStep PutOriginalKey(const QString& tag) {
    return {PutStep::Kind::OriginalKey, tag};
}

PutStep PutWhenOn(const FlagField& flag, const Field& value) {
    PutStep step(PutStep::Kind::WhenOn, {}, &flag);
    step.dependent = &value;
    return step;
}

PutStep PutRemovals(const PickedLists& lists, const QString& idTag, const QString& stateTag) {
    return MovesOf(PutStep::Kind::Removals, lists, idTag, stateTag);
}

PutStep PutAdditions(const PickedLists& lists, const QString& idTag, const QString& stateTag) {
    return MovesOf(PutStep::Kind::Additions, lists, idTag, stateTag);
}

PutStep OnUpdate(PutStep step) {
    step.when = PutStep::When::Update;
    return step;
}

PutStep OnAdd(PutStep step) {
    step.when = PutStep::When::Add;
    return step;
}

} // namespace sysadmin
