#include "server/Library.h"
#include "server/NamedRecords.h"
#include "server/SubjectReads.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"

#include <algorithm>

// Records of all subjects by what stands in their texts.
namespace sysadmin::server {

namespace {

constexpr int MostOfSubject = 5;
constexpr qsizetype MostWordsAsked = 4; ///< of the database; what is found is held to all of them
constexpr int MostLooked = 60;          ///< of each subject: the best of them are answered
constexpr qsizetype LeastLetters = 2;
constexpr qsizetype MostLetters = 100;

/// Whether the pattern says all of the word.
bool Fits(const QString& word) {
    return std::all_of(word.begin(), word.end(), [](QChar c) { return c.unicode() <= 127; });
}

/// What the text is in a pattern of LIKE. Neither engine compares letters beyond ASCII without case
/// everywhere: any letter fits there, and what is found is looked at again.
QString Pattern(const QString& word) {
    QString pattern = "%";
    for (const QChar c : word) {
        if (c.unicode() > 127)
            pattern += u'_';
        else if (c == u'%' || c == u'_' || c == u'\\')
            pattern += QString(u'\\') + c;
        else
            pattern += c;
    }
    return pattern + u'%';
}

struct Found {
    qint64 id = 0;
    QString column; ///< that holds the text, or the first word of it
    QString value;
    int rank = 0;
};

/// The columns with texts that people enter.
QStringList TextColumns(const Table& table) {
    QStringList columns;
    for (const Column& column : table.columns)
        if (column.type == ColumnType::Text && !column.secret && !column.bookkeeping)
            columns << column.name;
    return columns;
}

/// Where a record holds the words: the rank of the best column; none when a word is missing.
std::optional<Found> Match(const QString& text, const QStringList& words, const QStringList& columns,
                           const ResultRow& row) {
    std::optional<Found> best;
    QStringList missing = words;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const QString value = row.value(int(i) + 1).toString();
        const auto holds = [&](const QString& word) { return value.contains(word, Qt::CaseInsensitive); };
        if (std::none_of(words.begin(), words.end(), holds))
            continue;
        missing.removeIf(holds);
        const int rank = value.compare(text, Qt::CaseInsensitive) == 0              ? 0
                         : value.startsWith(text, Qt::CaseInsensitive)              ? 1
                         : value.contains(' ' + words.first(), Qt::CaseInsensitive) ? 2
                                                                                    : 3;
        if (!best || rank < best->rank)
            best = Found{row.value(0).toLongLong(), columns[i], value, rank};
    }
    return missing.isEmpty() ? best : std::nullopt;
}

QList<Found> FindIn(Database& database, const Table& table, const QString& text, const QStringList& words) {
    const QStringList columns = TextColumns(table);
    QList<Found> found;
    if (columns.isEmpty())
        return found;
    const QString like =
        database.GetEngine() == StoreAddress::Engine::Sqlite ? " LIKE ? ESCAPE '\\'" : " ILIKE ? ESCAPE '\\'";
    QStringList conditions;
    QVariantList values;
    bool isExact = true; // nothing that the database finds is left out afterwards
    for (const QString& word : words.first(qMin(words.size(), MostWordsAsked))) {
        isExact = isExact && words.size() <= MostWordsAsked && Fits(word);
        conditions << '(' + columns.join(like + " OR ") + like + ')';
        for (qsizetype i = 0; i < columns.size(); ++i)
            values << Pattern(word);
    }
    QString sql = "SELECT id, " + columns.join(", ") + " FROM " + table.name + " WHERE " +
                  conditions.join(" AND ") + " ORDER BY id";
    if (isExact) {
        sql += " LIMIT ?";
        values << MostLooked;
    }
    database.Each(sql, values, [&](const ResultRow& row) {
        if (found.size() >= MostLooked)
            return;
        if (const auto match = Match(text, words, columns, row))
            found.append(*match);
    });
    std::stable_sort(found.begin(), found.end(),
                     [](const Found& one, const Found& other) { return one.rank < other.rank; });
    return found.first(qMin(found.size(), qsizetype(MostOfSubject)));
}

/// The tag under which the subject's own requests carry the column; empty when they do not.
QString TagOf(const Subject* subject, const QString& column) {
    if (subject)
        for (const SubjectField& field : subject->fields)
            if (field.column == column && field.kind == SubjectField::Kind::Text)
                return field.tag;
    return {};
}

Answer AnswerFind(Context& context, const wire::Fields& request) {
    const QString text = Sent(request, "Txt").value_or(QString()).simplified();
    if (text.size() < LeastLetters || text.size() > MostLetters || !IsStorable(text))
        return {status::ColumnError};
    const QStringList words = text.split(' ');
    const Registry& registry = context.library.GetRegistry();
    Answer answer;
    for (const Table& table : context.records.GetTables()) {
        if (table.content != Content::Settings || table.IsPart() || table.IsSingle())
            continue;
        const RequestRule* rule = registry.ReadRuleOf(table.name);
        if (!rule || !rule->Allows(context.rights))
            continue;
        const Subject* subject = registry.SubjectOf(table.name);
        for (const Found& found : FindIn(context.database, table, text, words)) {
            const auto row = context.records.Find(table.name, found.id);
            if (!row)
                continue;
            Put(answer.fields, "Sbj", rule->Word());
            Put(answer.fields, "UK", KeyOf(registry, *rule, *row, found.id));
            Put(answer.fields, "UN", NameOf(table, *row));
            Put(answer.fields, "UT", TagOf(subject, found.column));
            Put(answer.fields, "UV", found.value);
        }
    }
    return answer;
}

} // namespace

void RegisterFindRecords(Registry& registry) {
    registry.AddRead("FndRec", Area::AnyOperator, AnswerFind);
}

} // namespace sysadmin::server
