#pragma once

#include "wire/Message.h"

namespace sysadmin::server {

class ReplyFields;
struct Context;

/// Chosen columns of all records of a table, under the tags by which they travel.
struct ColumnList {
    QString table;
    QList<QPair<QString, QString>> columns; ///< tag and column
    QStringList order = {};                 ///< columns; by id when empty
};

/// Appends the records.
void PutList(Context& context, const ColumnList& list, ReplyFields& reply);

} // namespace sysadmin::server
