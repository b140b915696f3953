#include "core/data/SecurityProfile.h"

#include "core/data/RequestChannel.h"

namespace sysadmin {

void SecurityProfile::Load(RequestChannel& channel, const QString& operatorId) {
    *this = {};
    const auto readRights = [&](Area area, const QString& tag, const QString& viewTag) {
        m_rights[int(area)] = {channel.GetFlag(tag), channel.GetFlag(viewTag)};
    };

    channel.PutField("OI", operatorId);
    if (channel.SendRequest("SAInit") == 0) {
        readRights(Area::Acquisitions, "ASPG", "ASPGV");
        readRights(Area::Cataloging, "CatPG", "CatPGV");
        readRights(Area::Circulation, "CrcPG", "CrcPGV");
        readRights(Area::CirculationConversion, "CrCnv", "CrCnvV");
        readRights(Area::Security, "Sec", "SecV");
        m_changePassword = channel.GetFlag("ChgPwd");
        readRights(Area::System, "SysDf", "SysDfV");
        m_moneyDecimals = channel.GetField("Dec").toInt();
        m_mainWindowFlag = channel.GetFlag("PRB");
    } else {
        m_loadFailed = true;
    }

    // Asked even after a failure; its success never makes up for one.
    channel.PutField("OI", operatorId);
    if (channel.SendRequest("CheckMasterProfile") == 0)
        readRights(Area::PatronGroups, "EditPatGrp", "PatGrpV");
    else
        m_loadFailed = true;
}

} // namespace sysadmin
