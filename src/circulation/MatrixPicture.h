#pragma once

#include "circulation/MatrixEntries.h"
#include "loan/Policy.h"

#include <QHash>
#include <QPoint>
#include <QStringList>

namespace sysadmin {

class Application;

/// What the map of a matrix colours its cells by.
enum class MatrixMeasure { LoanPeriod, Fine, Renewals };

/// The loan rules of a policy group as a table: a row for each patron group, a column for each item type.
class MatrixPicture {
public:
    /// A place in the table: x the column, y the row.
    using Cell = QPoint;
    struct Entry {
        QString id{}; ///< empty: there is no rule
        loan::Rule rule{};
        QStringList values{}; ///< all that the rule says, as it travels
    };

    /// Asks for everything; false after a failure, which was reported. Rows and columns stand as in another
    /// picture where there is one, so that both can be compared.
    bool Read(Application& application, const MatrixGroup& group, const MatrixPicture* like = nullptr);

    const MatrixGroup& Group() const { return m_group; }
    int Rows() const { return int(m_choices.patronGroups.size()); }
    int Columns() const { return int(m_choices.itemTypes.size()); }
    const QString& RowName(int row) const { return m_choices.patronGroups[row].name; }
    const QString& ColumnName(int column) const { return m_choices.itemTypes[column].name; }
    bool IsShortLoan(int column) const { return m_choices.itemTypes[column].isShortLoan; }
    bool Contains(Cell cell) const;
    const Entry& At(Cell cell) const;
    /// The pair that a cell stands for, with its rule's id where it has one.
    MatrixEntry EntryAt(Cell cell) const;

    /// Which of the measure's classes a rule is in, from 0; none for a missing rule and where nothing is
    /// lent.
    std::optional<int> ClassOf(Cell cell, MatrixMeasure measure) const;
    /// What the classes are called, from the least to the most.
    static QStringList Classes(MatrixMeasure measure, bool countsDemerits);
    /// The measure's value in as few characters as possible.
    QString ShortText(Cell cell, MatrixMeasure measure) const;
    /// The rule in a sentence or two.
    QString InWords(Cell cell) const;
    /// What another group lays down otherwise for the pair, as captions of fields; empty where all is the
    /// same.
    QStringList Differences(Cell cell, const MatrixPicture& other) const;

private:
    void Arrange(const MatrixPicture* like);
    void Enter(const QList<QPair<QString, QString>>& rules);
    Cell Find(qint64 patronGroup, qint64 itemType) const;
    QString FineInWords(const loan::Rule& rule) const;

    MatrixGroup m_group;
    MatrixChoices m_choices;
    QHash<qint64, int> m_rowOf;
    QHash<qint64, int> m_columnOf;
    QList<Entry> m_entries; // row by row
    QStringList m_tags;     // of the values
    QHash<QString, QString> m_captions;
    bool m_usesDemerits = false;
    int m_decimals = 2;
};

} // namespace sysadmin
