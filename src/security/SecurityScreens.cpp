#include "security/SecurityScreens.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "security/ProfileScreen.h"
#include "security/frmSecurity_OperatorProfiles.h"
#include "security/frmSecurity_SecurityOptions.h"
#include "security/frmSecurity_WhoMay.h"
#include "security/frmTools_CompareConfigurations.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

void ContributeProfile(ScreenCatalogue& catalogue, const QString& key, int helpContext,
                       ProfileSpec (*spec)()) {
    catalogue.Contribute(
        key, ScreenMaker{helpContext, false, [spec](Application& application, QWidget* parent) -> Screen* {
                             return new ProfileScreen(application, spec(), parent);
                         }});
}

qint16 CheckProfiles(Application& application, QList<HealthFinding>& found) {
    RightsHeld rights;
    const qint16 result = rights.Read(application.channel, application.catalogue);
    if (result != wire::status::Ok)
        return result;
    const auto add = [&](const QString& place, const QString& text, const QString& word, const QString& key) {
        found.append({word + ' ' + key, place, text, [&application, word, key, place](QWidget*) {
                          if (application.mainWindow)
                              application.mainWindow->GoToRecord(word, key, place);
                      }});
    };
    QSet<QString> members;
    for (const RightsProfile& profile : rights.Profiles()) {
        members.unite(profile.operators);
        if (profile.operators.isEmpty())
            add(profile.module + ": " + profile.name, frmSecurity_WhoMay::tr("No operator has the profile."),
                profile.word, profile.id);
    }
    for (const PickItem& person : rights.Operators())
        if (!members.contains(person.id))
            add(QString("%1 (%2)").arg(person.text, person.id),
                frmSecurity_WhoMay::tr("The operator has no profile, and so no right in any module."), "Opr",
                person.id);
    return result;
}

} // namespace

QList<HealthCheck> SecurityChecks() {
    return {{"profiles", frmSecurity_WhoMay::tr("Operators and Profiles"), Area::Security, CheckProfiles}};
}

void AddSecurityScreens(ScreenCatalogue& catalogue) {
    ContributeProfile(catalogue, "Security_AcqSerialsProfile", 50700, AcqSerialsProfileSpec);
    ContributeProfile(catalogue, "Security_CatalogingProfile", 50710, CatalogingProfileSpec);
    ContributeProfile(catalogue, "Security_CirculationProfile", 50720, CirculationProfileSpec);
    ContributeProfile(catalogue, "Security_MasterProfile", 50730, MasterProfileSpec);
    ContributeProfile(catalogue, "Security_ReportingProfiles", 50740, ReportingProfileSpec);
    ContributeProfile(catalogue, "Security_GlobalDataChangeProfiles", 50750, GlobalDataChangeProfileSpec);
    catalogue.Contribute<frmSecurity_OperatorProfiles>("Security_OperatorProfile", 50760);
    catalogue.Contribute<frmSecurity_SecurityOptions>("Security_Options", 50770);
    catalogue.Contribute<frmSecurity_WhoMay>("Tools_WhoMay", 50905);
    catalogue.Contribute<frmTools_CompareConfigurations>("Tools_CompareConfigurations", 50904);
}

} // namespace sysadmin
