#include "system/frmSystem_AccessControlGroups.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"
#include "system/IpAddress.h"
#include "system/IpAddressDialog.h"

namespace sysadmin {

namespace {

struct DomainForm : RowForm {
    TextField txtDomainName{
        *this, {.name = "txtDomainName", .tag = "DN", .caption = tr("Name:"), .maxLength = DomainNameLength}};
    Layout Draw() override { return Below({txtDomainName}); }
};

IpRange RangeOf(const GridRow& row) {
    return {row.cells.value(0), row.cells.value(1)};
}

QList<GridColumn> DomainColumns() {
    return {{.caption = Form::tr("Name"), .tag = "DN"}};
}

RowAsker AskDomain() {
    return AskInForm({.name = "frmDomainName",
                      .title = Form::tr("Domain Name"),
                      .helpContext = 50813,
                      .okName = "cmdOK_Domain",
                      .cancelName = "cmdCancel_Domain"},
                     DomainColumns(), std::make_shared<DomainForm>());
}

/// Asks for the address, or the addresses, of a row; the first one is its key.
RowAsker AskAddresses(const FormDialogSpec& spec, const IpDialogNames& names) {
    const auto ask = [names](const FormDialogSpec& asked, QWidget* parent, Prompter& prompter,
                             const GridRow* former, const RowCheck& check) -> std::optional<GridRow> {
        const auto rowOf = [](const QStringList& addresses) {
            return GridRow{addresses.value(0), addresses, {}};
        };
        IpAddressDialog dialog(
            prompter, asked, names, [&](const QStringList& entry) { return check(rowOf(entry), former); },
            parent);
        if (former)
            dialog.SetAddresses(former->cells.Texts());
        if (!prompter.RunDialog(dialog))
            return {};
        return rowOf(dialog.Addresses());
    };
    return {.dialog = spec, .ask = ask, .captions = names.captions};
}

/// What the lists of members have in common: their buttons' names end in `role`.
RowsSpec MembersSpec(const QString& role, const QString& marker, RowAsker ask) {
    return {.marker = marker,
            .keyColumn = 0,
            .puts = {PutCell(marker, 0)},
            .add = {"cmdAdd" + role, Form::tr("Add...")},
            .modify = {"cmdModify" + role, Form::tr("Modify...")},
            .remove = {"cmdRemove" + role, Form::tr("Remove")},
            .ask = std::move(ask)};
}

} // namespace

AccessGroupForm::AccessGroupForm()
    : vsfDomain(*this, {.name = "vsfDomain", .accessible = tr("Domain names")}, DomainColumns(),
                MembersSpec("Domain", "DN", AskDomain()))
    , vsfIPAddress(*this, {.name = "vsfIPAddress", .accessible = tr("IP addresses")},
                   {{.caption = tr("IP Address"), .tag = "IP"}},
                   MembersSpec("IPAddress", "IP",
                               AskAddresses({.name = "frmIPAddress",
                                             .title = tr("IP Address"),
                                             .helpContext = 50814,
                                             .okName = "cmdOK_IPAddress",
                                             .cancelName = "cmdCancel_IPAddress"},
                                            {.optionIpv4 = "OptIpv4Address",
                                             .optionIpv6 = "OptIpv6Address",
                                             .captions = {tr("IP Address")}})))
    , vsfIPRange(*this, {.name = "vsfIPRange", .accessible = tr("IP ranges")},
                 {{.caption = tr("IP Range"), .tag = "MI"}},
                 MembersSpec("IPRange", "MI",
                             AskAddresses({.name = "frmIPRange",
                                           .title = tr("IP Range"),
                                           .helpContext = 50815,
                                           .okName = "cmdOK_IPRange",
                                           .cancelName = "cmdCancel_IPRange"},
                                          {.optionIpv4 = "OptIpv4Range",
                                           .optionIpv6 = "OptIpv6Range",
                                           .captions = {tr("Minimum"), tr("Maximum")}}))) {
    vsfDomain.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        if (!row.cells[0].contains('.'))
            return tr("The domain name format is incorrect.\r\nPlease enter a name such as "
                      "library.example.edu.");
        for (const GridRow& other : vsfDomain.Rows())
            if (!(former && other.key == former->key) &&
                other.key.compare(row.cells[0], Qt::CaseInsensitive) == 0)
                return QString(tr("Domain name: ") + row.cells[0] + tr(" is already used."));
        return QString();
    };
    vsfIPAddress.Behaviour().shown.insert(0, [](const GridRow& row) { return ShowIp(row.cells.value(0)); });
    vsfIPAddress.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        if (!(former && row.key == former->key) && vsfIPAddress.FindRow(row.key))
            return QString(tr("IP Address: ") + ShowIp(row.key) + tr(" is already being used."));
        return QString();
    };
    vsfIPRange.Behaviour().moreTags = {"XI"};
    vsfIPRange.Behaviour().puts.append(PutCell("XI", 1));
    vsfIPRange.Behaviour().shown.insert(0, [](const GridRow& row) { return ShowIpRange(RangeOf(row)); });
    vsfIPRange.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        const IpRange range = RangeOf(row);
        if (range.least >= range.most)
            return tr("Minimum IP Address must be less than Maximum IP Address");
        for (const GridRow& other : vsfIPRange.Rows())
            if (!(former && other.key == former->key) && Overlap(range, RangeOf(other)))
                return QString(tr("IP Address Range is overlapping with an existing range: ") +
                               ShowIpRange(RangeOf(other)));
        return QString();
    };
    for (const PickItem& type : cboGroupType.Items())
        When([this, id = type.id] { return cboGroupType.Draft() == id; }).Page(type.id);
}

void AccessGroupForm::PutMembers(RequestChannel& channel) const {
    const QString type = cboGroupType.Draft();
    if (type == u"D")
        vsfDomain.Put(channel);
    if (type == u"I")
        vsfIPAddress.Put(channel);
    if (type == u"R")
        vsfIPRange.Put(channel);
    if (type == u"P")
        patronGroups.Put(channel);
}

frmSystem_AccessControlGroups::frmSystem_AccessControlGroups(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_AccessControlGroups", tr("Access Control Groups"),
                        Area::System, parent) {
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
             Below({m_form.txtCode, m_form.txtName, m_form.cboGroupType,
                    Tabs("tabMembers", {Page("D", tr("D&omain Name"), {m_form.vsfDomain}),
                                        Page("I", tr("&IP Address"), {m_form.vsfIPAddress}),
                                        Page("R", tr("I&P Range"), {m_form.vsfIPRange}),
                                        Page("P", tr("Pa&tron Group"), {m_form.patronGroups})})}),
             {PutValue(m_form.cboGroupType), OnUpdate(PutOriginalKey("I")), PutValue(m_form.txtCode),
              PutValue(m_form.txtName),
              [this](RequestChannel& channel, const SaveContext&) { m_form.PutMembers(channel); },
              OnUpdate(PutChanged("NCd", m_form.txtCode)), OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
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

GridRow frmSystem_AccessControlGroups::RowFromForm(const Table& table, const QString& key) const {
    GridRow row = MaintenanceScreen::RowFromForm(table, key);
    row.cells[0] = row.cells[0].trimmed();
    return row;
}

} // namespace sysadmin

#include "moc_frmSystem_AccessControlGroups.cpp"
