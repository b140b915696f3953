#include "system/clsAddressInfo.h"

namespace sysadmin {

int clsAddressInfo::UpdataPhoneData(int index, const QString& type, const QString& number) {
    if (index < 0 || index >= m_phones.size()) {
        m_phones.append({.sPhoneID = {},
                         .sAddressID = {},
                         .sType = type,
                         .sNumber = number,
                         .action = clsPhone::Action::New});
        return int(m_phones.size()) - 1;
    }
    clsPhone& phone = m_phones[index];
    phone.sType = type;
    phone.sNumber = number;
    phone.action = phone.sPhoneID.isEmpty() ? clsPhone::Action::New : clsPhone::Action::Changed;
    return index;
}

void clsAddressInfo::RemovePhoneData(int index) {
    if (index < 0 || index >= m_phones.size())
        return;
    if (m_phones[index].sPhoneID.isEmpty())
        m_phones.removeAt(index);
    else
        m_phones[index].action = clsPhone::Action::Removed;
}

} // namespace sysadmin
