#pragma once

#include "wire/Area.h"

#include <QString>

namespace sysadmin {

class RequestChannel;

using wire::Area;

/// What the signed-on operator may do in this program. Read once after sign-on; whatever was not read is
/// denied.
class SecurityProfile {
public:
    /// Loads the rights of an operator. `LoadFailed` tells afterwards whether both requests succeeded.
    void Load(RequestChannel& channel, const QString& operatorId);

    bool LoadFailed() const { return m_loadFailed; }
    /// May change the area's settings.
    bool MayEdit(Area area) const { return m_rights[int(area)].edit; }
    /// May view them.
    bool MayView(Area area) const { return m_rights[int(area)].view; }
    /// Either of the two.
    bool HasAccess(Area area) const { return MayEdit(area) || MayView(area); }

    bool AcqAccess() const { return HasAccess(Area::Acquisitions); }
    bool AcqEdit() const { return MayEdit(Area::Acquisitions); }
    bool AcqView() const { return MayView(Area::Acquisitions); }
    bool CatAccess() const { return HasAccess(Area::Cataloging); }
    bool CatEdit() const { return MayEdit(Area::Cataloging); }
    bool CatView() const { return MayView(Area::Cataloging); }
    bool CircAccess() const { return HasAccess(Area::Circulation); }
    bool CircEdit() const { return MayEdit(Area::Circulation); }
    bool CircView() const { return MayView(Area::Circulation); }
    bool CircConvAccess() const { return HasAccess(Area::CirculationConversion); }
    bool CircConvEdit() const { return MayEdit(Area::CirculationConversion); }
    bool CircConvView() const { return MayView(Area::CirculationConversion); }
    bool MainWindowFlag() const { return m_mainWindowFlag; }
    bool PatronGroupAccess() const { return HasAccess(Area::PatronGroups); }
    bool PatronGroupEdit() const { return MayEdit(Area::PatronGroups); }
    bool PatronGroupView() const { return MayView(Area::PatronGroups); }
    bool SecurityAccess() const { return HasAccess(Area::Security); }
    bool ChangePassword() const { return m_changePassword; }
    bool SecurityEdit() const { return MayEdit(Area::Security); }
    bool SecurityView() const { return MayView(Area::Security); }
    bool SystemAccess() const { return HasAccess(Area::System); }
    bool SystemEdit() const { return MayEdit(Area::System); }
    bool SystemView() const { return MayView(Area::System); }

    /// How many decimal places money amounts have.
    int MoneyDecimals() const { return m_moneyDecimals; }
    /// Follows a change of the base currency.
    void SetMoneyDecimals(int decimals) { m_moneyDecimals = decimals; }

private:
    struct Rights {
        bool edit = false;
        bool view = false;
    };
    Rights m_rights[int(Area::System) + 1];
    bool m_loadFailed = false;
    bool m_changePassword = false;
    bool m_mainWindowFlag = false;
    int m_moneyDecimals = 2;
};

} // namespace sysadmin
