#pragma once

#include "wire/Status.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <limits>

namespace sysadmin::server {

class Database;

enum class ColumnType {
    Text,      ///< never null; an empty text when nothing is known
    Flag,      ///< a text, "Y" or "N"
    Whole,     ///< a 64-bit number or null
    Reference, ///< id of a row of another table, or null
    Bytes,
};

/// What becomes of a row when the row it refers to is removed.
enum class OnRemoval { Refuse, RemoveToo, Clear };

/// What a value that people enter must be like; one that is stored already may be otherwise.
struct CellRule {
    bool isSet = false; ///< the column belongs to a subject's field
    int limit = 0;      ///< characters; 0: as many as anybody wants
    qint64 least = std::numeric_limits<qint64>::min();
    qint64 most = std::numeric_limits<qint64>::max();
    bool required = false;
    bool isDecimal = false; ///< an amount: digits with an optional decimal point and sign
    bool (*check)(const QString& value) = nullptr;

    /// What is wrong with a value of the column type, as the end of a sentence; empty when nothing is.
    QString WrongWith(ColumnType type, const QString& value) const;
};

/// A column as it is stored.
struct Column {
    QString name;
    ColumnType type = ColumnType::Text;
    QString fallback = {}; ///< the value of rows written without one; rows of older libraries get it too
    QString target = {};   ///< the table that a reference points to
    OnRemoval onRemoval = OnRemoval::Refuse;
    bool secret = false; ///< kept out of the history of changes and of files
    /// Kept by the server itself; no part of what is written to files.
    bool bookkeeping = false;
    /// For a number that is the id of a record: the column that names the record's table.
    QString tableIn = {};
    /// The row is shown as a member of the one it refers to: when this changes, both records change.
    bool showsThere = false;
    /// The row keeps the record to which it refers from being removed.
    bool keeps = false;
    CellRule rule = {};
};

/// A text column whose values differ, letter case and surrounding blanks apart, among all rows or among those
/// with the same value in the column `within`.
struct UniqueText {
    QString column;
    QString within = {};
};

/// What must hold of a row as a whole.
struct RowRule {
    bool (*holds)(const QVariantMap& row) = nullptr;
    QString otherwise;                         ///< what is wrong then, as a sentence
    qint16 status = wire::status::ColumnError; ///< of a request that would break it
};

/// What must hold of a table's rows in view of other rows.
struct StoredRule {
    QStringList others = {}; ///< tables of which a change may break it, besides the rule's own
    /// The ids of rows that break it; 0: one is missing; negative: of rows that must stay. May throw.
    std::function<QList<qint64>(Database&)> broken;
    QString otherwise; ///< what is wrong then, as a sentence
};

/// What must hold of the rows that are parts of one record.
struct PartsRule {
    QString column = {}; ///< of the record: the rule is for records that hold the value there; empty: for all
    QString value = {};
    QMap<QString, CellRule> cells = {}; ///< by column
    int most = 0;                       ///< 0: as many as anybody wants
    bool (*check)(const QList<QVariantMap>& rows) = nullptr;
};

/// What a table's rows are.
enum class Content {
    Settings, ///< what administrators maintain, or what comes with it
    Usage,    ///< what the library's other programs hold of it; only a sample library brings such rows along
    Record,   ///< what the server notes by itself: sessions, histories, logs
};

/// A stored table. Every table has a numeric `id` besides its columns.
struct Table {
    QString name;
    QList<Column> columns = {};
    QList<UniqueText> uniqueTexts = {};
    /// Sets of columns of which no two rows hold the same values, compared exactly.
    QList<QStringList> uniqueSets = {};
    /// Further columns, or sets of them, that are searched for. References are indexed anyway.
    QList<QStringList> indexed = {};
    /// The order in which records were added is a part of the settings.
    bool ordered = false;
    /// The reference column that names the record of which the rows are a part, if they are one.
    QString owner = {};
    Content content = Content::Settings;
    QString keyText = {}; ///< the column by whose text requests know a record; empty: its id
    /// The table of the one setting of which the rows are a part, without a reference.
    QString partOf = {};
    QList<RowRule> rules = {};
    QList<PartsRule> parts = {};
    QList<StoredRule> storedRules = {};
    /// Flags that one row has as soon as there are rows, and never two.
    QStringList onlyOne = {};

    const Column* Find(const QString& column) const;
    /// Where a declared column stands among the columns.
    qsizetype PlaceOf(const QString& column) const { return Find(column) - columns.constData(); }
    bool IsUniqueText(const QString& column) const;
    /// Whether its rows are nothing but parts of other records.
    bool IsPart() const { return !owner.isEmpty() || !partOf.isEmpty(); }
    /// Whether it holds a setting of which there is one record.
    bool IsSingle() const { return Find("only_one") != nullptr; }
};

/// Whether both engines store the text and give it back exactly. One ends a text at NUL, the other drops a
/// byte order mark at its beginning and replaces U+FFFE, U+FFFF and halves of pairs.
bool IsStorable(const QString& text);
/// The text without what cannot be stored, for logs.
QString StorablePart(const QString& text);

/// The form in which texts are compared for being the same.
QString Fold(const QString& text);

/// The name of the hidden column that holds the folded form of a unique text.
QString FoldedName(const QString& column);

} // namespace sysadmin::server
