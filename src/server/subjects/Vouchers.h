#pragma once

#include "server/SubjectField.h"
#include "server/store/Records.h"

namespace sysadmin::server {

/// The numbered vouchers with which a library pays for what it orders by e-mail: sign-on and range. The
/// password travels under `passwordTag`, its mark under "PC".
QList<SubjectField> VoucherFields(const QString& passwordTag);

/// Whether the range begins before it ends and holds the voucher that was used last.
bool IsVoucherRangeInOrder(const Row& record);

} // namespace sysadmin::server
