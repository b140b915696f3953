#pragma once

#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// One part of a place in a record, where many places stand in a table: a field's three digits, or the
/// character of a subfield or indicator. Letters are kept in lower case.
class MarcPartField : public TextField {
public:
    enum class Part { Field, Subfield, Indicator };

    /// `of`: the part without which this one names no place; null: it stands for itself.
    MarcPartField(Form& form, FieldSpec spec, Part part, const MarcPartField* of = nullptr);

    void Tidy() override;
    QString Problem() const override;

private:
    Part m_part;
    const MarcPartField* m_of;
};

} // namespace sysadmin
