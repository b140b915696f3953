#pragma once

#include "framework/forms/ValueFields.h"
#include "wire/BulkImport.h"

namespace sysadmin {

/// How a rule loads: one of nine options in two frames. What travels are the flags that the mode sets, and
/// what follows from it.
class LoadModeField : public LetterField {
public:
    LoadModeField(Form& form, const FieldSpec& spec);

    /// The chosen mode; null while the record has none of the nine.
    const wire::bulkimport::LoadMode* Mode() const;
    bool CreatesOrders() const { return Mode() && Mode()->createsOrders; }
    bool IsBibsOnly() const { return IsKind(wire::bulkimport::LoadMode::Kind::BibsOnly); }
    bool IsSingle() const { return IsKind(wire::bulkimport::LoadMode::Kind::Single); }
    bool IsMultiple() const { return IsKind(wire::bulkimport::LoadMode::Kind::Multiple); }
    bool Updates() const { return Mode() && Mode()->updates; }
    /// The options of a frame.
    QList<PickItem> OptionsOf(bool multiple) const;

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    bool WantsHeight() const override { return false; }
    bool ShowsOwnCaption() const override { return true; }

private:
    bool IsKind(wire::bulkimport::LoadMode::Kind kind) const { return Mode() && Mode()->kind == kind; }
};

} // namespace sysadmin
