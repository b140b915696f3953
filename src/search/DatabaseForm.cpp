#include "search/DatabaseForm.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "search/frmSearch_DatabaseAttributesSettings.h"
#include "wire/SearchDatabases.h"

namespace sysadmin {

namespace databases = wire::databases;

namespace {

QList<PickItem> Types() {
    return {{databases::SystemType, DatabaseTypeText(databases::SystemType)},
            {databases::TargetType, DatabaseTypeText(databases::TargetType)}};
}

QString Range(int most) {
    return QString("(0-%1)").arg(most);
}

} // namespace

QString DatabaseTypeText(const QString& type) {
    return type == databases::TargetType   ? QString("Z39.50")
           : type == databases::SystemType ? QString("Tessary")
                                           : type;
}

ServiceFields::ServiceFields(Form& form, const QString& theRole, const QString& frameCaption,
                             const QString& addressTag, const QString& portTag)
    : role(theRole)
    , caption(frameCaption)
    , address(form, {.name = "txtAddr" + theRole,
                     .tag = addressTag,
                     .caption = Form::tr("Addr:"),
                     .maxLength = databases::AddressLength,
                     .accessible = frameCaption + ' ' + Form::tr("Addr:")})
    , port(form, {.name = "txtPort" + theRole,
                  .tag = portTag,
                  .caption = Form::tr("Port:"),
                  .accessible = frameCaption + ' ' + Form::tr("Port:"),
                  .most = databases::MostPort}) {}

DatabaseForm::DatabaseForm()
    : txtCode(*this, {.name = "txtCode",
                      .tag = "C",
                      .caption = tr("Code:"),
                      .maxLength = databases::CodeLength,
                      .required = true,
                      .column = {tr("Codes"), 110}})
    , txtName(*this, {.name = "txtName",
                      .tag = "Nm",
                      .caption = tr("Name:"),
                      .maxLength = databases::NameLength,
                      .required = true,
                      .column = {tr("Names")}})
    , cboType(*this, {.name = "cboType",
                      .tag = "Pr",
                      .caption = tr("Type:"),
                      .required = true,
                      .initial = databases::TargetType,
                      .column = {tr("Types"), 80},
                      .options = Types()})
    , chkPublicUse(*this, {.name = "chkPublicUse", .tag = "PU", .caption = tr("Public Use")})
    , chkUB(*this, {.name = "chkUB", .tag = "DBU", .caption = tr("UB Database")})
    , txtKey(
          *this,
          {.name = "txtKey", .tag = "DBK", .caption = tr("Database Key:"), .maxLength = databases::KeyLength})
    , services{std::make_unique<ServiceFields>(*this, "Opac", tr("Opac"), "ADRO", "POPAC"),
               std::make_unique<ServiceFields>(*this, "Circ", tr("Circ"), "ADRCI", "PCIRC"),
               std::make_unique<ServiceFields>(*this, "CallSlip", tr("CallSlip"), "ADRCA", "PCALL"),
               std::make_unique<ServiceFields>(*this, "Sysadmin", tr("Sysadmin"), "ADRS", "PSYS"),
               std::make_unique<ServiceFields>(*this, "TPDS", tr("TPDS"), "ADRT", "PTPDS"),
               std::make_unique<ServiceFields>(*this, "TXWS", tr("TXWS"), "ADRTXWS", "PTXWS")}
    , txtDatabaseName(*this, {.name = "txtDatabaseName",
                              .tag = "DN",
                              .caption = tr("Database Name:"),
                              .maxLength = databases::NameLength})
    , txtUserID(
          *this,
          {.name = "txtUserID", .tag = "OI", .caption = tr("User ID:"), .maxLength = databases::UserLength})
    , txtPassword(*this,
                  {.name = "txtPassword",
                   .tag = "PW",
                   .caption = tr("Password:"),
                   .maxLength = databases::PasswordLength},
                  "PC")
    , txtWeight(*this, {.name = "txtWeight",
                        .tag = "W",
                        .caption = tr("Weight:"),
                        .unit = Range(databases::MostWeight),
                        .most = databases::MostWeight})
    , txtMaxHit(
          *this,
          {.name = "txtMaxHit", .tag = "MH", .caption = tr("Maximum Hits:"), .most = databases::MostHits})
    , txtTimeout(*this, {.name = "txtTimeout",
                         .tag = "DCTO",
                         .caption = tr("Timeout:"),
                         .unit = tr("seconds"),
                         .most = databases::MostTimeout})
    , chkOPACSuppress(*this, {.name = "chkOPACSuppress", .tag = "OS", .caption = tr("OPAC Suppress")})
    , chkStaffSuppress(*this, {.name = "chkStaffSuppress", .tag = "SS", .caption = tr("Staff Suppress")})
    , cboHoldingsHook(*this, {.name = "cboHoldingsHook",
                              .tag = "DID",
                              .caption = tr("Hook to Holdings:"),
                              .source = {.request = "AvlDB",
                                         .idTag = "DID",
                                         .textTag = "DNm",
                                         .none = tr("<none>"),
                                         .caption = "Load Database Definitions"}})
    , cboCharSet(*this, {.name = "cboCharSet",
                         .tag = "CSID",
                         .caption = tr("Source Character Set:"),
                         .source = {.request = "GETCHARSETS",
                                    .idTag = "CSID",
                                    .textTag = "CSN",
                                    .none = tr("<as the record says>"),
                                    .caption = "Load Character Sets"}})
    , vsfAttributes(*this, {.name = "vsfAttributes", .accessible = tr("Attributes")}, AttributeColumns(),
                    AttributeRows())
    , accessGroups(*this, {.name = "fraAccessGroups", .tag = "SI"},
                   {.availableGrid = "vsfAvailableGroups",
                    .availableCaption = tr("Available Access Groups"),
                    .selectedGrid = "vsfSelectedGroups",
                    .selectedCaption = tr("Selected Access Groups")},
                   {.tags = {"AI", "AN", "SI", "SN"}})
    , vsfRemoteClusters(
          *this, {.name = "vsfRemoteClusters", .displayOnly = true, .accessible = tr("Remote clusters")},
          {{tr("Remote Cluster Name")}}) {
    vsfAttributes.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        for (const GridRow& other : vsfAttributes.Rows())
            if (!(former && other.key == former->key) &&
                other.cells.value(0).compare(row.cells.value(0), Qt::CaseInsensitive) == 0)
                return tr("The search code %1 has attributes already.").arg(row.cells.value(0));
        return QString();
    };
    const auto isTarget = [this] { return IsTarget(); };
    When(isTarget).Enable(txtDatabaseName, txtMaxHit, cboCharSet, vsfAttributes);
    When(isTarget).Disable(chkUB, txtKey);
    for (size_t i = 1; i < services.size(); ++i)
        When(isTarget).Disable(services[i]->address, services[i]->port);
    When([this] { return IsLocal(); }).Disable(txtCode, cboType);
}

bool DatabaseForm::IsTarget() const {
    return cboType.Draft() == databases::TargetType;
}

bool DatabaseForm::IsLocal() const {
    return txtCode.Stored() == databases::LocalCode;
}

QList<PutStep> DatabaseForm::Puts() const {
    QList<PutStep> puts{OnUpdate(PutOriginalKey("C")), PutDraft("NCd", txtCode)};
    for (const Field* field : Fields())
        if (field != &txtCode && field != &vsfRemoteClusters && field != &accessGroups &&
            field != &vsfAttributes)
            puts.append(PutValue(*field));
    return puts << PutValue(accessGroups) << PutValue(vsfAttributes);
}

} // namespace sysadmin
