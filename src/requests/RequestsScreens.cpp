#include "requests/RequestsScreens.h"

#include "core/ScreenCatalogue.h"
#include "core/data/Tr.h"
#include "framework/PlainScreens.h"
#include "requests/CallSlipScreens.h"
#include "requests/frmOPAC_CircPolicies.h"
#include "requests/frmOPAC_HoldGroup.h"
#include "requests/frmOPAC_MessageRequests.h"
#include "requests/frmOPAC_RequestForms.h"
#include "requests/frmWS_SelfRegistration.h"

namespace sysadmin {

namespace {

/// Which web services patrons may use to change their PIN and SMS number.
PlainRecord Configuration() {
    return {{"WS_Configuration", 50902, Tr("Web Service Configuration"), Area::System},
            {.subject = Tr("Web Service Configuration"),
             .word = "ZebConfig",
             .frameNoun = Tr("Web Service Configuration"),
             .loadFailure = Tr("Unable to load web service configuration."),
             .saveFailure = Tr("Unable to save web service configuration.")},
            {Declare<FlagField>(
                 {.name = "chkChangeSMS", .tag = "US", .caption = Tr("&Enable Change SMS Service")}),
             Declare<FlagField>(
                 {.name = "chkChangePIN", .tag = "UP", .caption = Tr("Enable Change &PIN Service")}),
             Declare<TextField>({.name = "txtDefaultPIN",
                                 .tag = "DP",
                                 .caption = Tr("&Default PIN:"),
                                 .maxLength = PinLength,
                                 .toolTip = Tr("The PIN of patrons who have none of their own")})}};
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
        {"WS_LoginSummary", 50900, Tr("Patron Login Summary"), Area::System},
        {.subject = Tr("Patron Login Summary"),
         .word = "WSLoginSum",
         .frameNoun = Tr("Patron Login Summary"),
         .loadFailure = Tr("Unable to load login summary configuration."),
         .saveFailure = Tr("Unable to save login summary configuration."),
         .putOrder = {"LSE", "OA", "FA", "BA", "EA", "ED"}},
        {Declare<FlagField>({.name = "chkWebService", .tag = "LSE", .caption = Tr("Enable &Web Service?")}),
         AlertSwitch("Overdue", "OA", Tr("Patron has &overdue items")),
         AlertText("Overdue", "OAT", Tr("You have overdue materials at \\\\l."), Tr("Overdue alert text")),
         AlertSwitch("Fines", "FA", Tr("Patron owes &fines/fees")),
         AlertText("Fines", "FAT", Tr("You have outstanding fines/fees at \\\\l."),
                   Tr("Fines/fees alert text")),
         AlertSwitch("Blocks", "BA", Tr("Patron has &blocks")),
         AlertText("Blocks", "BAT", Tr("You have circulation blocks at \\\\l."), Tr("Blocks alert text")),
         AlertSwitch("Expire", "EA", Tr("Patron access will &expire")),
         AlertText("Expire", "EAT", Tr("Your account will expire on \\\\d, \\\\n days from today."),
                   Tr("Expiration alert text")),
         Declare<NumberField>({.name = "txtExpirationDays",
                               .tag = "ED",
                               .caption = Tr("Expiration Alert &Days:"),
                               .initial = "30",
                               .enabledBy = "chkExpire",
                               .most = 9999})},
        Below({"chkWebService",
               Frame("fraAlerts", Tr("Alerts"),
                     {Beside({"chkOverdue", "txtOverdue"}), Beside({"chkFines", "txtFines"}),
                      Beside({"chkBlocks", "txtBlocks"}), Beside({"chkExpire", "txtExpire"}),
                      Beside({Note({}), "txtExpirationDays"}),
                      Note(Tr("In the alert texts \\\\l stands for the location, \\\\d for the expiration "
                              "date and \\\\n for the number of days until then."))})})};
}

/// The public catalogue's remaining switches.
PlainRecord CatalogueMiscellaneous() {
    return {{"OPAC_Misc", 50202, Tr("OPAC Miscellaneous"), Area::System},
            {.subject = Tr("OPAC Miscellaneous"),
             .word = "OMsc",
             .plural = "OPAC Misc",
             .frameNoun = Tr("OPAC Miscellaneous"),
             .saveCaption = "Load OPAC Misc"},
            {Declare<FlagField>(
                 {.name = "chkItemRequired", .tag = "I", .caption = Tr("Call Slip Item Required")}),
             Declare<LetterField>({.name = "optItemSort",
                                   .tag = "S",
                                   .caption = Tr("OPAC Item sort:"),
                                   .initial = "A",
                                   .options = {{"A", Tr("Ascending")}, {"D", Tr("Descending")}}}),
             Declare<FlagField>(
                 {.name = "chkOnShelfHolds", .tag = "H", .caption = Tr("Allow On-shelf OPAC Holds")}),
             Declare<NumberField>({.name = "txtBookingDays",
                                   .tag = "A",
                                   .caption = Tr("Set short loan advance booking days displayed:"),
                                   .unit = Tr("days"),
                                   .most = 9999}),
             Declare<NumberField>({.name = "txtStatusDays",
                                   .tag = "SCR",
                                   .caption = Tr("Show no-fill statuses and copies received for:"),
                                   .unit = Tr("days"),
                                   .most = 9999}),
             Declare<FlagField>({.name = "chkCitationCallSlips",
                                 .tag = "ALLOWCSLPCITDB",
                                 .caption = Tr("Allow CallSlip requests when searching Citation "
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
