#include "core/data/SecurityProfile.h"

#include "core/data/RequestChannel.h"

namespace sysadmin {

void SecurityProfile::Load(RequestChannel& channel, const QString& operatorId) {
    *this = {};
    // The rights over patron groups come with a request of their own.
    const auto readRights = [&](bool ofPatronGroups) {
        for (const wire::AreaRights& rights : wire::AreasWithRights())
            if ((rights.area == Area::PatronGroups) == ofPatronGroups)
                m_rights[int(rights.area)] = {channel.GetFlag(rights.edit), channel.GetFlag(rights.view)};
    };

    channel.PutField("OI", operatorId);
    if (channel.SendRequest("SAInit") == 0) {
        readRights(false);
        m_changePassword = channel.GetFlag("ChgPwd");
        m_moneyDecimals = channel.GetField("Dec").toInt();
        m_mainWindowFlag = channel.GetFlag("PRB");
    } else {
        m_loadFailed = true;
    }

    // Asked even after a failure; its success never makes up for one.
    channel.PutField("OI", operatorId);
    if (channel.SendRequest("CheckMasterProfile") == 0)
        readRights(true);
    else
        m_loadFailed = true;
}

} // namespace sysadmin
