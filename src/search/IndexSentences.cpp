#include "search/IndexSentences.h"

#include "core/data/Tr.h"
#include "wire/ItemText.h"

namespace sysadmin {

namespace indexes = wire::indexes;
namespace key = wire::indexes::key;
namespace kind = wire::indexes::kind;

namespace {

/// "a, b and c".
QString Listed(const QStringList& words) {
    if (words.size() < 2)
        return words.join(QString());
    return words.mid(0, words.size() - 1).join(", ") + ' ' + Tr("and") + ' ' + words.last();
}

QStringList Marks(const QString& text) {
    QStringList marks;
    for (const QChar mark : text)
        marks.append(mark == QChar(indexes::BlankIndicator) ? Tr("blank") : QString(mark));
    return marks;
}

QString OneOf(const QString& text) {
    const QStringList marks = Marks(text);
    if (marks.size() < 2)
        return marks.join(QString());
    return marks.mid(0, marks.size() - 1).join(", ") + ' ' + Tr("or") + ' ' + marks.last();
}

void AddIndicator(const QString& which, const QString& include, const QString& exclude,
                  QStringList& conditions) {
    if (!include.isEmpty())
        conditions.append(Tr("%1 is %2").arg(which, OneOf(include)));
    if (!exclude.isEmpty())
        conditions.append(Tr("%1 is not %2").arg(which, OneOf(exclude)));
}

/// Where a headings or left-anchored index takes its text from.
QString PlaceInWords(const wire::ItemText& items) {
    const QString field = items.Value(key::BibField);
    if (field.isEmpty())
        return Tr("No field is named.");
    const QString length = items.Value(key::FixedLength);
    QStringList parts;
    if (!items.Value(key::FixedOffset).isEmpty() || !length.isEmpty()) {
        const int offset = items.Value(key::FixedOffset).toInt();
        const QString place = length.isEmpty() ? Tr("from character %1 on").arg(offset)
                              : length.toInt() == 1
                                  ? Tr("character %1").arg(offset)
                                  : Tr("characters %1 to %2").arg(offset).arg(offset + length.toInt() - 1);
        parts.append(Tr("%1 of %2").arg(place, FieldInWords(field)));
    } else {
        parts.append(
            Tr("%1 of %2")
                .arg(SubfieldsInWords(items.Value(key::IncludeSubfields), items.Value(key::ExcludeSubfields)),
                     FieldInWords(field)));
    }
    QStringList conditions;
    AddIndicator(Tr("the first indicator"), items.Value(key::IncludeFirstIndicator),
                 items.Value(key::ExcludeFirstIndicator), conditions);
    AddIndicator(Tr("the second indicator"), items.Value(key::IncludeSecondIndicator),
                 items.Value(key::ExcludeSecondIndicator), conditions);
    if (!conditions.isEmpty())
        parts.append(Tr("where %1").arg(Listed(conditions)));
    if (items.Value(key::FirstOccurrence) == u"Y")
        parts.append(Tr("first occurrence"));
    else if (items.Value(key::LastOccurrence) == u"Y")
        parts.append(Tr("last occurrence"));
    else
        parts.append(Tr("every occurrence"));
    if (!items.Value(key::TextLength).isEmpty())
        parts.append(items.Value(key::TextLength) == u"1"
                         ? Tr("1 character")
                         : Tr("%1 characters").arg(items.Value(key::TextLength)));
    if (items.Value(key::CallNumber) == u"Y")
        parts.append(Tr("in the order of call numbers"));
    return parts.join(", ") + '.';
}

QString KindInWords(const wire::ItemText& items) {
    const QString made = items.Value(key::Kind);
    if (made == kind::Bibliographic)
        return Tr("From bibliographic records:");
    if (made == kind::Holdings)
        return Tr("From holdings records:");
    if (made == kind::Headings)
        return Tr("Headings, from bibliographic records:");
    return {};
}

QString WordsInWords(const QList<GridRow>& fields) {
    if (fields.isEmpty())
        return Tr("No fields are named: nothing is found by it.");
    QStringList places;
    for (const GridRow& row : fields)
        places.append(Tr("%1 of %2")
                          .arg(SubfieldsInWords(row.cells.value(1), row.cells.value(2)),
                               FieldInWords(row.cells.value(0))));
    return Tr("the words in %1.").arg(places.join("; "));
}

QString ComponentsInWords(const QString& definition, const QHash<QString, QString>& names) {
    QStringList words;
    for (const QString& code : indexes::ComponentsOf(definition)) {
        const QString name = names.value(code);
        words.append(name.isEmpty() ? code : Tr("%1 (%2)").arg(name, code));
    }
    if (words.isEmpty())
        return Tr("No indexes are chosen: the whole bibliographic record is searched.");
    return words.size() == 1 ? Tr("Searches %1.").arg(words.first())
                             : Tr("Searches %1 at once.").arg(Listed(words));
}

const QStringList& KnownKeys() {
    static const QStringList keys{key::Kind,
                                  key::Components,
                                  key::ShowsColumn,
                                  key::AllOccurrences,
                                  key::FirstOccurrence,
                                  key::LastOccurrence,
                                  key::IncludeSubfields,
                                  key::ExcludeSubfields,
                                  key::ExcludeFirstIndicator,
                                  key::IncludeFirstIndicator,
                                  key::ExcludeSecondIndicator,
                                  key::IncludeSecondIndicator,
                                  key::CallNumber,
                                  key::FixedOffset,
                                  key::FixedLength,
                                  key::BibField,
                                  key::TextLength};
    return keys;
}

} // namespace

QString FieldInWords(const QString& pattern) {
    if (pattern == u"*")
        return Tr("all fields");
    if (!pattern.contains('X'))
        return Tr("field %1").arg(pattern);
    return Tr("fields %1 to %2").arg(QString(pattern).replace('X', '0'), QString(pattern).replace('X', '9'));
}

QString SubfieldsInWords(const QString& include, const QString& exclude) {
    const QString left = Marks(exclude).join(", ");
    if (include.isEmpty())
        return exclude.isEmpty() ? Tr("all subfields") : Tr("all subfields but not %1").arg(left);
    if (exclude.isEmpty())
        return include.size() == 1 ? Tr("subfield %1").arg(include)
                                   : Tr("subfields %1").arg(Listed(Marks(include)));
    return Tr("subfields %1 and not %2").arg(Marks(include).join(", "), left);
}

QString IndexInWords(indexes::Family family, const QString& definition, const QList<GridRow>& fields,
                     const QHash<QString, QString>& names) {
    const wire::ItemText items(definition);
    QStringList sentences;
    switch (family) {
    case indexes::Family::Keyword:
    case indexes::Family::HoldingsKeyword:
        sentences << KindInWords(items) << WordsInWords(fields);
        break;
    case indexes::Family::Composite:
        sentences << ComponentsInWords(definition, names);
        break;
    case indexes::Family::Headings:
        sentences << KindInWords(items) << PlaceInWords(items);
        break;
    }
    if (items.Value(key::ShowsColumn) == u"Y")
        sentences << Tr("Results show a column of it.");
    if (const QStringList others = items.Others(KnownKeys()); !others.isEmpty())
        sentences << Tr("Kept as it stands: %1").arg(others.join(' '));
    sentences.removeAll(QString());
    QString text = sentences.join(' ');
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace sysadmin
