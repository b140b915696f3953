#pragma once

#include <QList>
#include <QString>

/// The attributes of Z39.50 searches: values of the set Bib-1 and their names.
namespace sysadmin::wire::bib1 {

/// The attribute types of which a search code sends a value.
enum Type { Use = 1, Relation = 2, Position = 3, Structure = 4, Truncation = 5, Completeness = 6 };

struct Value {
    int number;
    const char* name;
};

/// The values of a type that are offered, in the order of their numbers. Truncation has none: it follows from
/// the flags of a search code.
const QList<Value>& ValuesOf(Type type);

/// Whether a search code may send the value. Use attributes beyond the offered ones belong to the targets
/// that know them.
bool IsValue(Type type, int number);

} // namespace sysadmin::wire::bib1
