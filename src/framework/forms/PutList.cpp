#include "framework/forms/PutList.h"

#include "core/data/RequestChannel.h"
#include "core/data/YesNo.h"

namespace sysadmin {

void PutStep::operator()(RequestChannel& channel, const SaveContext& context) const {
    if (when == When::Update && context.isNew)
        return;
    switch (kind) {
    case Kind::Value:
        field->Put(channel);
        break;
    case Kind::Draft:
        channel.PutField(tag, static_cast<const ValueField*>(field)->Draft());
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

PutStep PutDraft(const QString& tag, const ValueField& field) {
    return {PutStep::Kind::Draft, tag, &field};
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

PutStep OnUpdate(PutStep step) {
    step.when = PutStep::When::Update;
    return step;
}

} // namespace sysadmin
