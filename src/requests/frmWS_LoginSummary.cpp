#include "requests/frmWS_LoginSummary.h"

namespace sysadmin {

frmWS_LoginSummary::frmWS_LoginSummary(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmWS_LoginSummary", tr("Patron Login Summary"), Area::System,
                         parent) {
    LoginSummaryForm& form = m_form;
    form.txtOverdue.EnableBy(form.chkOverdue);
    form.txtFines.EnableBy(form.chkFines);
    form.txtBlocks.EnableBy(form.chkBlocks);
    form.txtExpire.EnableBy(form.chkExpire);
    form.txtExpirationDays.EnableBy(form.chkExpire);
    Build(
        {.subject = tr("Patron Login Summary"),
         .notice = "WSLoginSum",
         .frameNoun = tr("Patron Login Summary"),
         .getRequest = "GetWSLoginSum",
         .updateRequest = "UpdWSLoginSum",
         .loadFailure = tr("Unable to load login summary configuration."),
         .saveFailure = tr("Unable to save login summary configuration.")},
        form,
        Column(
            {form.chkWebService,
             Frame("fraAlerts", tr("Alerts"),
                   {Row({form.chkOverdue, form.txtOverdue}), Row({form.chkFines, form.txtFines}),
                    Row({form.chkBlocks, form.txtBlocks}), Row({form.chkExpire, form.txtExpire}),
                    Row({Note({}), form.txtExpirationDays}),
                    Note(tr("In the alert texts \\\\l stands for the location, \\\\d for the expiration date "
                            "and \\\\n for the number of days until then."))})}),
        {PutValue(form.chkWebService), PutValue(form.chkOverdue), PutValue(form.chkFines),
         PutValue(form.chkBlocks), PutValue(form.chkExpire), PutValue(form.txtExpirationDays),
         PutValue(form.txtOverdue), PutValue(form.txtFines), PutValue(form.txtBlocks),
         PutValue(form.txtExpire)});
}

} // namespace sysadmin
