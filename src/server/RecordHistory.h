#pragma once

#include "server/Context.h"

namespace sysadmin::server {

struct RequestRule;

/// Whether a request asks for a record as it once was.
bool IsAsOf(const wire::Fields& request);
/// Answers a request that reads as it would have been answered after the change `AsOf` of the history, as far
/// as the record goes that `AsSbj` and `AsRow` name: all else is as it is now. Whatever key of that record
/// the request names is taken for the one that it had then, which the reply carries as `AsKey`. Needs a
/// transaction that may write; nothing of what it writes is kept.
Answer AnswerAsOf(Context& context, const RequestRule& rule, const wire::Fields& request);

} // namespace sysadmin::server
