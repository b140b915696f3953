#pragma once

#include "framework/FormView.h"
#include "framework/forms/ListFields.h"
#include "system/PostalForm.h"
#include "system/frmSystem_PhoneNumbers.h"

#include <QWidget>

namespace sysadmin {

class Application;

struct AddressForm : PostalForm {
    AddressForm()
        : PostalForm("AdrNm", tr("St/Province:")) {}
    FlagField chkShipToAddress{*this, {.name = "chkShipToAddress", .tag = "Ship", .caption = tr("Ship To")}};
    FlagField chkBillToAddress{*this, {.name = "chkBillToAddress", .tag = "Bill", .caption = tr("Bill To")}};
    FlagField chkStreetAddress{*this, {.name = "chkStreetAddress", .tag = "Strt", .caption = tr("Street")}};
    FlagField chkCampusAddress{*this, {.name = "chkCampusAddress", .tag = "Cmp", .caption = tr("Campus")}};
    FlagField chkCircDeskAddress{*this,
                                 {.name = "chkCircDeskAddress", .tag = "CDsk", .caption = tr("Circ Desk")}};
    FlagField chkOtherAddress{*this, {.name = "chkOtherAddress", .tag = "Other", .caption = tr("Other")}};
    RowsField vsfPhone{*this,
                       {.name = "vsfPhone", .accessible = tr("Phone numbers")},
                       PhoneColumns(),
                       {.marker = "PhAID",
                        .keyTag = "PhID",
                        .puts = {PutCell("PhNm", 1), PutCell("PhTp", 0), PutState("PhRq")},
                        .codes = {.unchanged = "2"},
                        .add = {"cmdAdd", tr("Add...")},
                        .modify = {"cmdEdit", tr("Edit...")},
                        .remove = {"cmdRemove", tr("Remove")},
                        .removeQuestion = tr("Are you sure you want to delete this phone number?"),
                        .removeTitle = tr("Delete Phone Number")}};

    QList<Field*> TypeFlags();
};

/// One of a location's addresses with its phones: a tab of the addresses dialog.
class AddressPage : public QWidget {
    Q_OBJECT

public:
    /// What becomes of the address when it is saved, as it travels.
    enum class Action { New = 1, Changed = 2, Removed = 3 };

    AddressPage(Application& application, bool readOnly, QWidget* parent);

    AddressForm& Fields() { return m_form; }
    /// The address's id; empty for one that the server does not know.
    const QString& Id() const { return m_id; }
    /// Whether there is an address on the page.
    bool IsOpen() const { return m_isOpen; }
    /// Whether there is something on it that is not saved.
    bool IsChanged() const { return m_isOpen && (m_id.isEmpty() || m_form.IsChanged()); }
    /// Whether anything is filled in.
    bool IsBlank() const;

    /// Takes the address under the channel's cursor, and its phones from wherever they stand in the reply.
    void ReadAddress(RequestChannel& channel);
    /// Starts an address that the server does not know yet.
    void StartNew();
    /// Takes the address away.
    void Close();
    /// Throws away what was not saved.
    void Revert();
    /// Empties the fields.
    void EmptyFields();
    /// Puts the address, then its phones.
    void Put(RequestChannel& channel, Action action);
    /// Whether the address under the channel's cursor is what stands on the page.
    bool Holds(const RequestChannel& channel);
    void FocusFirst();

signals:
    /// The page was edited, opened or closed.
    void Changed();

private:
    QString TypeName(const QString& id) const;

    Application& m_application;
    bool m_readOnly = false;
    AddressForm m_form;
    QString m_id;
    bool m_isOpen = false;
    std::unique_ptr<FormView> m_view; // behind the form: it goes first
};

} // namespace sysadmin
