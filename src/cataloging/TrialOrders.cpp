#include "cataloging/ImportTrialSteps.h"

namespace sysadmin::importtrial {

namespace bulkimport = wire::bulkimport;

namespace {

using Element = bulkimport::OrderElement::Kind;

/// The entry of the list that reads so, whatever the letter case; empty: there is none.
QString Known(const QStringList& list, const QString& value) {
    for (const QString& known : list)
        if (IsSame(known, value))
            return known;
    return {};
}

} // namespace

void Trial::AddLine(const marc::Record& record, const marc::Field* field, const QString& location) {
    TriedLine line{.location = location};
    const auto settingOf = [&](const bulkimport::OrderElement& element) {
        return m_rule.chosen.value(element.fallback, m_rule.orders.value(element.fallback));
    };
    for (const bulkimport::OrderElement& element : bulkimport::OrderElements()) {
        const TriedPlace place = PlaceOf(m_rule.orders, element.place);
        const QString text = Found(record, place, field);
        const QString fallback = settingOf(element);
        // What the record says, unless that is nothing; else the default, and why.
        const auto take = [&](const QString& what, const QString& value, const QString& wrong) {
            if (!value.isEmpty())
                return value;
            if (!text.isEmpty())
                Problem(wrong);
            if (!fallback.isEmpty())
                Default(what, fallback, text.isEmpty() ? Near(record, place) : Tr("the record's is wrong"));
            return fallback;
        };
        const auto known = [&](const QStringList& list) { return list.isEmpty() ? text : Known(list, text); };
        switch (element.kind) {
        case Element::LineItemType:
            line.itemType = take(Tr("Line item type"), known(m_library.lineItemTypes),
                                 Tr("There is no line item type \"%1\".").arg(text));
            break;
        case Element::Fund:
            line.fund = take(Tr("Fund"), known(m_library.funds), Tr("There is no fund \"%1\".").arg(text));
            if (line.fund.isEmpty())
                Problem(Tr("The order line has no fund."));
            break;
        case Element::LedgerName:
            line.ledger =
                take(Tr("Ledger"), known(m_library.ledgers), Tr("There is no ledger \"%1\".").arg(text));
            break;
        case Element::FiscalPeriodName:
            line.period = take(Tr("Fiscal period"), known(m_library.fiscalPeriods),
                               Tr("There is no fiscal period \"%1\".").arg(text));
            break;
        case Element::Price:
            line.price = take(Tr("Price"), AmountIn(text).value_or(QString()),
                              Tr("The price \"%1\" is no amount.").arg(text));
            if (line.price.isEmpty())
                Default(Tr("Price"), "0.00", Near(record, place));
            break;
        case Element::Copies: {
            bool isNumber = false;
            const int copies = text.toInt(&isNumber);
            const bool isCount = isNumber && copies > 0 && copies <= bulkimport::MostCopies;
            line.copies = take(Tr("Copies"), isCount ? QString::number(copies) : QString(),
                               Tr("\"%1\" is no number of copies.").arg(text));
            if (line.copies.isEmpty())
                line.copies = "1";
            break;
        }
        case Element::PoNumber:
            line.poNumber = text;
            break;
        case Element::PieceIdentifier:
            if (!text.isEmpty())
                line.details.append(Tr("piece %1").arg(text));
            break;
        case Element::Notes:
            if (!text.isEmpty())
                line.details.append(Tr("note \"%1\"").arg(text));
            break;
        case Element::Instruction:
            if (!text.isEmpty())
                line.details.append(Tr("instruction \"%1\"").arg(text));
            break;
        case Element::TitleNumber:
            if (!text.isEmpty())
                line.details.append(Tr("title number %1").arg(text));
            break;
        case Element::VendorReference:
            if (!text.isEmpty())
                line.details.append(Tr("vendor reference %1").arg(text));
            break;
        case Element::Requester:
            if (!text.isEmpty())
                line.details.append(Tr("requester %1").arg(text));
            break;
        }
    }
    if (m_rule.orders.value("CodeVendor").isEmpty())
        Problem(Tr("The rule has no vendor for its orders."));
    if (m_library.checkFund && !line.fund.isEmpty()) {
        const QString key = QStringList{line.fund, line.ledger, line.period}.join('\n');
        if (!m_checkedFunds.contains(key))
            m_checkedFunds.insert(key, m_library.checkFund(line.fund, line.ledger, line.period));
        if (const QString mismatch = m_checkedFunds.value(key); !mismatch.isEmpty())
            Problem(mismatch);
    }
    m_tried.lines.append(line);
}

} // namespace sysadmin::importtrial
