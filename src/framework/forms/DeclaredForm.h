#pragma once

#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

#include <functional>
#include <memory>
#include <vector>

namespace sysadmin {

/// A field of a form that is made from data.
struct FieldDeclaration {
    FieldSpec spec;
    std::function<std::unique_ptr<Field>(Form&, const FieldSpec&)> make;
};

/// Declares a field of a kind; `more` is what its constructor takes behind the FieldSpec:
/// `Declare<DateField>({.name = "fpEndDate", .tag = "EDt"}, "yyyy-MM-dd")`.
template <class Kind, class... More>
FieldDeclaration Declare(const FieldSpec& spec, const More&... more) {
    return {spec, [more...](Form& form, const FieldSpec& given) -> std::unique_ptr<Field> {
                return std::make_unique<Kind>(form, given, more...);
            }};
}

/// A form without behaviour: its fields are those of a list of declarations, in that order.
class DeclaredForm : public Form {
public:
    explicit DeclaredForm(const QList<FieldDeclaration>& fields) {
        for (const FieldDeclaration& field : fields)
            m_owned.push_back(field.make(*this, field.spec));
    }

private:
    std::vector<std::unique_ptr<Field>> m_owned;
};

} // namespace sysadmin
