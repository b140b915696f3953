#include "system/frmSystem_AccessControlGroups.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "system/IpAddress.h"
#include "system/MemberDialogs.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>

namespace sysadmin {

namespace {

const QString TypeLetters = "DIRP"; // in the order of the tabs

QString RangeKey(const IpRange& range) {
    return range.least + ' ' + range.most;
}

IpRange RangeOf(const QString& key) {
    return {key.section(' ', 0, 0), key.section(' ', 1)};
}

GridRow AddressRow(const QString& address) {
    return {address, {ShowIp(address)}, {}};
}

GridRow RangeRow(const IpRange& range) {
    return {RangeKey(range), {ShowIpRange(range)}, {}};
}

/// Writes the row in the place of the one with the key, or adds it.
void ReplaceRow(RowsField& field, const QString& key, const GridRow& row) {
    QList<GridRow> rows = field.Rows();
    for (GridRow& other : rows)
        if (!key.isEmpty() && other.key == key) {
            other = row;
            field.SetRows(rows);
            return;
        }
    field.SetRows(rows << row);
}

/// Puts the members of the group's type, in list order.
PutStep PutMembers(const AccessGroupForm& form) {
    return [&form](RequestChannel& channel, const SaveContext&) {
        const QString type = form.cboGroupType.Draft();
        if (type == u"D")
            for (const GridRow& row : form.vsfDomain.Rows())
                channel.PutField("DN", row.key);
        if (type == u"I")
            for (const GridRow& row : form.vsfIPAddress.Rows())
                channel.PutField("IP", row.key);
        if (type == u"R")
            for (const GridRow& row : form.vsfIPRange.Rows()) {
                channel.PutField("MI", RangeOf(row.key).least);
                channel.PutField("XI", RangeOf(row.key).most);
            }
        if (type == u"P")
            for (const GridRow& row : form.patronGroups.Lists().Selected())
                channel.PutField("SI", row.key);
    };
}

} // namespace

frmSystem_AccessControlGroups::frmSystem_AccessControlGroups(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_AccessControlGroups", tr("Access Control Groups"),
                        Area::System, parent)
    , m_members{{.field = &m_form.vsfDomain, .edit = &frmSystem_AccessControlGroups::EditDomain},
                {.field = &m_form.vsfIPAddress, .edit = &frmSystem_AccessControlGroups::EditAddress},
                {.field = &m_form.vsfIPRange, .edit = &frmSystem_AccessControlGroups::EditRange}} {
    AddTable({.subject = tr("Access Control Group"),
              .notice = "AG",
              .columns = {{.caption = tr("Codes"), .width = 120, .tag = "C"},
                          {.caption = tr("Names"), .tag = "N"},
                          {.caption = tr("Type"), .width = 110, .tag = "T"}},
              .recordTag = "I",
              .boxOnLoadFailure = true,
              .listRequest = "LstAG",
              .getRequest = "GetAG",
              .addRequest = "AddAG",
              .updateRequest = "UpdAG",
              .deleteRequest = "DelAG",
              .availableRequest = "AvlAG",
              .editCaption = "Edit System Access Control Groups",
              .saveCaption = "Save Access Control Groups",
              .deleteCaption = "Delete Access Control Groups",
              .matchTag = "C"},
             m_form,
             Column({m_form.txtCode, m_form.txtName, m_form.cboGroupType,
                     Tabs("tabMembers", {Page(tr("D&omain Name"), {m_form.vsfDomain, Slot("Domain")}),
                                         Page(tr("&IP Address"), {m_form.vsfIPAddress, Slot("IPAddress")}),
                                         Page(tr("I&P Range"), {m_form.vsfIPRange, Slot("IPRange")}),
                                         Page(tr("Pa&tron Group"), {m_form.patronGroups})})}),
             {PutValue(m_form.cboGroupType), OnUpdate(PutOriginalKey("I")), PutValue(m_form.txtCode),
              PutValue(m_form.txtName), PutMembers(m_form), OnUpdate(PutChanged("NCd", m_form.txtCode)),
              OnUpdate(PutChanged("NNm", m_form.txtName))},
             [this](const QString& role) { return MakeButtons(role); });
    Finish();
    for (Members& members : m_members)
        ConnectMembers(members);

    m_tabs = findChild<QTabWidget*>("tabMembers");
    // Whatever wants to show another page, the group's own one stays in front.
    connect(m_tabs, &QTabWidget::currentChanged, this, &frmSystem_AccessControlGroups::ShowType);
    connect(&m_form, &Form::Changed, this, [this](Field* field) {
        if (field == &m_form.cboGroupType)
            ShowType();
    });
    ShowType();
}

frmSystem_AccessControlGroups::~frmSystem_AccessControlGroups() {
    disconnect(m_tabs, nullptr, this, nullptr); // tabs tell of their pages' end, too
}

QWidget* frmSystem_AccessControlGroups::MakeButtons(const QString& role) {
    auto* line = new QWidget(this);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins({});
    for (Members& members : m_members) {
        if (members.field->Name() != "vsf" + role)
            continue;
        members.add = MakeButton("cmdAdd" + role, tr("Add..."));
        members.modify = MakeButton("cmdModify" + role, tr("Modify..."));
        members.remove = MakeButton("cmdRemove" + role, tr("Remove"));
        for (QPushButton* button : {members.add, members.modify, members.remove})
            layout->addWidget(button);
    }
    return line;
}

void frmSystem_AccessControlGroups::ConnectMembers(Members& members) {
    members.grid = findChild<ListGrid*>(members.field->Name());
    members.grid->SetSortable(false); // members are sent in the order in which they are shown
    const auto clickOn = [](QPushButton* button) {
        return [button] {
            if (button->isEnabled())
                button->click();
        };
    };
    connect(members.grid, &ListGrid::SelectionMoved, this,
            &frmSystem_AccessControlGroups::RefreshOwnControls);
    connect(members.grid, &ListGrid::RowActivated, this, clickOn(members.modify));
    connect(members.grid, &ListGrid::InsertPressed, this, clickOn(members.add));
    connect(members.grid, &ListGrid::DeletePressed, this, clickOn(members.remove));
    connect(members.add, &QPushButton::clicked, this, [this, &members] { (this->*members.edit)({}); });
    connect(members.modify, &QPushButton::clicked, this,
            [this, &members] { (this->*members.edit)(members.grid->SelectedKey()); });
    connect(members.remove, &QPushButton::clicked, this,
            [&members] { members.field->RemoveRow(members.grid->SelectedKey()); });
}

void frmSystem_AccessControlGroups::ShowType() {
    const int type = int(qMax(qsizetype(0), TypeLetters.indexOf(m_form.cboGroupType.Draft())));
    for (int i = 0; i < m_tabs->count(); ++i)
        m_tabs->setTabEnabled(i, i == type);
    m_tabs->setCurrentIndex(type);
}

void frmSystem_AccessControlGroups::RefreshOwnControls() {
    const bool mayEdit = GetState() == State::EditingNew || GetState() == State::Editing;
    for (const Members& members : m_members) {
        if (!members.grid)
            return; // still building
        const bool hasRow = members.grid->SelectedRow() != nullptr;
        members.add->setEnabled(mayEdit);
        members.modify->setEnabled(mayEdit && hasRow);
        members.remove->setEnabled(mayEdit && hasRow);
    }
}

GridRow frmSystem_AccessControlGroups::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    for (const PickItem& type : m_form.cboGroupType.Items())
        if (type.id == row.cells[2]) {
            row.cells[2] = type.text;
            break;
        }
    return row;
}

void frmSystem_AccessControlGroups::ReadRecord(Table& table) {
    MaintenanceScreen::ReadRecord(table);
    RequestChannel& channel = App().channel;
    QList<GridRow> domains;
    while (channel.NextRecord("DN"))
        domains.append({channel.GetField("DN"), {channel.GetField("DN")}, {}});
    m_form.vsfDomain.SetStoredRows(domains);
    QList<GridRow> addresses;
    while (channel.NextRecord("IP"))
        addresses.append(AddressRow(channel.GetField("IP")));
    m_form.vsfIPAddress.SetStoredRows(addresses);
    QList<GridRow> ranges;
    while (channel.NextRecord("MI"))
        ranges.append(RangeRow({channel.GetField("MI"), channel.GetField("XI")}));
    m_form.vsfIPRange.SetStoredRows(ranges);
    m_form.patronGroups.LoadPairs(channel, "AI", "AN", "SI", "SN");
}

void frmSystem_AccessControlGroups::ReadAvailable(Table&) {
    m_form.patronGroups.LoadPairs(App().channel, "AI", "AN", "SI", "SN");
}

GridRow frmSystem_AccessControlGroups::RowFromForm(const Table& table, const QString& key) const {
    GridRow row = MaintenanceScreen::RowFromForm(table, key);
    row.cells[0] = row.cells[0].trimmed();
    return row;
}

void frmSystem_AccessControlGroups::EditDomain(const QString& key) {
    const auto check = [&](const QStringList& entry) {
        if (!entry[0].contains('.'))
            return tr("The domain name format is incorrect.\r\nPlease enter a name such as "
                      "library.example.edu.");
        for (const GridRow& row : m_form.vsfDomain.Rows())
            if (row.key != key && row.key.compare(entry[0], Qt::CaseInsensitive) == 0)
                return QString(tr("Domain name: ") + entry[0] + tr(" is already used."));
        return QString();
    };
    DomainNameDialog dialog(App(), key, check, this);
    if (!App().prompter.RunDialog(dialog))
        return;
    ReplaceRow(m_form.vsfDomain, key, {dialog.Name(), {dialog.Name()}, {}});
    m_members[0].grid->SelectKey(dialog.Name());
}

void frmSystem_AccessControlGroups::EditAddress(const QString& key) {
    const auto check = [&](const QStringList& entry) {
        if (entry[0] != key && m_form.vsfIPAddress.FindRow(entry[0]))
            return QString(tr("IP Address: ") + ShowIp(entry[0]) + tr(" is already being used."));
        return QString();
    };
    IpAddressDialog dialog(App(),
                           {.form = "frmIPAddress",
                            .title = tr("IP Address"),
                            .optionIpv4 = "OptIpv4Address",
                            .optionIpv6 = "OptIpv6Address",
                            .ok = "cmdOK_IPAddress",
                            .cancel = "cmdCancel_IPAddress",
                            .captions = {tr("IP Address")}},
                           check, this);
    if (!key.isEmpty())
        dialog.SetAddresses({key});
    if (!App().prompter.RunDialog(dialog))
        return;
    ReplaceRow(m_form.vsfIPAddress, key, AddressRow(dialog.Addresses()[0]));
    m_members[1].grid->SelectKey(dialog.Addresses()[0]);
}

void frmSystem_AccessControlGroups::EditRange(const QString& key) {
    const auto check = [&](const QStringList& entry) {
        const IpRange range{entry[0], entry[1]};
        if (range.least >= range.most)
            return tr("Minimum IP Address must be less than Maximum IP Address");
        for (const GridRow& row : m_form.vsfIPRange.Rows())
            if (row.key != key && Overlap(range, RangeOf(row.key)))
                return QString(tr("IP Address Range is overlapping with an existing range: ") +
                               ShowIpRange(RangeOf(row.key)));
        return QString();
    };
    IpAddressDialog dialog(App(),
                           {.form = "frmIPRange",
                            .title = tr("IP Range"),
                            .optionIpv4 = "OptIpv4Range",
                            .optionIpv6 = "OptIpv6Range",
                            .ok = "cmdOK_IPRange",
                            .cancel = "cmdCancel_IPRange",
                            .captions = {tr("Minimum"), tr("Maximum")}},
                           check, this);
    if (!key.isEmpty())
        dialog.SetAddresses({RangeOf(key).least, RangeOf(key).most});
    if (!App().prompter.RunDialog(dialog))
        return;
    const IpRange range{dialog.Addresses()[0], dialog.Addresses()[1]};
    ReplaceRow(m_form.vsfIPRange, key, RangeRow(range));
    m_members[2].grid->SelectKey(RangeKey(range));
}

} // namespace sysadmin
