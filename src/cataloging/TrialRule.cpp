#include "cataloging/TrialRule.h"

#include "cataloging/ImportRuleForm.h"
#include "cataloging/frmCataloging_BulkImportOrderSettings.h"
#include "core/data/RequestChannel.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

using Part = bulkimport::Setting::Part;

TriedPlace PlaceOf(const MarcPlaceField& place) {
    return {place.Draft(MarcPlaceField::FieldTag), place.Draft(MarcPlaceField::Subfield),
            place.Draft(MarcPlaceField::Indicator1), place.Draft(MarcPlaceField::Indicator2)};
}

QList<TriedPlace> PlacesOf(const PlaceList& list) {
    QList<TriedPlace> places;
    for (const GridRow& row : list.Rows())
        places.append({row.cells.value(PlaceColumn::Field), row.cells.value(PlaceColumn::Subfield),
                       row.cells.value(PlaceColumn::Indicator1), row.cells.value(PlaceColumn::Indicator2)});
    return places;
}

QHash<QString, QString> ValuesOf(const ImportSettings& settings, Part part) {
    QHash<QString, QString> values;
    for (const bulkimport::Setting& setting : bulkimport::SettingsOf(part))
        values.insert(setting.name, settings.Value(setting.name));
    return values;
}

QString NameOf(const ChoiceField& choice) {
    return choice.IsBlank() ? QString() : choice.DisplayText();
}

QStringList TextsOf(const QList<PickItem>& items) {
    QStringList texts;
    for (const PickItem& item : items)
        texts.append(item.text);
    return texts;
}

QStringList IdsOf(const QList<PickItem>& items) {
    QStringList ids;
    for (const PickItem& item : items)
        ids.append(item.id);
    return ids;
}

QString IdOf(const QList<PickItem>& items, const QString& text) {
    for (const PickItem& item : items)
        if (item.text.compare(text, Qt::CaseInsensitive) == 0)
            return item.id;
    return {};
}

/// The names of ledgers without their fiscal periods, too: records know no more.
QStringList LedgerNames(const QList<PickItem>& ledgers) {
    QStringList names = TextsOf(ledgers);
    for (const PickItem& ledger : ledgers)
        names.append(ledger.text.section(", ", 0, -2));
    names.removeDuplicates();
    return names;
}

/// The ledger of the name; of several years' the one in the period.
QString LedgerId(const QList<PickItem>& ledgers, const QString& name, const QString& period) {
    if (const QString id = IdOf(ledgers, name); !id.isEmpty())
        return id;
    QString found;
    for (const PickItem& ledger : ledgers)
        if (ledger.text.section(", ", 0, -2).compare(name, Qt::CaseInsensitive) == 0 &&
            (found.isEmpty() || ledger.text.section(", ", -1) == period))
            found = ledger.id;
    return found;
}

} // namespace

qint16 CallNumberPolicies::Read(RequestChannel& channel) {
    qint16 status = wire::status::Ok;
    hierarchies = ReadHierarchies(channel, status);
    if (status != wire::status::Ok)
        return status;
    status = channel.SendRequest("LstCatGpLoc");
    while (status == wire::status::Ok && channel.NextRecord("LI"))
        locations.insert(channel.GetField("LI"), {channel.GetField("GN"), channel.GetField("CH")});
    return status;
}

void CallNumberPolicies::Settle(TriedMapping& mapping, const QString& location) const {
    if (!mapping.hierarchy.isEmpty())
        return;
    const OfLocation policy = locations.value(location);
    for (const CallNumberHierarchy& hierarchy : hierarchies) {
        if (policy.hierarchy.isEmpty() ? !hierarchy.isDefault : hierarchy.id != policy.hierarchy)
            continue;
        mapping.hierarchy = hierarchy.name;
        mapping.hierarchyWhy = policy.hierarchy.isEmpty()
                                   ? Form::tr("it is the default one")
                                   : Form::tr("the policy group \"%1\" names it").arg(policy.group);
    }
}

ImportTrialRule RuleToTry(const ImportRuleForm& form, const OrderSettingsForm& orders,
                          const CallNumberPolicies& callNumbers) {
    ImportTrialRule rule{.mode = qMax(0, form.optBulkLoad.Draft().toInt()),
                         .usesExistingBibs = form.chkUse4DupBibs.IsOn(),
                         .copies852 = form.chkCopy852.IsOn(),
                         .copies856 = form.chkCopy856.IsOn(),
                         .onePoPerBib = form.chkOnePOPerBib.IsOn(),
                         .approves = form.chkAutoApprove.IsOn(),
                         .suppresses = form.chkBatchOpacSuppress.IsOn(),
                         .keepsSuppression = form.chkIgnoreOPACSuppress.IsOn(),
                         .owningLibrary = NameOf(form.cboOwningLibrary),
                         .magneticMedia = PlaceOf(form.magneticMedia),
                         .magneticValue = form.txtMagneticMatch.Draft(),
                         .sensitize = PlaceOf(form.sensitize),
                         .sensitizeValue = form.txtSensitizeMatch.Draft(),
                         .itemTypes = PlacesOf(form.vsfItemType),
                         .barcodes = PlacesOf(form.vsfBarcode),
                         .location = ValuesOf(form.location, Part::Location),
                         .multiple = ValuesOf(form.multiple, Part::Multiple),
                         .copyNumbers = ValuesOf(form.copyNumbers, Part::CopyNumbers),
                         .orders = ValuesOf(form.orders, Part::Orders),
                         .chosen = orders.ChosenNames()};
    for (const FlagField* status : std::initializer_list<const FlagField*>{
             &form.chkAtBindery, &form.chkCircReview, &form.chkDamaged, &form.chkInProcess, &form.chkLost,
             &form.chkMissing, &form.chkWithdrawn, &form.chkCatalogingReview})
        if (status->IsOn())
            rule.statuses.append(status->PlainCaption());
    for (const GridRow& stored : form.vsfMapping.Rows()) {
        const GridRow row = form.vsfMapping.ShownRow(stored);
        rule.mappings.append(
            {row.cells.value(MappingColumn::MarcItem), row.cells.value(MappingColumn::ItemType),
             row.cells.value(MappingColumn::MarcLocation), row.cells.value(MappingColumn::Location),
             row.cells.value(MappingColumn::Hierarchy)});
        callNumbers.Settle(rule.mappings.last(), stored.cells.value(MappingColumn::Location));
    }
    return rule;
}

TriedLibrary LibraryToTry(const OrderSettingsForm& orders) {
    const QList<PickItem> ledgers = orders.EntriesOf("DefaultLedgerName");
    const QList<PickItem> periods = orders.EntriesOf("DefaultFiscalPeriodName");
    TriedLibrary library{.funds = IdsOf(orders.EntriesOf("DefaultCodeFund")),
                         .lineItemTypes = TextsOf(orders.EntriesOf("DefaultLineItemType")),
                         .ledgers = LedgerNames(ledgers),
                         .fiscalPeriods = TextsOf(periods)};
    library.checkFund = [&orders, ledgers, periods](const QString& fund, const QString& ledger,
                                                    const QString& period) {
        return orders
            .AskFunds({fund, LedgerId(ledgers, ledger, period), IdOf(periods, period)}, [](qint16) {})
            .value_or(QString());
    };
    return library;
}

} // namespace sysadmin
