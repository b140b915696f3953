#include "cataloging/ImportTrialSteps.h"

namespace sysadmin {

namespace {

QString HoldingsInWords(const TriedHoldings& holdings) {
    QStringList words{holdings.location};
    if (!holdings.callNumber.isEmpty())
        words.append(Tr("call number %1 (%2)").arg(holdings.callNumber, holdings.callNumberFrom));
    words += holdings.details;
    if (!holdings.copied.isEmpty())
        words.append(Tr("with the record's %1").arg(holdings.copied.join(", ")));
    return words.join("; ");
}

QString ItemInWords(const TriedItem& item) {
    QStringList words{item.itemType};
    words.append(item.barcode.isEmpty() ? Tr("no barcode") : Tr("barcode %1").arg(item.barcode));
    if (!item.copyNumber.isEmpty())
        words.append(Tr("copy %1").arg(item.copyNumber));
    words += item.details;
    if (item.isMagnetic)
        words.append(Tr("magnetic media"));
    if (!item.isSensitized)
        words.append(Tr("not sensitized"));
    if (!item.statuses.isEmpty())
        words.append(Tr("statuses: %1").arg(item.statuses.join(", ")));
    return words.join("; ");
}

QString LineInWords(const TriedLine& line, const QString& currency) {
    QStringList words{line.fund.isEmpty() ? Tr("no fund") : Tr("fund %1").arg(line.fund),
                      QString("%1 %2").arg(line.price.isEmpty() ? QString("0.00") : line.price, currency),
                      line.copies == u"1" ? Tr("1 copy") : Tr("%1 copies").arg(line.copies),
                      Tr("for %1").arg(line.location)};
    if (!line.itemType.isEmpty())
        words.append(line.itemType);
    if (!line.ledger.isEmpty())
        words.append(Tr("ledger %1").arg(line.ledger));
    if (!line.period.isEmpty())
        words.append(line.period);
    return (words + line.details).join("; ");
}

/// The purchase order in which a line stands.
QString OrderInWords(const ImportTrialRule& rule, const TriedRecord& record, const QString& poNumber) {
    const auto chosen = [&](const char* name) { return rule.chosen.value(name); };
    QStringList words{!poNumber.isEmpty() ? Tr("PO %1").arg(poNumber)
                      : rule.onePoPerBib  ? Tr("one for record %1").arg(record.number)
                                          : Tr("one for the whole file")};
    words.append(Tr("vendor %1").arg(rule.orders.value("CodeVendor")));
    for (const char* name : {"AcctVendor", "OrderType", "OrderLocation"})
        if (!chosen(name).isEmpty())
            words.append(chosen(name));
    words.append(rule.approves ? Tr("approved at once") : Tr("pending"));
    return words.join("; ");
}

QString RecordInWords(const TriedRecord& record, const ImportTrialRule& rule) {
    QStringList words{OutcomeInWords(record)};
    if (!record.same.isEmpty())
        words.append(Tr("repeats %1").arg(record.same));
    const bool isWritten =
        record.outcome != TriedRecord::Outcome::Left && record.outcome != TriedRecord::Outcome::NotLoaded;
    if (isWritten && !rule.owningLibrary.isEmpty())
        words.append(Tr("owned by %1").arg(rule.owningLibrary));
    const bool isThere = isWritten && record.outcome != TriedRecord::Outcome::Added;
    if (isThere && rule.keepsSuppression)
        words.append(Tr("suppression unchanged"));
    else if (isWritten && rule.suppresses && !record.isAuthority)
        words.append(Tr("suppressed in the OPAC"));
    return words.join("; ");
}

} // namespace

QString OutcomeInWords(const TriedRecord& record) {
    switch (record.outcome) {
    case TriedRecord::Outcome::Added:
        return record.isAuthority ? Tr("Authority record is added") : Tr("Bib is added");
    case TriedRecord::Outcome::Replaced:
        return record.isAuthority ? Tr("Authority record is replaced") : Tr("Bib is replaced");
    case TriedRecord::Outcome::Merged:
        return Tr("Merged into the library's record");
    case TriedRecord::Outcome::MergedBothWays:
        return Tr("Merged with the library's record, both ways");
    case TriedRecord::Outcome::Left:
        return Tr("Not loaded: the library has it");
    default:
        return Tr("Not loaded");
    }
}

QList<std::pair<QString, QString>> TrialInWords(const TriedRecord& record, const ImportTrialRule& rule) {
    QList<std::pair<QString, QString>> lines{{Tr("Record"), RecordInWords(record, rule)}};
    for (const TriedHoldings& holdings : record.holdings) {
        lines.append({record.updates ? Tr("MFHD is updated") : Tr("MFHD"), HoldingsInWords(holdings)});
        for (const TriedItem& item : holdings.items)
            lines.append({record.updates ? Tr("Item is updated") : Tr("Item"), ItemInWords(item)});
    }
    QStringList orders;
    for (const TriedLine& line : record.lines) {
        if (!orders.contains(line.poNumber)) {
            orders.append(line.poNumber);
            lines.append({Tr("Purchase order"), OrderInWords(rule, record, line.poNumber)});
        }
        lines.append({Tr("Order line"), LineInWords(line, rule.orders.value("cCurrency"))});
    }
    for (const QString& text : record.defaults)
        lines.append({Tr("Default"), text});
    for (const QString& text : record.problems)
        lines.append({Tr("Wrong"), text});
    return lines;
}

} // namespace sysadmin
