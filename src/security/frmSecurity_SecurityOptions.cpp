#include "security/frmSecurity_SecurityOptions.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/CsvExport.h"
#include "framework/ListGrid.h"
#include "security/frmSecurity_PasswordExpiration.h"
#include "wire/Status.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace sysadmin {

namespace status = wire::status;

namespace {

constexpr const char* LogTags[] = {"LI", "ON", "AT", "LC", "LT", "WI"};

/// Begins the names of the labels beside the boxes that take a requirement into the group; the rest is what
/// the box's name says behind its prefix.
constexpr char IncludeLabel[] = "lblIncludeInGroup";

Layout DescribeLayout(SecurityOptionsForm& form) {
    const auto requirement = [](Field& count, Field& included) {
        return Beside({count, Beside({Slot(IncludeLabel + included.Name().mid(3)), included})});
    };
    const Layout composition =
        Frame("fraRequirements", form.tr("Character Requirements"),
              {Beside({form.optGroupReq, form.fpGroupReq}),
               requirement(form.fpMinAlphaChar, form.chkMinAlphaCharGrp),
               requirement(form.fpMinUpperChar, form.chkMinUpperCharGrp),
               requirement(form.fpMinLowerChar, form.chkMinLowerCharGrp),
               requirement(form.fpMinNumberChar, form.chkMinNumberCharGrp),
               requirement(form.fpMinSpecialChar, form.chkMinSpecialCharGrp), form.txtSpecialChar});
    return Tabs(
        "tabOptions",
        {Page(form.tr("&Password Requirements"),
              {Beside({Frame("fraLength", form.tr("Password Length"),
                             {form.fpMinPasswordLen, form.fpMaxPasswordLen}),
                       Frame("fraMayContain", form.tr("Password may contain:"),
                             {form.chkContainUserId, form.chkContainUserName})}),
               composition}),
         Page(form.tr("Password Requirements &2"),
              {form.fpPreviousCnt, form.fpMinPasswordAge, form.fpMaxPasswordAge, form.fpReminderDays,
               form.fpDisableDays, form.fpLoginAttempts, form.fpLockoutDuration, form.fpLockoutCounter,
               Note(form.txtPasswordDisplay.Spec().accessible), form.txtPasswordDisplay}),
         Page(form.tr("&Security Warning Text"),
              {Note(form.txtSecurityText.Spec().accessible), form.txtSecurityText}),
         Page(form.tr("&Invalid Login Attempts"),
              {form.chkLogingAtteptAuditTrail, form.vsfInvalidLogins, Slot("logButtons")})});
}

} // namespace

frmSecurity_SecurityOptions::frmSecurity_SecurityOptions(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSecurity_SecurityOptions", tr("Security Options"), Area::Security,
                         parent) {
    const PutStep putGroupRequirement = [this](RequestChannel& channel, const SaveContext&) {
        channel.PutField("PGR", m_form.GroupRequirement());
    };
    Build({.subject = windowTitle(),
           .notice = "SecOptions",
           .getRequest = "GetSecOptions",
           .updateRequest = "UpdSecOptions",
           .loadCaption = "Load Security Options",
           .saveCaption = "Save Security"},
          m_form, DescribeLayout(m_form),
          {PutValue(m_form.fpPreviousCnt),
           PutValue(m_form.fpMinPasswordAge),
           PutValue(m_form.fpMaxPasswordAge),
           PutValue(m_form.fpReminderDays),
           PutValue(m_form.fpMinPasswordLen),
           PutValue(m_form.fpMaxPasswordLen),
           PutValue(m_form.chkContainUserId),
           PutValue(m_form.chkContainUserName),
           PutValue(m_form.fpMinAlphaChar),
           PutValue(m_form.chkMinAlphaCharGrp),
           PutValue(m_form.fpMinUpperChar),
           PutValue(m_form.chkMinUpperCharGrp),
           PutValue(m_form.fpMinLowerChar),
           PutValue(m_form.chkMinLowerCharGrp),
           PutValue(m_form.fpMinNumberChar),
           PutValue(m_form.chkMinNumberCharGrp),
           PutValue(m_form.fpMinSpecialChar),
           PutValue(m_form.chkMinSpecialCharGrp),
           putGroupRequirement,
           PutValue(m_form.txtSpecialChar),
           PutValue(m_form.fpDisableDays),
           PutValue(m_form.fpLoginAttempts),
           PutValue(m_form.fpLockoutDuration),
           PutValue(m_form.fpLockoutCounter),
           PutValue(m_form.txtPasswordDisplay),
           PutValue(m_form.txtSecurityText),
           PutValue(m_form.chkLogingAtteptAuditTrail)},
          [this](const QString& name) { return MakeSlot(name); });
    findChild<QGroupBox*>("fraEdit")->setTitle(tr("Password Options"));

    auto* cmdPasswordExpiration = MakeButton("cmdPasswordExpiration", tr("Pass&word Expiration..."));
    AddButton(cmdPasswordExpiration);
    connect(cmdPasswordExpiration, &QPushButton::clicked, this, &frmSecurity_SecurityOptions::ShowExpiration);
    const auto followGroup = [this] {
        for (QLabel* label : m_includeLabels)
            label->setEnabled(IsReadOnly() || m_form.optGroupReq.Draft() == u"1");
    };
    connect(&m_form, &Form::Changed, this, followGroup);
    followGroup();
}

QWidget* frmSecurity_SecurityOptions::MakeSlot(const QString& name) {
    if (name.startsWith(IncludeLabel)) {
        auto* label = new QLabel(tr("Include in group"), this);
        label->setObjectName(name);
        m_includeLabels.append(label);
        return label;
    }
    auto* buttons = new QWidget(this);
    auto* line = new QHBoxLayout(buttons);
    line->setContentsMargins({});
    const auto add = [&](const QString& buttonName, const QString& caption,
                         void (frmSecurity_SecurityOptions::*act)()) {
        auto* button = MakeButton(buttonName, caption);
        line->addWidget(button);
        connect(button, &QPushButton::clicked, this, act);
        return button;
    };
    add("cmdRefresh", tr("&Refresh"), &frmSecurity_SecurityOptions::LoadLog);
    add("cmdClear", tr("Cl&ear"), &frmSecurity_SecurityOptions::ClearLog)->setEnabled(!IsReadOnly());
    add("cmdExport", tr("E&xport"), &frmSecurity_SecurityOptions::ExportLog);
    return buttons;
}

void frmSecurity_SecurityOptions::LoadScreen() {
    SingleRecordScreen::LoadScreen();
    LoadLog();
}

void frmSecurity_SecurityOptions::ReadRecord() {
    m_form.LoadOptions(App().channel);
}

bool frmSecurity_SecurityOptions::CheckBeforeSave() {
    if (!SingleRecordScreen::CheckBeforeSave())
        return false;
    // "satisified" is how the text has always read.
    return m_form.Rules().CanBeMet() ||
           App().prompter.ShowBox(this, {.text = tr("Your minimum password character requirements are not "
                                                    "satisified.  Continue anyway?"),
                                         .icon = Box::Icon::Question,
                                         .buttons = Box::Buttons::YesNo,
                                         .careful = true});
}

void frmSecurity_SecurityOptions::LoadLog() {
    QList<GridRow> rows;
    const auto read = [&](RequestChannel& channel) {
        GridRow row{QString::number(rows.size()), {}, {}};
        for (const char* tag : LogTags)
            row.cells.Own().append(channel.GetField(tag));
        rows.append(row);
    };
    const auto report = [this](qint16 result) {
        App().ReportRequestFailure(result, "Getting Invalid Logins", windowTitle());
    };
    ReadList(App().channel, {.request = "GetInvalidLogins", .form = ListForm::Continuing, .report = report},
             {{LogTags[0], read}});
    m_form.vsfInvalidLogins.SetStoredRows(rows);
}

void frmSecurity_SecurityOptions::ClearLog() {
    if (const qint16 result = App().channel.SendRequest("ClearInvalidLogins"); result != status::Ok)
        App().ReportRequestFailure(result, "Clear Invalid Logins", windowTitle());
    else
        m_form.vsfInvalidLogins.SetStoredRows({});
}

void frmSecurity_SecurityOptions::ExportLog() {
    const QString fileName = App().prompter.AskSaveFile(
        this, tr("Export"), tr("Invalid Login Attempts") + ".csv", tr("CSV files (*.csv)"));
    if (fileName.isEmpty())
        return;
    QList<QStringList> records(1);
    for (const GridColumn& column : m_form.vsfInvalidLogins.Columns())
        records.first().append(column.caption);
    const GridModel& model = findChild<ListGrid*>("vsfInvalidLogins")->Model();
    for (int row = 0; row < model.rowCount(); ++row)
        records.append(model.RowAt(row).cells.Texts()); // in the order in which the operator has sorted them
    if (const QString problem = WriteCsv(fileName, records, CsvQuotes::Always); !problem.isEmpty())
        Tell(tr("The file could not be written:") + "\r\n" + problem);
}

void frmSecurity_SecurityOptions::ShowExpiration() {
    PasswordExpirationDialog dialog(App(), this);
    connect(&dialog.GetScreen(), &frmSecurity_PasswordExpiration::Saved, this,
            [this](int days) { m_form.TakeExpiry(days); });
    dialog.GetScreen().LoadScreen();
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmSecurity_SecurityOptions.cpp"
