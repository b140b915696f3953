#include "framework/VoucherFields.h"

#include "wire/RequestForms.h"

namespace sysadmin {

namespace requestforms = wire::requestforms;

VoucherFields::VoucherFields(Form& form, const QString& passwordTag)
    : txtLogin(form, {.name = "txtLogin",
                      .tag = "L",
                      .caption = Form::tr("ARTEmail Login:"),
                      .maxLength = requestforms::LoginLength})
    , txtPassword(form,
                  {.name = "txtPassword",
                   .tag = passwordTag,
                   .caption = Form::tr("ARTEmail Password:"),
                   .maxLength = requestforms::PasswordLength},
                  "PC")
    , txtPrefix(form, {.name = "txtPrefix",
                       .tag = "VP",
                       .caption = Form::tr("Prefix:"),
                       .maxLength = requestforms::PrefixLength})
    , txtStart(
          form,
          {.name = "txtStart", .tag = "VS", .caption = Form::tr("Start:"), .most = requestforms::MostVoucher})
    , txtEnd(form,
             {.name = "txtEnd", .tag = "VE", .caption = Form::tr("End:"), .most = requestforms::MostVoucher})
    , txtLastUsed(form, {.name = "txtLastUsed",
                         .tag = "VL",
                         .caption = Form::tr("Last Used:"),
                         .most = requestforms::MostVoucher}) {}

QString VoucherFields::PageCaption() {
    return Form::tr("ARTEmail voucher range");
}

QList<Layout> VoucherFields::Draw() {
    return {txtLogin, txtPassword, txtPrefix, txtStart, txtEnd, txtLastUsed};
}

QList<const Field*> VoucherFields::All() const {
    return {&txtLogin, &txtPassword, &txtPrefix, &txtStart, &txtEnd, &txtLastUsed};
}

std::optional<Form::Finding> VoucherFields::Problem() {
    const auto isAbove = [](const NumberField& one, const NumberField& other) {
        return !one.IsBlank() && !other.IsBlank() && one.Value() > other.Value();
    };
    if (isAbove(txtStart, txtEnd))
        return Form::Finding{&txtEnd, Form::tr("The end of the voucher range is before its start.")};
    if (isAbove(txtStart, txtLastUsed) || isAbove(txtLastUsed, txtEnd))
        return Form::Finding{&txtLastUsed, Form::tr("The voucher that was used last is not in the range.")};
    return {};
}

} // namespace sysadmin
