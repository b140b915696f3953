#include "server/subjects/Vouchers.h"

#include "wire/RequestForms.h"

namespace sysadmin::server {

namespace forms = wire::requestforms;

QList<SubjectField> VoucherFields(const QString& passwordTag) {
    return {SubjectField::Text("L", "voucher_login", forms::LoginLength),
            SubjectField::Secret(passwordTag, "PC", "voucher_password", forms::PasswordLength),
            SubjectField::Text("VP", "voucher_prefix", forms::PrefixLength),
            SubjectField::Whole("VS", "voucher_start", 0, forms::MostVoucher),
            SubjectField::Whole("VE", "voucher_end", 0, forms::MostVoucher),
            SubjectField::Whole("VL", "voucher_last", 0, forms::MostVoucher)};
}

bool IsVoucherRangeInOrder(const Row& record) {
    const QVariant start = record["voucher_start"];
    const QVariant end = record["voucher_end"];
    const QVariant last = record["voucher_last"];
    const auto isAbove = [](const QVariant& one, const QVariant& other) {
        return !one.isNull() && !other.isNull() && one.toLongLong() > other.toLongLong();
    };
    return !isAbove(start, end) && !isAbove(start, last) && !isAbove(last, end);
}

} // namespace sysadmin::server
