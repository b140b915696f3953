#pragma once

#include "server/store/Records.h"

namespace sysadmin::server {

/// Restricts rows to records that hold a value in a column (the ranges of a group whose type is "R").
struct OnlyWhere {
    QString column = {};
    QString value = {};

    bool Holds(const Row& record) const {
        return column.isEmpty() || record.value(column).toString() == value;
    }
};

} // namespace sysadmin::server
