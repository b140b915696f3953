#include "wire/SearchIndexes.h"

#include "wire/ItemText.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace sysadmin::wire::indexes {

namespace {

bool AreMarks(const QString& text, const QString& allowed) {
    QSet<QChar> seen;
    return std::all_of(text.begin(), text.end(), [&](QChar mark) {
        const bool isNew = !seen.contains(mark);
        seen.insert(mark);
        return isNew && allowed.contains(mark);
    });
}

const QString Marks = "abcdefghijklmnopqrstuvwxyz0123456789";

bool IsCount(const QString& text) {
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    return text.isEmpty() || (isNumber && value >= 0 && value <= MostOffset);
}

bool IsFlag(const QString& text) {
    return text.isEmpty() || text == u"Y" || text == u"N";
}

} // namespace

bool IsSystemCode(Family family, const QString& code) {
    static const QStringList common{"JKEY", "TKEY", "GKEY", "JALL", "TALL", "TITL", "THED",
                                    "SUBJ", "SHED", "AUTH", "AHED", "NHED", "NAME", "CALL"};
    const QString folded = code.trimmed().toUpper();
    if (common.contains(folded))
        return true;
    if (family == Family::HoldingsKeyword)
        return folded == u"HKEY";
    return family == Family::Headings && (folded == u"A35A" || folded == u"035A");
}

bool IsCode(const QString& code) {
    static const QRegularExpression pattern(R"(^[^\s=~]+$)");
    return pattern.match(code.trimmed()).hasMatch();
}

bool IsFieldPattern(const QString& text) {
    static const QRegularExpression pattern(R"(^(\d\d\d|\d\dX|\dXX|\*)$)");
    return pattern.match(text).hasMatch();
}

bool AreSubfields(const QString& text) {
    return AreMarks(text, Marks);
}

bool AreIndicators(const QString& text) {
    return AreMarks(text, Marks + QChar(BlankIndicator));
}

bool IsSortKey(const QString& text) {
    static const QStringList keys{"author", "title", "pub_date_asc", "pub_date_desc"};
    return text.trimmed().isEmpty() || keys.contains(text);
}

bool IsDefinition(const QString& text) {
    const ItemText items(text);
    const auto all = [&](const QStringList& keys, bool (*isRight)(const QString&)) {
        return std::all_of(keys.begin(), keys.end(),
                           [&](const QString& key) { return isRight(items.Value(key)); });
    };
    const QString field = items.Value(key::BibField);
    const QStringList components = ComponentsOf(text);
    return (field.isEmpty() || IsFieldPattern(field)) &&
           all({key::IncludeSubfields, key::ExcludeSubfields}, AreSubfields) &&
           all({key::IncludeFirstIndicator, key::ExcludeFirstIndicator, key::IncludeSecondIndicator,
                key::ExcludeSecondIndicator},
               AreIndicators) &&
           all({key::FixedOffset, key::FixedLength, key::TextLength}, IsCount) &&
           all({key::ShowsColumn, key::CallNumber, key::AllOccurrences, key::FirstOccurrence,
                key::LastOccurrence},
               IsFlag) &&
           QSet<QString>(components.begin(), components.end()).size() == components.size();
}

QStringList ComponentsOf(const QString& definition) {
    return ItemText(definition).Value(key::Components).split(ComponentSeparator, Qt::SkipEmptyParts);
}

} // namespace sysadmin::wire::indexes
