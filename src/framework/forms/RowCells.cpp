#include "framework/forms/RowCells.h"

namespace sysadmin {

QStringList RowCells::Texts() const {
    if (m_record.Count() == 0)
        return m_own;
    QStringList texts;
    texts.reserve(size());
    for (qsizetype column = 0; column < size(); ++column)
        texts.append((*this)[column]);
    return texts;
}

bool RowCells::operator==(const RowCells& other) const {
    if (m_record.Count() == 0 && other.m_record.Count() == 0)
        return m_own == other.m_own;
    if (size() != other.size())
        return false;
    if (m_record.IsSame(other.m_record))
        return true;
    for (qsizetype column = 0; column < size(); ++column)
        if ((*this)[column] != other[column])
            return false;
    return true;
}

QStringList& RowCells::Own() {
    if (m_record.Count() > 0) {
        m_own = Texts();
        m_record = {};
    }
    return m_own;
}

} // namespace sysadmin
