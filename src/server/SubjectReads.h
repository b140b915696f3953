#pragma once

#include "server/Subject.h"

namespace sysadmin::server {

// What the requests of declared subjects share: finding and reading records. Everything throws `StoreError`.

/// The first value that a request puts under the tag; none when it puts none.
std::optional<QString> Sent(const wire::Fields& request, const QString& tag);
/// The field whose text is the key; null when that is the record's id.
const SubjectField* KeyField(const Subject& subject);
/// The id of the record that a request names, if it is among those with which the request works;
/// `useOriginal`: by the key that it had before.
std::optional<qint64> FindKey(Context& context, const Subject& subject, const wire::Fields& request,
                              bool useOriginal);

/// How a record travels: the SQL that reads it and the tags of its columns, in order.
struct Shape {
    QList<wire::EncodedTag> tags;
    QString select;
};

/// The shape of the subject's records in replies to a list or a get.
Shape MakeShape(const Subject& subject, bool list);
/// Answers a list request (a batch of it) into `reply`: 0, 55 or a refusal.
qint16 ReadAll(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request,
               ReplyFields& reply);
/// Answers a get request.
Answer ReadRecord(Context& context, const Subject& subject, const Shape& shape, const wire::Fields& request);

} // namespace sysadmin::server
