#include "acquisitions/frmAcquisitions_PolicyDefinitions.h"

#include "core/Application.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <utility>

namespace sysadmin {

namespace status = wire::status;

namespace {

constexpr int OrderTypeColumn = 6;
constexpr int OrderTextColumn = 7;
constexpr int StateColumn = 8;

const QList<GridColumn>& VendorColumns() {
    static const QList<GridColumn> columns{
        {.caption = "Vendor Type", .width = 170, .tag = "6"},
        {.caption = "Discount", .width = 70, .tag = "5b"},
        {.caption = "ClaimCount", .width = 88, .tag = "5g"},
        {.caption = "ClaimInterval", .width = 100, .tag = "5f"},
        {.caption = "CancelInterval", .width = 108, .tag = "5h"},
        {.caption = "ShipVia", .width = 140, .tag = "5i"},
        {.caption = "OrderType", .hidden = true, .tag = "5c"},
        {.caption = "OrderDesc", .width = 120, .tag = "5e"},
        {.caption = "Status", .hidden = true},
    };
    return columns;
}

RowsSpec VendorRows() {
    return {.marker = "5",
            .puts = {PutKey("5"), PutState("5a"), PutCell("5b", 1), PutCell("5g", 2), PutCell("5f", 3),
                     PutCell("5h", 4), PutCell("5i", 5), PutCell("5c", OrderTypeColumn)},
            .onlyChanged = true};
}

QList<GridRow> ReadVendors(const RequestChannel& channel) {
    return ReadRows(channel, "5", {}, TagsOf(VendorColumns()));
}

/// Puts the rows that changed; those of a new group as new ones.
void PutVendors(const RowsField& vendors, RequestChannel& channel, bool isNew) {
    for (const auto& [row, state] : vendors.Changes())
        if (state != RowState::Unchanged)
            vendors.PutOne(channel, row, isNew ? RowState::Added : state);
}

} // namespace

/// What the replies to one question bring.
struct frmAcquisitions_PolicyDefinitions::Lists {
    QList<GridRow> available;
    QList<GridRow> selected;
    QList<PickItem> orderTypes;
    QList<PickItem> receiveTypes;
    QList<GridRow> vendors;
};

AcqPolicyForm::AcqPolicyForm(AcqLocationForm& location, VendorPolicyForm& vendor)
    : locations(*this, location)
    , vsfVendor(*this, {.name = "vsfVendor", .accessible = tr("Vendor policies")}, VendorColumns(),
                VendorRows(), vendor) {
    // What is shown of an order type follows the one that is chosen.
    vsfVendor.Behaviour().shown.insert(OrderTextColumn, [&vendor](const GridRow& row) {
        const QString id = row.cells.value(OrderTypeColumn);
        for (const PickItem& item : vendor.cboDescriptions.Items())
            if (item.id == id)
                return id.isEmpty() ? QString() : item.text;
        return row.cells.value(OrderTextColumn);
    });
    vsfVendor.Behaviour().shown.insert(StateColumn, [this](const GridRow& row) {
        for (const auto& [each, state] : vsfVendor.Changes())
            if (each.key == row.key)
                return vsfVendor.Behaviour().codes.Of(state);
        return QString();
    });
}

frmAcquisitions_PolicyDefinitions::frmAcquisitions_PolicyDefinitions(Application& application,
                                                                     QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_PolicyDefinitions",
                        tr("Acquisitions Policy Definitions"), Area::Acquisitions, parent) {
    for (Form* beside : std::initializer_list<Form*>{&m_location, &m_vendor})
        PrepareForm(*beside);
    const PutStep vendors(
        [this](RequestChannel& channel, const SaveContext& context) {
            PutVendors(m_form.vsfVendor, channel, context.isNew);
        },
        "5");
    const PutStep locations(
        [this](RequestChannel& channel, const SaveContext&) { m_form.locations.PutRows(channel); }, "3");
    AddTable({.subject = tr("Acquisitions Policy Definition"),
              .word = "AcqGp",
              .plural = "Acquisitions Policy Definitions",
              .loadCaption = "Load Policy Definitions",
              .matchTag = "Nm",
              .steps = {{.request = "UpdAcqGpLoc",
                         .caption = "Save Acquisitions Policy Definitions",
                         .keyTag = {},
                         .fields = {&m_form.locations},
                         .puts = {locations, PutOriginalKey("ID")}}}},
             m_form,
             Below({Tabs("tabPolicy", {Page(tr("&Policy"), {m_form.txtName, m_form.cboDuplication}),
                                       Page(tr("&Locations"), {m_form.locations}),
                                       Page(tr("&Vendor Policies"), {m_form.vsfVendor})})}),
             {vendors, PutValue(m_form.cboDuplication), PutValue(m_form.txtName),
              OnUpdate(PutChanged("NNm", m_form.txtName)), OnUpdate(PutOriginalKey("ID"))});
    Finish();
}

void frmAcquisitions_PolicyDefinitions::BeforeLoad() {
    const TableSpec& spec = Current().spec;
    LoadChoices(m_vendor, spec.loadCaption, spec.subject);
    LoadChoices(m_location, spec.loadCaption, spec.subject);
}

void frmAcquisitions_PolicyDefinitions::Take(Lists& lists) {
    RequestChannel& channel = App().channel;
    lists.available += AcqLocationsField::ReadAvailable(channel);
    lists.selected += AcqLocationsField::ReadSelected(channel);
    lists.vendors += ReadVendors(channel);
    const auto takeItems = [&](const QString& idTag, const QString& nameTag, QList<PickItem>& items) {
        for (const GridRow& row : ReadPairs(channel, idTag, nameTag))
            items.append({row.key, row.cells.value(0)});
    };
    takeItems("3a", "3b", lists.orderTypes);
    takeItems("3k", "3l", lists.receiveTypes);
}

void frmAcquisitions_PolicyDefinitions::Show(const Lists& lists) {
    const QList<PickItem> none{{"", tr("(none)")}};
    m_location.cboOrderDefaultItem.SetItems(none + lists.orderTypes);
    m_location.cboReceiveDefaultItem.SetItems(none + lists.receiveTypes);
    m_form.locations.LoadRows(lists.available, lists.selected);
    m_form.vsfVendor.SetStoredRows(lists.vendors);
}

// The reply may come in several parts. Only the first one carries what stands in front of the lists.
bool frmAcquisitions_PolicyDefinitions::FillForm(Table& table, const GridRow& row) {
    RequestChannel& channel = App().channel;
    Lists lists;
    QString name;
    QString profile;
    bool isFirst = true;
    qint16 result = status::Ok;
    do {
        channel.PutField("ID", row.key);
        if (result == status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest("GetAcqGp");
        if (result != status::Ok && result != status::Continues) {
            App().ReportRequestFailure(result, table.spec.editCaption, table.spec.subject);
            return false;
        }
        if (std::exchange(isFirst, false)) {
            name = channel.GetField("Nm");
            profile = channel.GetField("SDI");
        }
        Take(lists);
    } while (result == status::Continues);
    const Form::Loading loading(m_form);
    m_form.txtName.SetStored(name);
    m_form.cboDuplication.SetStored(profile);
    Show(lists);
    if (GetState() == State::List) // not when it is read anew under an edit
        m_tellsLack = m_form.locations.LacksDefaults();
    return true;
}

bool frmAcquisitions_PolicyDefinitions::PrepareNew(Table&) {
    if (App().channel.SendRequest("ASAvail") != status::Ok) {
        ReportUnableToLoad(App(), this, windowTitle());
        return false;
    }
    Lists lists;
    Take(lists);
    Show(lists);
    return true;
}

void frmAcquisitions_PolicyDefinitions::RefreshOwnControls() {
    if (GetState() != State::List && std::exchange(m_tellsLack, false))
        Tell(tr("One or more locations are missing selections for default order/receive item type and/or "
                "print location."));
}

} // namespace sysadmin

#include "moc_frmAcquisitions_PolicyDefinitions.cpp"
