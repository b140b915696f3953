#pragma once

#include "framework/FormDialog.h"
#include "framework/MarcPlaceField.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A list of fields of a record that are looked at in turn, ranked. `role` ends the names of its buttons
/// ("ItemType"), `tags` begins its tags ("DI"), `what` names a row where it is removed.
struct PlaceListSpec {
    QString grid;
    QString role;
    QString tags;
    QString what;
    FormDialogSpec dialog;
};

/// The cells of a row of such a list.
namespace PlaceColumn {
constexpr int Indicator1 = 0;
constexpr int Indicator2 = 1;
constexpr int Field = 2;
constexpr int Subfield = 3;
} // namespace PlaceColumn

/// The cells of a mapping.
namespace MappingColumn {
constexpr int MarcItem = 0;
constexpr int ItemType = 1; ///< id
constexpr int MarcLocation = 2;
constexpr int Location = 3;  ///< id
constexpr int Hierarchy = 4; ///< id
} // namespace MappingColumn

/// Fields in which the item type, or the barcode, is looked for.
class PlaceList : public RowsField {
public:
    PlaceList(Form& form, const PlaceListSpec& spec);
};

/// Which item type and location of the library's the codes in records stand for.
struct MappingForm : RowForm {
    /// A new mapping begins as the catch-all one, while `hasCatchAll` says that there is none.
    std::function<bool()> hasCatchAll{};

    Layout Draw() override;
    void Begin(FormDialog& dialog, Prompter& prompter, const GridRow* former) override;

    TextField txtMarcItem;
    ChoiceField cboItemType;
    TextField txtMarcLoc;
    ChoiceField cboLocation;
    ChoiceField cboHierarchy;

    MappingForm();
};

class MappingList : public RowsField {
public:
    explicit MappingList(Form& form);

    /// What the mappings choose from; the order of the library's locations is asked for as well.
    void SetChoices(const QList<PickItem>& itemTypes, const QList<PickItem>& locations,
                    const QList<PickItem>& hierarchies);
    const QList<PickItem>& Locations() const { return m_dialog->cboLocation.Items(); }
    const QList<PickItem>& ItemTypes() const { return m_dialog->cboItemType.Items(); }
    const QList<PickItem>& Hierarchies() const { return m_dialog->cboHierarchy.Items(); }
    /// Whether there is a mapping for whatever item and location a record names.
    bool HasCatchAll() const;

private:
    std::shared_ptr<MappingForm> m_dialog;
};

} // namespace sysadmin
