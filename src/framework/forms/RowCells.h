#pragma once

#include "wire/ReceivedFields.h"

namespace sysadmin {

/// The cells of a row, in column order. Those of a row that was read stay in the reply, whose memory all rows
/// of a list share, and become texts when they are asked for; a row that is changed gets its own.
class RowCells {
public:
    RowCells() = default;
    RowCells(const QStringList& texts)
        : m_own(texts) {}
    RowCells(std::initializer_list<QString> texts)
        : m_own(texts) {}
    /// A cell for each tag of the record.
    RowCells(const wire::ReceivedRecord& record)
        : m_record(record) {}

    qsizetype size() const { return m_record.Count() + m_own.size(); }
    bool isEmpty() const { return size() == 0; }
    QString operator[](qsizetype column) const {
        return m_record.Count() > 0 ? m_record.Value(column) : m_own.at(column);
    }
    /// An empty text where the row is shorter.
    QString value(qsizetype column) const {
        return column >= 0 && column < size() ? (*this)[column] : QString();
    }
    QStringList Texts() const;
    bool operator==(const RowCells& other) const;

    /// The cells as the row's own from now on, to be changed.
    QStringList& Own();
    QString& operator[](qsizetype column) { return Own()[column]; }

private:
    wire::ReceivedRecord m_record; // one of them has the cells
    QStringList m_own;
};

} // namespace sysadmin
