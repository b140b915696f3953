#include "circulation/frmCirculation_PolicyDef.h"

#include "circulation/LoanQuestion.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <QPushButton>

namespace sysadmin {

namespace status = wire::status;

namespace {

const QString RegularPage = "pagMatrix";
const QString ShortLoanSlot = "pagMatrixSL";

} // namespace

frmCirculation_PolicyDef::frmCirculation_PolicyDef(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_PolicyDef", tr("Circulation Policy Definitions"),
                        Area::Circulation, parent) {
    for (Form* dialog : std::initializer_list<Form*>{m_dialogs.location.get(), m_dialogs.patron.get(),
                                                     m_dialogs.item.get(), m_dialogs.items.get()})
        PrepareForm(*dialog);
    m_form.locations.Behaviour().ask = LocationAsker();
    m_matrix = new MatrixPages(application, this);
    m_cmdTestLoan = MakeButton("cmdTestLoan", tr("&Test a Loan"));
    AddListButton(m_cmdTestLoan);
    connect(m_cmdTestLoan, &QPushButton::clicked, this, &frmCirculation_PolicyDef::TestLoan);
    TableSpec spec{.subject = tr("Circulation Policy Definition"),
                   .word = "CrcGp",
                   .clusterTag = "CID",
                   .clusterOnDelete = true,
                   .listAfterChange = true,
                   .loadCaption = "Load Circulation Policy Defintions",
                   .editCaption = "Edit Circ Policy Definition",
                   .saveCaption = "Save Circulation Policy Definition",
                   .deleteCaption = "Delete Circulation Policy Definition",
                   .addedTag = "IdPolLoc",
                   .namesRecord = true};
    AddSteps(spec);
    AddTable(spec, m_form, DrawForm(), Puts(), [this](const QString& page) {
        return m_matrix->MakePage(page == RegularPage ? MatrixKind::Regular : MatrixKind::ShortLoan, this);
    });
    Finish();
}

void frmCirculation_PolicyDef::AddSteps(TableSpec& spec) {
    const PutStep cluster(
        [this](RequestChannel& channel, const SaveContext&) { channel.PutField("CID", ClusterId()); }, "CID");
    const PutStep locations(
        [this](RequestChannel& channel, const SaveContext& context) {
            m_form.locations.PutRows(channel, context.originalKey);
        },
        "LS");
    spec.steps = {{.request = "UpdCrcGpLoc",
                   .caption = spec.saveCaption,
                   .keyTag = {},
                   .fields = {&m_form.locations},
                   .puts = {cluster, locations}},
                  {.request = "UpdCrcLocAlrts",
                   .caption = spec.saveCaption,
                   .keyTag = {},
                   .fields = {&m_form.alerts},
                   .puts = {cluster, PutValue(m_form.alerts)}}};
}

QList<PutStep> frmCirculation_PolicyDef::Puts() const {
    return QList<PutStep>{PutValue(m_form.txtName)} + m_form.SettingPuts() +
           QList<PutStep>{PutValue(m_form.calendars), PutSettings(m_form.vsfPatrons),
                          PutSettings(m_form.vsfItems), OnUpdate(PutOriginalKey("ID")),
                          OnUpdate(PutDraft("NNm", m_form.txtName))};
}

Layout frmCirculation_PolicyDef::DrawForm() {
    const auto selectItems = [this](bool all) {
        auto* grid = findChild<ListGrid*>(m_form.vsfItems.Name());
        if (all)
            grid->SelectKeys(grid->Model().ShownKeys());
        else
            grid->clearSelection();
    };
    return Below(
        {m_form.txtName,
         Tabs("tabPolicy",
              {Page(tr("&Locations"), {m_form.locations, m_form.cboOPACCircDesk}),
               Page(tr("Cale&ndars"), {m_form.calendars}), Page(tr("&Patrons"), {m_form.vsfPatrons}),
               Page(tr("&Items"),
                    {m_form.vsfItems, Beside({Button("cmdItemSettingsMultiple", tr("Sett&ings Multiple..."),
                                                     [this] { AskForSeveralItems(); }),
                                              Button("cmdSelectAllItems", tr("S&elect All"),
                                                     [selectItems] { selectItems(true); }),
                                              Button("cmdUnselectAllItems", tr("&Unselect All"),
                                                     [selectItems] { selectItems(false); })})}),
               m_form.SettingsPage(), Page(MatrixPages::Caption(MatrixKind::Regular), {Slot(RegularPage)}),
               Page(MatrixPages::Caption(MatrixKind::ShortLoan), {Slot(ShortLoanSlot)})})});
}

QString frmCirculation_PolicyDef::ClusterId() const {
    const clsCluster* cluster = App().clusters.Current();
    return cluster ? cluster->sClusterID : QString();
}

// Without the list of posting types the choice keeps what is stored.
void frmCirculation_PolicyDef::BeforeLoad() {
    QList<PickItem> types{{"", tr("(none)")}};
    const qint16 result =
        ReadList(App().channel,
                 {.request = "LstFee",
                  .putKey = [this](RequestChannel& channel) { channel.PutField("CID", ClusterId()); }},
                 {{"PstId", [&](RequestChannel& channel) {
                       types.append({channel.GetField("PstId"), channel.GetField("PstNm")});
                   }}});
    if (result != status::Ok)
        ReportUnableToLoad(App(), this, tr("Posting Types"));
    else
        dynamic_cast<ChoiceField&>(*m_form.Find("cboFinePosting")).SetItems(types);
}

void frmCirculation_PolicyDef::PutGroup(const QString& id) {
    App().channel.PutField("ID", id);
    App().channel.PutField("CID", ClusterId());
}

bool frmCirculation_PolicyDef::ReadGroup(const QString& id, const QString& caption) {
    const auto ask = [&](const QString& request) {
        return ReadList(App().channel,
                        {.request = request,
                         .putKey =
                             [&](RequestChannel& channel) {
                                 PutGroup(id);
                                 channel.PutField("OI", App().OperatorId());
                             },
                         .report =
                             [&](qint16 result) {
                                 App().ReportRequestFailure(result, caption, Current().spec.subject);
                             }},
                        {}) == status::Ok;
    };
    if (!ask("GetCrcGp"))
        return false;
    m_form.Load(App().channel);
    if (!ask("GetCrcPatronGp"))
        return false;
    m_form.vsfPatrons.Load(App().channel);
    m_matrix->SetGroup(GroupOf(id));
    return m_matrix->Load();
}

MatrixGroup frmCirculation_PolicyDef::GroupOf(const QString& id) const {
    return {.id = id,
            .name = m_form.txtName.Stored(),
            .clusterId = ClusterId(),
            .mayEdit = App().profile.MayEdit(Area::Circulation),
            .shortLoans = m_form.ShortLoans()};
}

// A matrix belongs to a stored group.
void frmCirculation_PolicyDef::RefreshOwnControls() {
    const bool isOpen = GetState() == State::Editing || GetState() == State::Viewing;
    if (isOpen && !m_matrix->Group())
        m_matrix->SetGroup(GroupOf(Saving().originalKey));
    else if (!isOpen && m_matrix->Group())
        m_matrix->SetGroup({});
    m_cmdTestLoan->setEnabled(GetState() == State::List && Current().grid->SelectedRow());
}

void frmCirculation_PolicyDef::TestLoan() {
    OpenLoanTest(App(), this, {.cluster = ClusterId(), .policyGroup = Current().grid->SelectedKey()});
}

bool frmCirculation_PolicyDef::FillForm(Table& table, const GridRow& row) {
    // Read anew after a conflict, the alerts that were looked at belong to it.
    QMap<QString, PatronAlerts> alerts;
    if (!m_form.alerts.Known().isEmpty() && !ReadAlertKinds())
        return false;
    for (const QString& location : m_form.alerts.Known()) {
        const std::optional<PatronAlerts> stored = ReadAlerts(location);
        if (!stored)
            return false;
        alerts.insert(location, *stored);
    }
    if (!ReadGroup(row.key, table.spec.editCaption))
        return false;
    for (auto each = alerts.begin(); each != alerts.end(); ++each)
        m_form.alerts.SetStored(each.key(), each.value());
    return true;
}

bool frmCirculation_PolicyDef::PrepareNew(Table& table) {
    const qint16 result = ReadList(App().channel,
                                   {.request = "CircAvail",
                                    .putKey =
                                        [this](RequestChannel& channel) {
                                            PutGroup({});
                                            channel.PutField("OI", App().OperatorId());
                                        },
                                    .report =
                                        [&](qint16 failure) {
                                            App().ReportRequestFailure(failure, "New Circ Policy Definition",
                                                                       table.spec.subject);
                                        }},
                                   {});
    if (result == status::Ok)
        m_form.LoadAvailable(App().channel);
    return result == status::Ok;
}

// The dialog of a location works on a stored group.
bool frmCirculation_PolicyDef::StoreNewGroup() {
    Table& table = Current();
    if (!m_form.IsComplete()) {
        Tell(tr("Please enter the name of the policy group first. It is stored before the settings of its "
                "locations are edited."));
        table.view->FocusField(m_form.txtName);
        return false;
    }
    if (!StoreRecord("Add Circulation Policy Definition"))
        return false;
    // The locations are not stored yet: they stay as they were chosen.
    const QList<std::any> drafts = m_form.TakeDrafts();
    const bool isRead = ReadGroup(Saving().originalKey, "Edit New Circ Policy Definition");
    m_form.GiveDrafts(drafts);
    return isRead;
}

RowAsker frmCirculation_PolicyDef::LocationAsker() {
    RowAsker asker = AskLocationSettings(m_form.locations.Columns(), m_dialogs.location);
    asker.ask = [this, ask = asker.ask](const FormDialogSpec& dialog, QWidget* around, Prompter& prompter,
                                        const GridRow* former,
                                        const RowCheck& check) -> std::optional<GridRow> {
        if (GetState() == State::EditingNew && !StoreNewGroup())
            return {};
        if (!PrepareLocation(*former))
            return {};
        std::optional<GridRow> row = ask(dialog, around, prompter, former, check);
        if (row && !dialog.readOnly)
            m_form.alerts.SetDraft(former->key, m_dialogs.location->Alerts());
        return row;
    };
    return asker;
}

bool frmCirculation_PolicyDef::Ask(const QString& request, const QString& location) {
    return ReadList(App().channel,
                    {.request = request,
                     .putKey =
                         [&](RequestChannel& channel) {
                             if (!location.isEmpty())
                                 channel.PutField("ALRTLOCID", location);
                             channel.PutField("CID", ClusterId());
                         },
                     .report =
                         [this](qint16 result) {
                             App().ReportRequestFailure(result, "Getting Location Alerts",
                                                        Current().spec.subject);
                         }},
                    {}) == status::Ok;
}

std::optional<PatronAlerts> frmCirculation_PolicyDef::ReadAlerts(const QString& location) {
    if (!Ask("GetCrcLocAlrts", location))
        return {};
    RequestChannel& channel = App().channel;
    PatronAlerts shown{channel.GetField("ALRTAVL"), channel.GetField("ALRTFF"), {}};
    while (channel.NextRecord("ALRTID"))
        shown.alerts.AddData({channel.GetField("ALRTID"), channel.GetField("ALRTDISP"),
                              channel.GetField("ALRTUSENAME"), channel.GetField("ALRTUSEBARCODE"),
                              channel.GetField("ALRTUSEPHONE")});
    return shown;
}

std::optional<QList<PickItem>> frmCirculation_PolicyDef::ReadAlertKinds() {
    if (!Ask("GetCrcAlrt"))
        return {};
    QList<PickItem> kinds;
    QHash<QString, QString> names;
    while (App().channel.NextRecord("ALRTID")) {
        kinds.append({App().channel.GetField("ALRTID"), App().channel.GetField("ALRTNM")});
        names.insert(kinds.last().id, kinds.last().text);
    }
    m_form.alerts.SetNames(names);
    return kinds;
}

bool frmCirculation_PolicyDef::PrepareLocation(const GridRow& row) {
    RequestChannel& channel = App().channel;
    LocationSettingsForm& form = *m_dialogs.location;
    LocationSettingsForm::Start start{.location = m_form.locations.NameOf(row),
                                      .isOpacDesk = m_form.locations.Setting(row, "OD") == u"Y",
                                      .isLastPickup = m_form.locations.IsLastPickup(row.key)};
    const std::optional<QList<PickItem>> kinds = ReadAlertKinds();
    if (!kinds)
        return false;
    start.alertKinds = *kinds;
    if (!Ask("GetAutoRetrieveSys"))
        return false;
    form.chkAutomatedStorage.SetUsable(channel.GetFlag("AutoRetrieveSys"));
    if (!m_form.alerts.Has(row.key)) {
        const std::optional<PatronAlerts> alerts = ReadAlerts(row.key);
        if (!alerts)
            return false;
        m_form.alerts.SetStored(row.key, *alerts);
    }
    start.alerts = m_form.alerts.Of(row.key);
    OfferChoices();
    form.SetStart(start);
    return true;
}

void frmCirculation_PolicyDef::OfferChoices() {
    LocationSettingsForm& form = *m_dialogs.location;
    const QList<PickItem> none{{"", tr("(none)")}};
    QList<PickItem> items = none;
    for (const GridRow& row : m_form.vsfItems.Rows())
        items.append({row.key, row.cells.value(0)});
    form.cboDefaultItemType.SetItems(items);
    QList<PickItem> locations = none;
    const PickedLists& lists = m_form.locations.Lists();
    for (const GridRow& row : lists.Selected() + lists.Available())
        locations.append({row.key, m_form.locations.NameOf(row)});
    form.cboDefaultLocation.SetItems(locations);
    const QString printers = "cboPrintLocation";
    if (!App().pickLists.Has(printers)) {
        QList<PickItem> all;
        const qint16 result =
            ReadList(App().channel,
                     {.request = "LstPL",
                      .putKey = [this](RequestChannel& channel) { channel.PutField("CID", ClusterId()); }},
                     {{"ID", [&](RequestChannel& channel) {
                           all.append({channel.GetField("ID"), channel.GetField("Nm")});
                       }}});
        if (result == status::Ok)
            App().pickLists.Set(printers, all);
        else
            ReportUnableToLoad(App(), this, tr("Print Locations"));
    }
    form.cboDefaultPrintLocation.SetItems(none + App().pickLists.Items(printers));
}

void frmCirculation_PolicyDef::AskForSeveralItems() {
    const QStringList keys = findChild<ListGrid*>(m_form.vsfItems.Name())->SelectedKeys();
    if (keys.isEmpty())
        Tell(tr("Please select the item types first."));
    else
        AskItemSettingsMultiple(m_form.vsfItems, keys, *m_dialogs.items, window(), App().prompter);
}

} // namespace sysadmin

#include "moc_frmCirculation_PolicyDef.cpp"
