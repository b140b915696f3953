#include "cataloging/ImportTrial.h"

#include "cataloging/ImportTrialSteps.h"
#include "wire/DuplicateDetection.h"

#include <algorithm>

namespace sysadmin {

namespace bulkimport = wire::bulkimport;
namespace handlings = wire::duplicates::handling;

namespace importtrial {

/// The value in the place; `field` is the one that is gone through, where the place is in such a field.
QString Trial::Found(const marc::Record& record, const TriedPlace& place, const marc::Field* field) const {
    if (!place.IsSet())
        return {};
    if (field && field->tag == place.field)
        return FitsPlace(*field, place) ? ValueIn(*field, place.subfield) : QString();
    for (const marc::Field& each : record.fields)
        if (FitsPlace(each, place))
            if (const QString value = ValueIn(each, place.subfield); !value.isEmpty())
                return value;
    return {};
}

QString Trial::FirstOf(const marc::Record& record, const QList<TriedPlace>& places) const {
    for (const TriedPlace& place : places)
        if (const QString value = Found(record, place); !value.isEmpty())
            return value;
    return {};
}

/// Why a record has nothing in the place: the field is missing, or only its indicators are others.
QString Trial::Near(const marc::Record& record, const TriedPlace& place) const {
    if (!place.IsSet())
        return Tr("no field is said");
    bool isThere = false;
    for (const marc::Field& field : record.fields) {
        if (field.tag == place.field && !FitsPlace(field, place) && !ValueIn(field, place.subfield).isEmpty())
            return Tr("%1 is there with other indicators than the rule's").arg(place.field);
        isThere = isThere || field.tag == place.field;
    }
    return isThere ? Tr("%1 is empty").arg(NameOf(place)) : Tr("no %1").arg(NameOf(place));
}

/// Which record of the library's this one repeats, and what becomes of both; false when nothing else is made
/// of it.
bool Trial::Match(const marc::Record& record) {
    using Outcome = TriedRecord::Outcome;
    if (record.IsHoldings()) {
        m_tried.outcome = Outcome::NotLoaded;
        Problem(Tr("This is a holdings record: it is not loaded."));
        return false;
    }
    m_tried.isAuthority = record.IsAuthority();
    const QString handling = m_tried.isAuthority ? m_rule.authorityHandling : m_rule.bibHandling;
    const TriedMatch match = m_library.findSame ? m_library.findSame(record) : TriedMatch();
    m_tried.same = match.same;
    if (!match.possible.isEmpty())
        Problem(Tr("It may be a duplicate: it is near to %1.").arg(match.possible));
    const bool isThere = !m_tried.same.isEmpty();
    if (handling.isEmpty())
        Problem(m_tried.isAuthority ? Tr("The rule has no authority duplicate profile: the record is added.")
                                    : Tr("The rule has no bib duplicate profile: the record is added."));
    m_tried.outcome = !isThere                                ? Outcome::Added
                      : handling == handlings::Replace        ? Outcome::Replaced
                      : handling == handlings::Merge          ? Outcome::Merged
                      : handling == handlings::MergeBothWays  ? Outcome::MergedBothWays
                      : handling == handlings::AddConditional ? Outcome::Left
                                                              : Outcome::Added;
    if (!isThere && (m_tried.isAuthority ? m_rule.discardsAuthorities : m_rule.discardsBibs)) {
        m_tried.outcome = Outcome::NotLoaded;
        Default(Tr("Record"), Tr("not loaded"),
                Tr("the duplicate profile discards what the library has not"));
        return false;
    }
    if (m_tried.isAuthority || m_rule.Mode().kind == bulkimport::LoadMode::Kind::BibsOnly)
        return false;
    if (m_rule.Mode().updates) {
        m_tried.updates = true;
        if (!isThere)
            Problem(Tr("The library has no such record whose MFHDs and items could be updated."));
        return isThere;
    }
    if (isThere && m_tried.outcome != Outcome::Added && !m_rule.usesExistingBibs) {
        Default(Tr("MFHDs, items and orders"), Tr("none"),
                Tr("the library has the record, and the rule makes "
                   "nothing for existing ones"));
        return false;
    }
    return true;
}

/// The mapping for the codes: the more of them it names itself the nearer it is, the location before the
/// item.
const TriedMapping* Trial::MappingOf(const QString& item, const QString& location) {
    const TriedMapping* nearest = nullptr;
    int best = -1;
    for (const TriedMapping& mapping : m_rule.mappings) {
        const bool anyItem = mapping.marcItem == bulkimport::AnyCode;
        const bool anyLocation = mapping.marcLocation == bulkimport::AnyCode;
        if ((!anyItem && !IsSame(mapping.marcItem, item)) ||
            (!anyLocation && !IsSame(mapping.marcLocation, location)))
            continue;
        if (const int rank = (anyLocation ? 0 : 2) + (anyItem ? 0 : 1); rank > best) {
            best = rank;
            nearest = &mapping;
        }
    }
    if (!nearest)
        Problem(Tr("No mapping takes the item type \"%1\" at the location \"%2\".").arg(item, location));
    else if (!location.isEmpty() && nearest->marcLocation == bulkimport::AnyCode)
        Default(Tr("Location"), nearest->location, Tr("no mapping names \"%1\"").arg(location));
    return nearest;
}

TriedHoldings* Trial::HoldingsAt(const TriedMapping& mapping, const marc::Record& record, bool collapse) {
    if (collapse)
        for (TriedHoldings& holdings : m_tried.holdings)
            if (holdings.location == mapping.location)
                return &holdings;
    TriedHoldings holdings{.location = mapping.location};
    for (const marc::Field& field : record.fields) {
        const int tag = field.tag.toInt();
        const bool isHoldings = (tag >= 852 && tag <= 855) || (tag >= 863 && tag <= 878);
        if ((m_rule.copies852 && isHoldings) || (m_rule.copies856 && tag == 856))
            holdings.copied.append(field.tag);
    }
    if (!m_tried.updates)
        TakeCallNumber(mapping, record, holdings);
    m_tried.holdings.append(holdings);
    return &m_tried.holdings.last();
}

/// The call number of a new holdings record. An 852 that is copied brings its own.
void Trial::TakeCallNumber(const TriedMapping& mapping, const marc::Record& record, TriedHoldings& holdings) {
    const bool isCopied =
        m_rule.copies852 && std::any_of(record.fields.begin(), record.fields.end(), [](const auto& field) {
            return field.tag == u"852" && !field.First(u'h').isEmpty();
        });
    const auto named = [&](const CallNumberHierarchy& each) { return each.name == mapping.hierarchy; };
    const auto hierarchy = std::find_if(m_library.hierarchies.begin(), m_library.hierarchies.end(), named);
    if (isCopied || hierarchy == m_library.hierarchies.end())
        return;
    if (!mapping.hierarchyWhy.isEmpty())
        Default(Tr("Call number hierarchy"), hierarchy->name, mapping.hierarchyWhy);
    const CallNumberSearch search = SearchCallNumber(record, *hierarchy);
    if (search.taken < 0) {
        Default(Tr("Call number"), Tr("none"), Tr("no place of \"%1\" holds one").arg(hierarchy->name));
        return;
    }
    holdings.callNumber = search.CallNumber();
    holdings.callNumberFrom = Tr("%1, \"%2\"").arg(hierarchy->places[search.taken].Name(), hierarchy->name);
    if (!search.doubt.isEmpty())
        Problem(search.doubt);
}

void Trial::MakeSingle(const marc::Record& record) {
    const TriedPlace place = PlaceOf(m_rule.location, bulkimport::LocationPlace());
    const QString location = Found(record, place);
    if (location.isEmpty())
        Default(Tr("MARC location"), bulkimport::AnyCode, Near(record, place));
    const bool createsItems = m_rule.Mode().createsItems;
    const QString item = createsItems ? FirstOf(record, m_rule.itemTypes) : QString();
    if (createsItems && item.isEmpty())
        Default(Tr("MARC item"), bulkimport::AnyCode,
                m_rule.itemTypes.isEmpty() ? Tr("no item type field is said")
                                           : Near(record, m_rule.itemTypes.first()));
    const TriedMapping* mapping = MappingOf(item, location);
    if (!mapping)
        return;
    TriedHoldings* holdings = HoldingsAt(*mapping, record, false);
    if (createsItems)
        holdings->items.append(ItemOf(record, nullptr, mapping->itemType, 0, 0));
    if (m_rule.Mode().createsOrders)
        AddLine(record, nullptr, mapping->location);
}

void Trial::MakeMultiple(const marc::Record& record) {
    TriedPlace main = PlaceOf(m_rule.multiple, bulkimport::MainPlace());
    const auto subfieldOf = [&](const marc::Field& field, const QString& name) {
        const QString code = m_rule.multiple.value(name);
        return code.isEmpty() ? QString() : field.First(code[0]).trimmed();
    };
    const QString locationCode = m_rule.multiple.value("SubLocCode");
    const bool collapse = m_rule.multiple.value("CollapseMFHDS") == u"Y";
    const bool createsItems = m_rule.Mode().createsItems || m_rule.Mode().updates;
    int inRecord = 0;
    bool any = false;
    for (const marc::Field& field : record.fields) {
        if (!FitsPlace(field, main))
            continue;
        any = true;
        QString location = subfieldOf(field, "SubLocCode");
        if (location.isEmpty())
            location = Found(record, PlaceOf(m_rule.location, bulkimport::LocationPlace()));
        if (location.isEmpty())
            Default(Tr("MARC location"), bulkimport::AnyCode,
                    Tr("%1 has no $%2").arg(field.tag, locationCode));
        QString item = subfieldOf(field, "SubItemType");
        if (item.isEmpty() && createsItems)
            item = FirstOf(record, m_rule.itemTypes);
        const TriedMapping* mapping = MappingOf(item, location);
        if (!mapping)
            continue;
        TriedHoldings* holdings = HoldingsAt(*mapping, record, collapse);
        static const QList<std::pair<QString, const char*>> parts{
            {"SubMfhdCopyNumber", QT_TRANSLATE_NOOP("ImportTrial", "copy")},
            {"SubCNPrefix", QT_TRANSLATE_NOOP("ImportTrial", "call number prefix")},
            {"SubCNSuffix", QT_TRANSLATE_NOOP("ImportTrial", "call number suffix")},
            {"SubControlNumber", QT_TRANSLATE_NOOP("ImportTrial", "shelving control number")},
            {"SubFormTitle", QT_TRANSLATE_NOOP("ImportTrial", "shelving form of title")},
            {"SubPieceDes", QT_TRANSLATE_NOOP("ImportTrial", "piece designation")},
            {"SubPublicNote", QT_TRANSLATE_NOOP("ImportTrial", "public note")},
            {"SubNonPublicNote", QT_TRANSLATE_NOOP("ImportTrial", "nonpublic note")}};
        for (const auto& [name, caption] : parts)
            if (const QString value = subfieldOf(field, name); !value.isEmpty())
                holdings->details.append(Tr(caption) + ' ' + value);
        if (createsItems)
            holdings->items.append(
                ItemOf(record, &field, mapping->itemType, inRecord, int(holdings->items.size())));
        if (m_rule.Mode().createsOrders)
            AddLine(record, &field, mapping->location);
        ++inRecord;
    }
    if (!any)
        Problem(Tr("The record has no MFHD or item: %1.").arg(Near(record, main)));
}

TriedItem Trial::ItemOf(const marc::Record& record, const marc::Field* field, const QString& itemType,
                        int inRecord, int inHoldings) {
    TriedItem item{.itemType = itemType, .statuses = m_rule.statuses};
    const auto subfieldOf = [&](const char* name) {
        const QString code = m_rule.multiple.value(name);
        return field && !code.isEmpty() ? field->First(code[0]).trimmed() : QString();
    };
    item.barcode = field ? subfieldOf("SubBarCode") : FirstOf(record, m_rule.barcodes);
    if (item.barcode.isEmpty())
        Default(Tr("Barcode"), Tr("none"),
                field                       ? Tr("the field has none")
                : m_rule.barcodes.isEmpty() ? Tr("no barcode field is said")
                                            : Near(record, m_rule.barcodes.first()));
    else if (const int before = m_barcodes.value(item.barcode); before != 0)
        Problem(before == record.number
                    ? Tr("The barcode %1 comes twice in the record.").arg(item.barcode)
                    : Tr("The barcode %1 is in record %2 as well.").arg(item.barcode).arg(before));
    else
        m_barcodes.insert(item.barcode, record.number);
    item.copyNumber = CopyNumber(record, field, inRecord, inHoldings);
    if (!field) {
        item.isMagnetic = m_rule.magneticMedia.IsSet() && !m_rule.magneticValue.isEmpty() &&
                          IsSame(Found(record, m_rule.magneticMedia), m_rule.magneticValue);
        item.isSensitized = !(m_rule.sensitize.IsSet() && !m_rule.sensitizeValue.isEmpty() &&
                              IsSame(Found(record, m_rule.sensitize), m_rule.sensitizeValue));
        return item;
    }
    static const QList<std::pair<const char*, const char*>> parts{
        {"SubEnum", QT_TRANSLATE_NOOP("ImportTrial", "enumeration")},
        {"SubChron", QT_TRANSLATE_NOOP("ImportTrial", "chronology")},
        {"SubYear", QT_TRANSLATE_NOOP("ImportTrial", "year")},
        {"SubCaption", QT_TRANSLATE_NOOP("ImportTrial", "caption")},
        {"SubFreetext", QT_TRANSLATE_NOOP("ImportTrial", "free text")},
        {"SubNote", QT_TRANSLATE_NOOP("ImportTrial", "note")},
        {"SubChgNote", QT_TRANSLATE_NOOP("ImportTrial", "charge note")}};
    for (const auto& [name, caption] : parts)
        if (const QString value = subfieldOf(name); !value.isEmpty())
            item.details.append(Tr(caption) + ' ' + value);
    if (const QString text = subfieldOf("SubPrice"); !text.isEmpty()) {
        if (const auto amount = AmountIn(text))
            item.details.append(Tr("price %1").arg(*amount));
        else
            Problem(Tr("The price \"%1\" of an item is no amount.").arg(text));
    }
    if (const QString text = subfieldOf("SubPieces"); !text.isEmpty()) {
        bool isNumber = false;
        if (const int pieces = text.toInt(&isNumber); isNumber && pieces > 0)
            item.details.append(Tr("pieces %1").arg(pieces));
        else
            Problem(Tr("\"%1\" is no number of pieces.").arg(text));
    }
    return item;
}

QString Trial::CopyNumber(const marc::Record& record, const marc::Field* field, int inRecord,
                          int inHoldings) {
    const QHash<QString, QString>& settings = field ? m_rule.multiple : m_rule.copyNumbers;
    const QString code = m_rule.multiple.value("SubCopyNumber");
    const QString text = !field           ? Found(record, PlaceOf(settings, bulkimport::CopyNumberPlace()))
                         : code.isEmpty() ? QString()
                                          : field->First(code[0]).trimmed();
    bool isNumber = false;
    const int said = text.toInt(&isNumber);
    if (isNumber && said >= 0)
        return QString::number(said);
    if (!text.isEmpty())
        Problem(Tr("\"%1\" is no copy number.").arg(text));
    const QString method = settings.value("CopyNumMethod");
    if (method.isEmpty())
        return {};
    const int start = settings.value("CopyNumStart").isEmpty() ? 1 : settings.value("CopyNumStart").toInt();
    return QString::number(start + (method == bulkimport::copynumbers::PerRecord     ? inRecord
                                    : method == bulkimport::copynumbers::PerHoldings ? inHoldings
                                                                                     : 0));
}

TriedRecord Trial::Try(const marc::Record& record) {
    m_tried = {};
    m_tried.number = record.number;
    m_tried.title = TrialTitle(record);
    if (Match(record)) {
        if (m_rule.Mode().kind == bulkimport::LoadMode::Kind::Single)
            MakeSingle(record);
        else
            MakeMultiple(record);
    }
    m_tried.defaults.removeDuplicates();
    return m_tried;
}

} // namespace importtrial

QString TrialTitle(const marc::Record& record) {
    QString title = record.Title().trimmed();
    while (!title.isEmpty() && QString(" /:;,=").contains(title.back()))
        title.chop(1);
    return title;
}

qsizetype TriedRecord::ItemCount() const {
    qsizetype count = 0;
    for (const TriedHoldings& each : holdings)
        count += each.items.size();
    return count;
}

QList<TriedRecord> TryImport(const QList<marc::Record>& records, const ImportTrialRule& rule,
                             const TriedLibrary& library) {
    importtrial::Trial trial(rule, library);
    QList<TriedRecord> tried;
    for (const marc::Record& record : records)
        tried.append(trial.Try(record));
    return tried;
}

} // namespace sysadmin
