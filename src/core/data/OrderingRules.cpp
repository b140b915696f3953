#include "core/data/OrderingRules.h"

#include "core/data/RequestChannel.h"
#include "wire/FieldOrder.h"

namespace sysadmin {

namespace fieldorder = wire::fieldorder;

bool OrderingRule::IsSpecificField() const {
    return parameterLabel == fieldorder::SpecificField;
}

bool OrderingRule::IsIndicator1() const {
    return parameterLabel == fieldorder::SpecificIndicator1;
}

bool OrderingRule::IsIndicator2() const {
    return parameterLabel == fieldorder::SpecificIndicator2;
}

void OrderingRules::Load(RequestChannel& channel) {
    m_rules.clear();
    if (channel.SendRequest("LstMarcFieldOrderRules") != 0)
        return;
    while (channel.NextRecord("ORDRULE"))
        m_rules.append({.id = channel.GetField("ORDRULE").toInt(),
                        .name = channel.GetField("ORDNAME"),
                        .repeatable = channel.GetFlag("ORDREP"),
                        .takesParameter = channel.GetFlag("ORDPARM"),
                        .parameterLabel = channel.GetField("ORDLABL"),
                        .parameterType = channel.GetField("ORDTYPE")});
}

const OrderingRule* OrderingRules::Find(int id) const {
    for (const OrderingRule& rule : m_rules)
        if (rule.id == id)
            return &rule;
    return nullptr;
}

} // namespace sysadmin
