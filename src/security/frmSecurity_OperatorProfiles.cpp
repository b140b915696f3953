#include "security/frmSecurity_OperatorProfiles.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "framework/forms/Rules.h"
#include "security/CompareDialog.h"
#include "security/LastSecurityHolder.h"
#include "security/frmSecurity_OperatorLockoutStatus.h"
#include "security/frmSecurity_OperatorPassword.h"
#include "wire/Status.h"

#include <QCheckBox>
#include <QDate>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>

namespace sysadmin {

namespace status = wire::status;

namespace {

enum Column { NameColumn, IdColumn, FirstNameColumn };

QString Today() {
    return QDate::currentDate().toString("MM/dd/yyyy");
}

/// "Last, First M", each part only when it is there; with the first name in front for sorting by it.
GridRow RowOf(const QString& id, const QString& last, const QString& first, const QString& initial) {
    const QString given = QString(first + ' ' + initial).trimmed();
    const QString separator = last.isEmpty() || given.isEmpty() ? "" : ", ";
    return {id, {last + separator + given, id, given + ' ' + last}, {}};
}

} // namespace

OperatorForm::OperatorForm() {
    When([this] { return chkNeverExpire.IsOn() && !IsExpired(); }).Set(chkExpireNow, "N");
    // An expiry ends with a new password and in no other way.
    When([this] {
        return chkNeverExpire.IsOn() || (IsExpired() && !HasNewPassword());
    }).Disable(chkExpireNow);
}

frmSecurity_OperatorProfiles::frmSecurity_OperatorProfiles(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSecurity_OperatorProfiles", tr("Operator Profile"), Area::Security,
                        parent) {
    const Layout account = Frame("fraAccount", tr("Account"),
                                 {Beside({m_form.txtStatus, Slot("cmdExpire"), Slot("cmdLockoutStatus")}),
                                  m_form.lblCreateDate, m_form.lblModifyDate, m_form.lblModifyOperator});
    const Layout layout =
        Tabs("tabOperator",
             {Page(tr("&Operator"),
                   {m_form.txtOperatorID, m_form.txtLastName, Beside({m_form.txtFirstName, m_form.txtMIName}),
                    Beside({m_form.txtPassword, Slot("passwordControls")}), m_form.chkSkipValidation,
                    m_form.chkNeverExpire, m_form.chkRestrictChange, m_form.chkExpireNow, account}),
              Page(tr("Current &Profiles"), {m_form.vsfOperatorList})});
    const auto put = [](const QString& tag,
                        const std::function<QString(const SaveContext&)>& value) -> PutStep {
        return [tag, value](RequestChannel& channel, const SaveContext& context) {
            channel.PutField(tag, value(context));
        };
    };
    AddTable({.subject = tr("Operator Profile"),
              .word = "Opr",
              .plural = windowTitle(),
              .columns = {{tr("Name"), Twips(1785)}, {tr("ID"), Twips(960)}, {tr("First Name"), 0, true}},
              .recordTag = "OI",
              .sorted = false,
              .boxOnLoadFailure = true,
              .editCaption = "Edit Security Operator Profile",
              .deleteWords = {{status::LastSecurityRight,
                               {LastSecurityHolderText(), tr("Cannot Delete Operator Profile")}}},
              .saveWords = {{status::LastSecurityRight,
                             {LastSecurityHolderText(), tr("Cannot Save Operator Profile")}}}},
             m_form, layout,
             {PutValue(m_form.txtOperatorID), PutValue(m_form.txtFirstName), PutValue(m_form.txtLastName),
              PutValue(m_form.txtMIName), put("MdDt", [](const SaveContext&) { return Today(); }),
              put("MdOpr", [this](const SaveContext&) { return App().OperatorId(); }),
              put("Srt", [this](const SaveContext&) { return m_sort; }),
              [this](RequestChannel& channel, const SaveContext&) {
                  if (m_form.HasNewPassword())
                      channel.PutField("PW", App().comm.EncodePassword(m_form.txtPassword.Draft()));
              },
              PutValue(m_form.chkSkipValidation), PutValue(m_form.chkNeverExpire),
              PutValue(m_form.chkRestrictChange),
              put("CrDt",
                  [this](const SaveContext& saving) {
                      return saving.isNew ? Today() : m_form.lblCreateDate.Draft();
                  }),
              PutValue(m_form.chkExpireNow), OnUpdate(PutOriginalKey("PID"))},
             [this](const QString& name) { return MakeSlot(name); });
    m_cmdCompare = MakeButton("cmdCompare", tr("Co&mpare..."));
    connect(m_cmdCompare, &QPushButton::clicked, this, &frmSecurity_OperatorProfiles::Compare);
    AddListButton(m_cmdCompare);
    Finish();
    m_fraAccount = findChild<QWidget*>("fraAccount");

    QHeaderView* header = Current().grid->horizontalHeader();
    Current().grid->setSortingEnabled(false);
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setToolTip(tr("Name: sorts by last name, clicked again by first name.  ID: sorts by ID."));
    connect(header, &QHeaderView::sectionClicked, this, &frmSecurity_OperatorProfiles::SortBy);
    ShowSortOrder();
}

QWidget* frmSecurity_OperatorProfiles::MakeSlot(const QString& name) {
    if (name == "passwordControls") {
        auto* controls = new QWidget(this);
        auto* line = new QHBoxLayout(controls);
        line->setContentsMargins({});
        m_cmdChangePassword = MakeButton("cmdChangePassword", tr("Ch&ange Password..."));
        m_chkShowPassword = new QCheckBox(tr("Show password"), this);
        m_chkShowPassword->setObjectName("chkShowPassword");
        line->addWidget(m_cmdChangePassword);
        line->addWidget(m_chkShowPassword);
        connect(m_cmdChangePassword, &QPushButton::clicked, this,
                &frmSecurity_OperatorProfiles::ChangePassword);
        connect(m_chkShowPassword, &QCheckBox::toggled, this, [this](bool shown) {
            findChild<QLineEdit*>("txtPassword")
                ->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
        });
        return controls;
    }
    if (name == "cmdExpire") {
        m_cmdExpire = MakeButton(name, tr("&Expire Account Now"));
        connect(m_cmdExpire, &QPushButton::clicked, this, &frmSecurity_OperatorProfiles::ExpireNow);
        return m_cmdExpire;
    }
    m_cmdLockoutStatus = MakeButton(name, tr("&Lockout Status..."));
    connect(m_cmdLockoutStatus, &QPushButton::clicked, this, &frmSecurity_OperatorProfiles::ShowLockout);
    return m_cmdLockoutStatus;
}

void frmSecurity_OperatorProfiles::SortBy(int column) {
    m_sort = column == IdColumn ? "I" : m_sort == u"L" ? "F" : "L";
    const QString selected = Current().grid->SelectedKey();
    LoadList(Current());
    ShowSortOrder();
    Current().grid->SelectKey(selected);
}

void frmSecurity_OperatorProfiles::ShowSortOrder() {
    const int column = m_sort == u"I" ? IdColumn : m_sort == u"F" ? FirstNameColumn : NameColumn;
    Current().grid->Model().sort(column);
    Current().grid->horizontalHeader()->setSortIndicator(column == IdColumn ? IdColumn : NameColumn,
                                                         Qt::AscendingOrder);
}

void frmSecurity_OperatorProfiles::PutListKey(const Table&) {
    App().channel.PutField("Srt", m_sort);
}

GridRow frmSecurity_OperatorProfiles::ReadRow(const Table&) {
    const RequestChannel& channel = App().channel;
    return RowOf(channel.GetField("OI"), channel.GetField("LNm"), channel.GetField("FNm"),
                 channel.GetField("MI"));
}

GridRow frmSecurity_OperatorProfiles::RowFromForm(const Table&, const QString& key) const {
    return RowOf(key, m_form.txtLastName.Draft(), m_form.txtFirstName.Draft(), m_form.txtMIName.Draft());
}

void frmSecurity_OperatorProfiles::ReadRecord(Table& table) {
    RequestChannel& channel = App().channel;
    table.form->Load(channel);
    m_form.txtOperatorID.SetStored(Saving().originalKey);
    m_locked = channel.GetFlag("Lock");
    ShowStatus();
    QList<GridRow> profiles;
    while (channel.NextRecord("Prof"))
        profiles.append({QString::number(profiles.size()), {channel.GetField("Prof")}, {}});
    m_form.vsfOperatorList.SetStoredRows(profiles);
}

void frmSecurity_OperatorProfiles::ShowStatus() {
    m_form.txtStatus.SetStored(m_locked ? tr("Locked") : m_form.IsExpired() ? tr("Expired") : tr("Active"));
    RefreshOwnControls();
}

void frmSecurity_OperatorProfiles::RefreshOwnControls() {
    if (!m_fraAccount)
        return;
    const State state = GetState();
    m_cmdCompare->setEnabled(state == State::List && Current().grid->SelectedRow() &&
                             Current().grid->Model().Rows().size() > 1);
    const bool isNew = state == State::EditingNew;
    const bool isEditing = state == State::Editing;
    const bool isExpired = m_form.IsExpired();
    m_fraAccount->setVisible(!isNew);
    m_cmdChangePassword->setVisible(!isNew);
    m_chkShowPassword->setVisible(isNew);
    if (!isNew)
        m_chkShowPassword->setChecked(false);
    m_cmdChangePassword->setEnabled(isEditing && App().profile.ChangePassword());
    m_cmdExpire->setEnabled(isEditing && !isExpired && m_form.chkNeverExpire.Stored() != u"Y");
    m_cmdLockoutStatus->setEnabled((isEditing || state == State::Viewing) && m_locked);

    m_form.txtOperatorID.SetUsable(state != State::Editing);
    m_form.txtPassword.SetUsable(isNew);
}

bool frmSecurity_OperatorProfiles::SendGet(const QString& operation) {
    return AskForRecord(Current(), Owner().id, operation);
}

wire::PasswordOwner frmSecurity_OperatorProfiles::Owner() const {
    return {m_form.txtOperatorID.Draft().trimmed(), m_form.txtLastName.Draft(), m_form.txtFirstName.Draft()};
}

void frmSecurity_OperatorProfiles::ChangePassword() {
    frmSecurity_OperatorPassword dialog(App(), Owner(), this);
    dialog.Load();
    if (!App().prompter.RunDialog(dialog))
        return;
    m_form.txtPassword.SetDraft(dialog.NewPassword());
    m_form.chkSkipValidation.SetOn(dialog.SkipsValidation());
    if (m_form.IsExpired())
        m_form.chkExpireNow.SetOn(false);
}

void frmSecurity_OperatorProfiles::ExpireNow() {
    App().channel.PutField("OI", Owner().id);
    App().channel.PutField("MdOpr", App().OperatorId());
    const qint16 result = App().channel.SendRequest("ExpOpr");
    if (result == status::LastSecurityRight) {
        Tell(LastSecurityHolderText());
        return;
    }
    if (result != status::Ok) {
        App().ReportRequestFailure(result, "Expire Security Operator Profile", Current().spec.subject);
        return;
    }
    App().prompter.ShowBox(
        this, {.text = tr("Operator's password successfully expired."), .icon = Box::Icon::Information});
    m_form.chkExpireNow.SetStored("Y");
    ShowStatus();
}

void frmSecurity_OperatorProfiles::ShowLockout() {
    if (!SendGet("Get Operator Lockout Status"))
        return;
    m_locked = App().channel.GetFlag("Lock");
    frmSecurity_OperatorLockoutStatus dialog(App(), Owner().id, GetState() == State::Editing, this);
    if (dialog.Load() && App().prompter.RunDialog(dialog))
        m_locked = false;
    ShowStatus();
}

bool frmSecurity_OperatorProfiles::CheckBeforeSave(Table& table) {
    if (!MaintenanceScreen::CheckBeforeSave(table))
        return false;
    // The password of an operator who was there before has gone through the change-password dialog.
    if (!Saving().isNew || m_form.chkSkipValidation.IsOn() ||
        CheckPassword(App(), this, table.spec.subject, m_form.txtPassword.Draft(), Owner()))
        return true;
    table.view->FocusField(m_form.txtPassword);
    return false;
}

void frmSecurity_OperatorProfiles::PutRecord(Table& table, const SaveContext& context) {
    m_liftsExpiry =
        !context.isNew && m_form.HasNewPassword() && m_form.IsExpired() && !m_form.chkExpireNow.IsOn();
    MaintenanceScreen::PutRecord(table, context);
}

void frmSecurity_OperatorProfiles::ReportSaveFailure(Table& table, qint16 result) {
    if (const QString refusal = PasswordRefusal(result); !refusal.isEmpty())
        App().prompter.ShowBox(this, {.text = refusal, .icon = Box::Icon::Critical});
    else
        MaintenanceScreen::ReportSaveFailure(table, result);
    if (result == status::DuplicateId)
        table.view->FocusField(m_form.txtOperatorID);
}

void frmSecurity_OperatorProfiles::AfterSave(Table&, const GridRow&, bool) {
    if (m_liftsExpiry) {
        App().prompter.ShowBox(this,
                               {.text = tr("Changing the password removed the expiration on the account."),
                                .icon = Box::Icon::Information});
        ShowStatus();
    }
    m_form.txtPassword.Clear();
}

bool frmSecurity_OperatorProfiles::ConfirmRowDelete(Table& table, const GridRow& row) {
    // Two people may have the same name.
    QStringList values{row.cells.value(NameColumn), row.key};
    values.removeAll(QString());
    return ConfirmDeleteEx(App(), this, table.spec.subject, values);
}

bool frmSecurity_OperatorProfiles::MayDeleteRow(const GridRow& row) const {
    return row.key.trimmed().compare(u"SYSADMIN", Qt::CaseInsensitive) != 0;
}

void frmSecurity_OperatorProfiles::Compare() {
    const auto describe = [this](const QString& key) -> std::optional<ComparedRecord> {
        RequestChannel& channel = App().channel;
        channel.PutField("OI", key);
        if (const qint16 result = channel.SendRequest("GetOpr"); result != status::Ok) {
            App().ReportRequestFailure(result, Current().spec.editCaption, Current().spec.subject);
            return {};
        }
        ComparedRecord record;
        const auto addFlag = [&](const QString& tag, const QString& caption) {
            record.append({tr("Account"), tag, caption, channel.GetFlag(tag) ? tr("Yes") : tr("No")});
        };
        addFlag("Exp", tr("Expired"));
        addFlag("Lock", tr("Locked"));
        addFlag("Nexp", m_form.chkNeverExpire.PlainCaption());
        addFlag("Rchg", m_form.chkRestrictChange.PlainCaption());
        while (channel.NextRecord("Prof"))
            record.append({tr("Current Profiles"), channel.GetField("Prof"), channel.GetField("Prof"),
                           tr("Yes"), true});
        return record;
    };
    CompareSelected(App(), this, windowTitle(), *Current().grid, describe);
}

} // namespace sysadmin

#include "moc_frmSecurity_OperatorProfiles.cpp"
