#include "search/RecordTrial.h"

#include "core/data/Tr.h"
#include "marc/Record.h"
#include "search/HeadingFilterWords.h"
#include "search/RecordValues.h"
#include "wire/BibLinks.h"
#include "wire/ItemText.h"
#include "wire/SearchIndexes.h"

#include <algorithm>

namespace sysadmin {

namespace headings = wire::headings;
namespace indexes = wire::indexes;
namespace links = wire::links;

namespace {

enum LinkCell { Caption, Direction, FieldTag, Indicator1, Indicator2, Subfield, IndexCode, Staff, Public };

/// A blank indicator is written as a line in definitions.
QString Mark(QChar indicator) {
    return indicator == u' ' ? links::BlankIndicator : QString(indicator);
}

bool Suits(const QString& wanted, QChar indicator) {
    return wanted == links::AnyIndicator || wanted == Mark(indicator);
}

QString ShownField(const marc::Field& field) {
    return field.IsControl() ? field.tag : field.tag + ' ' + Mark(field.indicator1) + Mark(field.indicator2);
}

/// Whether a value of the indicator is let in and not kept out.
bool IsLetIn(const wire::ItemText& items, const QString& include, const QString& exclude, QChar indicator) {
    const QString included = items.Value(include);
    return (included.isEmpty() || included.contains(Mark(indicator))) &&
           !items.Value(exclude).contains(Mark(indicator));
}

QString HeadingOf(const wire::ItemText& items, const marc::Field& field) {
    const QString included = items.Value(indexes::key::IncludeSubfields);
    const QString excluded = items.Value(indexes::key::ExcludeSubfields);
    QStringList parts;
    for (const marc::Subfield& subfield : field.subfields)
        if ((included.isEmpty() || included.contains(subfield.code)) && !excluded.contains(subfield.code))
            parts.append(subfield.value);
    return parts.join(' ');
}

bool IsLeftOut(const headings::LeftOut& entry, const marc::Field& field) {
    if (entry.kind != headings::Any && field.tag.mid(1) != entry.kind)
        return false;
    if (entry.vocabulary == headings::Any)
        return true;
    return field.tag.startsWith(u'6') && entry.vocabulary == Mark(field.indicator2) &&
           (entry.source.isEmpty() || entry.source == field.First(u'2').trimmed().toLower());
}

} // namespace

QList<GridRow> LinksIn(const marc::Record& record, const QList<GridRow>& all) {
    QList<GridRow> rows;
    for (const GridRow& link : all) {
        const QStringList cells = link.cells.Texts();
        for (const marc::Field& field : record.fields) {
            if (!IsFieldOf(field.tag, cells[FieldTag]))
                continue;
            const bool suits = field.IsControl() || (Suits(cells[Indicator1], field.indicator1) &&
                                                     Suits(cells[Indicator2], field.indicator2));
            const QStringList texts = !suits              ? QStringList()
                                      : field.IsControl() ? QStringList{field.value}
                                                          : field.All(cells[Subfield].at(0));
            for (const QString& text : texts)
                rows.append({QString::number(rows.size()),
                             {cells[Caption], cells[Direction], ShownField(field), text.trimmed(),
                              cells[IndexCode], cells[Staff], cells[Public]},
                             {}});
        }
    }
    return rows;
}

QList<GridRow> HeadingsIn(const marc::Record& record, const QString& definition,
                          const QList<GridRow>& leftOut) {
    const wire::ItemText items(definition);
    QList<GridRow> rows;
    for (const marc::Field& field : record.fields) {
        const QString heading = HeadingOf(items, field);
        if (field.IsControl() || heading.isEmpty() ||
            !IsFieldOf(field.tag, items.Value(indexes::key::BibField)) ||
            !IsLetIn(items, indexes::key::IncludeFirstIndicator, indexes::key::ExcludeFirstIndicator,
                     field.indicator1) ||
            !IsLetIn(items, indexes::key::IncludeSecondIndicator, indexes::key::ExcludeSecondIndicator,
                     field.indicator2))
            continue;
        const auto entry = std::find_if(leftOut.begin(), leftOut.end(),
                                        [&](const GridRow& row) { return IsLeftOut(LeftOutOf(row), field); });
        rows.append(
            {QString::number(rows.size()),
             {ShownField(field), heading,
              entry == leftOut.end() ? Tr("Shown") : Tr("Left out: %1").arg(InWords(LeftOutOf(*entry)))},
             {}});
    }
    return rows;
}

} // namespace sysadmin
