#include "requests/RequestsScreens.h"

#include "core/ScreenCatalogue.h"
#include "framework/PlainScreens.h"
#include "requests/CallSlipScreens.h"
#include "requests/frmOPAC_CircPolicies.h"
#include "requests/frmOPAC_HoldGroup.h"
#include "requests/frmOPAC_MessageRequests.h"
#include "requests/frmOPAC_RequestForms.h"
#include "requests/frmWS_SelfRegistration.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("WebServices", text);
}

/// Which web services patrons may use to change their PIN and SMS number.
PlainRecord Configuration() {
    return {{"WS_Configuration", 50902, tr("Web Service Configuration"), Area::System},
            {.subject = tr("Web Service Configuration"),
             .word = "ZebConfig",
             .frameNoun = tr("Web Service Configuration"),
             .loadFailure = tr("Unable to load web service configuration."),
             .saveFailure = tr("Unable to save web service configuration.")},
            {Declare<FlagField>(
                 {.name = "chkChangeSMS", .tag = "US", .caption = tr("&Enable Change SMS Service")}),
             Declare<FlagField>(
                 {.name = "chkChangePIN", .tag = "UP", .caption = tr("Enable Change &PIN Service")}),
             Declare<TextField>({.name = "txtDefaultPIN",
                                 .tag = "DP",
                                 .caption = tr("&Default PIN:"),
                                 .maxLength = PinLength,
                                 .toolTip = tr("The PIN of patrons who have none of their own")})}};
}

/// An alert that patrons may get to see after logging in: its switch.
FieldDeclaration AlertSwitch(const QString& role, const QString& tag, const QString& caption) {
    return Declare<FlagField>({.name = "chk" + role, .tag = tag, .caption = caption});
}

/// The alert's text. The markers in it (two backslashes and a letter) belong to the web service; nothing here
/// reads or changes them.
FieldDeclaration AlertText(const QString& role, const QString& tag, const QString& initial,
                           const QString& accessible) {
    return Declare<TextField>({.name = "txt" + role,
                               .tag = tag,
                               .maxLength = AlertLength,
                               .initial = initial,
                               .accessible = accessible,
                               .enabledBy = "chk" + role});
}

/// The alerts that a patron gets to see after logging in.
PlainRecord LoginSummary() {
    return {
        {"WS_LoginSummary", 50900, tr("Patron Login Summary"), Area::System},
        {.subject = tr("Patron Login Summary"),
         .word = "WSLoginSum",
         .frameNoun = tr("Patron Login Summary"),
         .loadFailure = tr("Unable to load login summary configuration."),
         .saveFailure = tr("Unable to save login summary configuration."),
         .putOrder = {"LSE", "OA", "FA", "BA", "EA", "ED"}},
        {Declare<FlagField>({.name = "chkWebService", .tag = "LSE", .caption = tr("Enable &Web Service?")}),
         AlertSwitch("Overdue", "OA", tr("Patron has &overdue items")),
         AlertText("Overdue", "OAT", tr("You have overdue materials at \\\\l."), tr("Overdue alert text")),
         AlertSwitch("Fines", "FA", tr("Patron owes &fines/fees")),
         AlertText("Fines", "FAT", tr("You have outstanding fines/fees at \\\\l."),
                   tr("Fines/fees alert text")),
         AlertSwitch("Blocks", "BA", tr("Patron has &blocks")),
         AlertText("Blocks", "BAT", tr("You have circulation blocks at \\\\l."), tr("Blocks alert text")),
         AlertSwitch("Expire", "EA", tr("Patron access will &expire")),
         AlertText("Expire", "EAT", tr("Your account will expire on \\\\d, \\\\n days from today."),
                   tr("Expiration alert text")),
         Declare<NumberField>({.name = "txtExpirationDays",
                               .tag = "ED",
                               .caption = tr("Expiration Alert &Days:"),
                               .initial = "30",
                               .enabledBy = "chkExpire",
                               .most = 9999})},
        Below({"chkWebService",
               Frame("fraAlerts", tr("Alerts"),
                     {Beside({"chkOverdue", "txtOverdue"}), Beside({"chkFines", "txtFines"}),
                      Beside({"chkBlocks", "txtBlocks"}), Beside({"chkExpire", "txtExpire"}),
                      Beside({Note({}), "txtExpirationDays"}),
                      Note(tr("In the alert texts \\\\l stands for the location, \\\\d for the expiration "
                              "date and \\\\n for the number of days until then."))})})};
}

/// The public catalogue's remaining switches.
PlainRecord CatalogueMiscellaneous() {
    return {{"OPAC_Misc", 50202, tr("OPAC Miscellaneous"), Area::System},
            {.subject = tr("OPAC Miscellaneous"),
             .word = "OMsc",
             .plural = "OPAC Misc",
             .frameNoun = tr("OPAC Miscellaneous"),
             .saveCaption = "Load OPAC Misc"},
            {Declare<FlagField>(
                 {.name = "chkItemRequired", .tag = "I", .caption = tr("Call Slip Item Required")}),
             Declare<LetterField>({.name = "optItemSort",
                                   .tag = "S",
                                   .caption = tr("OPAC Item sort:"),
                                   .initial = "A",
                                   .options = {{"A", tr("Ascending")}, {"D", tr("Descending")}}}),
             Declare<FlagField>(
                 {.name = "chkOnShelfHolds", .tag = "H", .caption = tr("Allow On-shelf OPAC Holds")}),
             Declare<NumberField>({.name = "txtBookingDays",
                                   .tag = "A",
                                   .caption = tr("Set short loan advance booking days displayed:"),
                                   .unit = tr("days"),
                                   .most = 9999}),
             Declare<NumberField>({.name = "txtStatusDays",
                                   .tag = "SCR",
                                   .caption = tr("Show no-fill statuses and copies received for:"),
                                   .unit = tr("days"),
                                   .most = 9999}),
             Declare<FlagField>({.name = "chkCitationCallSlips",
                                 .tag = "ALLOWCSLPCITDB",
                                 .caption = tr("Allow CallSlip requests when searching Citation "
                                               "Databases")})}};
}

} // namespace

void AddRequestsScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmOPAC_MessageRequests>("OPAC_MessageRequests", 50200);
    catalogue.Contribute<frmOPAC_HoldGroup>("OPAC_SortGroups", 50201);
    catalogue.Contribute(CatalogueMiscellaneous());
    catalogue.Contribute<frmOPAC_CircPolicies>("OPAC_CircPolicies", 50203);
    catalogue.Contribute<frmOPAC_RequestForms>("OPAC_RequestForms", 50204);
    AddCallSlipScreens(catalogue);
    catalogue.Contribute(LoginSummary());
    catalogue.Contribute<frmWS_SelfRegistration>("WS_SelfRegistration", 50901, true);
    catalogue.Contribute(Configuration());
}

} // namespace sysadmin
