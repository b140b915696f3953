#pragma once

#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

#include <QHash>
#include <QSet>

namespace sysadmin {

/// What a location of an acquisitions policy group does, and what it begins with: edited beside the lists.
struct AcqLocationForm : Form {
    FlagField chkOCPLoc{*this, {.name = "chkOCPLoc", .tag = "3e", .caption = tr("Order/Claim/Pay Location")}};
    FlagField chkReceiveLoc{*this, {.name = "chkReceiveLoc", .tag = "3f", .caption = tr("Receive Location")}};
    FlagField chkDestinationLoc{
        *this, {.name = "chkDestinationLoc", .tag = "3g", .caption = tr("Destination Location")}};
    FlagField chkOPACTempRec{
        *this, {.name = "chkOPACTempRec", .tag = "3h", .caption = tr("OPAC Display of Temp Records")}};
    ChoiceField cboDefaultPrintLoc{*this,
                                   {.name = "cboDefaultPrintLoc",
                                    .tag = "3c",
                                    .caption = tr("Default Print Location:"),
                                    .source = {.request = "LstPL",
                                               .pickList = "cboPrintLocation",
                                               .none = tr("(none)"),
                                               .unableToLoad = tr("Print Locations")}}};
    ChoiceField cboOrderDefaultItem{
        *this, {.name = "cboOrderDefaultItem", .tag = "3i", .caption = tr("Order Default Item Type:")}};
    ChoiceField cboReceiveDefaultItem{
        *this, {.name = "cboReceiveDefaultItem", .tag = "3j", .caption = tr("Receive Default Item Type:")}};
};

/// The locations of an acquisitions policy group and those that are in none, each with its settings.
class AcqLocationsField : public PickedField {
public:
    AcqLocationsField(Form& form, AcqLocationForm& settings);

    /// The rows of both lists that a reply holds, as they are loaded.
    static QList<GridRow> ReadAvailable(const RequestChannel& channel);
    static QList<GridRow> ReadSelected(const RequestChannel& channel);
    /// Takes what the server has.
    void LoadRows(const QList<GridRow>& available, const QList<GridRow>& selected);
    /// Whether a location of the group lacks one of its three defaults.
    bool LacksDefaults() const;
    /// Puts the rows that leave the group, and then all that are in it.
    void PutRows(RequestChannel& channel) const;

    void Accept() override;
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;
    QString PlainCaption() const override { return Form::tr("Locations"); }

private:
    QStringList DerivedCells(const GridRow& row, bool isSelected) const;
    void FollowSettings();
    QStringList AskRemoval(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                           QWidget* parent) const;

    AcqLocationForm& m_settings;
    QHash<QString, QString> m_names; ///< without the marks of what a location does, by id
    QSet<QString> m_inUse;           ///< in a ledger
};

} // namespace sysadmin
