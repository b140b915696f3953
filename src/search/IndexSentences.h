#pragma once

#include "framework/forms/GridRow.h"
#include "wire/SearchIndexes.h"

#include <QHash>

namespace sysadmin {

/// What an index is made of, in sentences for people.
///
/// `definition` is the text of the tag "Ix", `fields` are the record fields of a keyword index (field,
/// subfields to take, subfields to leave out), `names` the names of indexes by their codes.
QString IndexInWords(wire::indexes::Family family, const QString& definition, const QList<GridRow>& fields,
                     const QHash<QString, QString>& names);

/// "fields 240 to 249": what a field pattern stands for.
QString FieldInWords(const QString& pattern);
/// "subfields a, b and not 6".
QString SubfieldsInWords(const QString& include, const QString& exclude);

} // namespace sysadmin
