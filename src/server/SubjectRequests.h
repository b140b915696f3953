#pragma once

#include "server/Registry.h"

namespace sysadmin::server {

/// The requests that a subject's declaration asks for, with handlers that follow it. The subject must outlive
/// them.
///
/// What a request's fields may hold is refused with: 3 for a missing required field, a text that is too long,
/// a value that is no number, flag or known record; the field's own status for a text that another record
/// has; 5 for a key that no record has; the declared statuses for a record in use. Fields that a subject does
/// not know are ignored.
QList<RequestRule> RequestsOf(const Subject& subject);

/// Reads fields out of a request into `row`, under the names of their columns. Of an update only
/// the fields that were put are taken. Answers 0 or 3.
qint16 ReadFields(Context& context, const QList<SubjectField>& fields, const wire::Fields& request,
                  bool adding, Row& row);

/// The status of the first record that keeps this one from being removed, or 0.
qint16 FindUse(Context& context, const Subject& subject, qint64 id);

} // namespace sysadmin::server
