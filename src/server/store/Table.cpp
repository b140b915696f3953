#include "server/store/Table.h"

namespace sysadmin::server {

const Column* Table::Find(const QString& column) const {
    for (const Column& candidate : columns)
        if (candidate.name == column)
            return &candidate;
    return nullptr;
}

bool Table::IsUniqueText(const QString& column) const {
    for (const UniqueText& unique : uniqueTexts)
        if (unique.column == column)
            return true;
    return false;
}

QString Fold(const QString& text) {
    return text.trimmed().normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString FoldedName(const QString& column) {
    return column + "_folded";
}

} // namespace sysadmin::server
