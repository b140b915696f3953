#include "requests/CallSlipScreens.h"

#include "core/ScreenCatalogue.h"
#include "core/data/RequestChannel.h"
#include "framework/forms/ValueFields.h"
#include "requests/frmCallSlip_Definitions.h"
#include "requests/frmCallSlip_NoFillReasons.h"
#include "requests/frmCallSlip_Rules.h"

namespace sysadmin {

PutStep PutNewText(const QString& tag, const ValueField& field) {
    return OnUpdate(
        {[&field, tag](RequestChannel& channel, const SaveContext&) { channel.PutField(tag, field.Draft()); },
         tag});
}

void AddCallSlipScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmCallSlip_Definitions>("CallSlip_Definitions", 50400);
    catalogue.Contribute<frmCallSlip_Rules>("CallSlip_Rules", 50402);
    catalogue.Contribute<frmCallSlip_NoFillReasons>("CallSlip_NoFillReasons", 50401);
}

} // namespace sysadmin
