#pragma once

#include "framework/forms/Field.h"

#include <array>

namespace sysadmin {

/// A part of a place in a MARC record: its tag, and the name of the control in which it is entered.
struct MarcPart {
    QString tag{};
    QString name{}; ///< empty: the place has no such part
};

/// The parts of a place in a MARC record. They are shown in this order.
struct MarcPlaceSpec {
    MarcPart field{};
    MarcPart indicator1{};
    MarcPart indicator2{};
    MarcPart subfield{};
    /// How a blank indicator is kept and sent ("_"); empty: as nothing.
    QString blankIndicator{};
    /// Whether it may stand for several places: "65X", "6XX" or "*" as field, "*" as any other part.
    bool wildcards = false;
    QStringList order{}; ///< of the tags in requests; empty: as shown
};

/// A place in a MARC record, entered as one: field (three digits), two indicators (a digit, a lower-case
/// letter, or blank) and subfield (a digit or lower-case letter). Upper-case letters are taken as lower-case
/// ones.
class MarcPlaceField : public Field {
public:
    enum Part { FieldTag, Indicator1, Indicator2, Subfield, PartCount };
    using Parts = std::array<QString, PartCount>;

    MarcPlaceField(Form& form, const FieldSpec& spec, const MarcPlaceSpec& place);

    const MarcPart& PartSpec(Part part) const { return m_specs[part]; }
    const QString& Draft(Part part) const { return m_draft[part]; }
    void SetDraft(Part part, const QString& value);
    /// The pattern of what may be entered in the part.
    QString PatternOf(Part part) const;
    static QString CaptionOf(Part part);

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override;
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override;
    void Accept() override { m_stored = m_draft; }
    void Revert() override;
    /// Subfield and indicators without a field name no place.
    QString Problem() const override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;

private:
    QString ToWire(Part part) const;

    std::array<MarcPart, PartCount> m_specs;
    QString m_blankIndicator;
    bool m_wildcards;
    QStringList m_order;
    Parts m_stored;
    Parts m_draft;
};

} // namespace sysadmin
