#pragma once

#include "cataloging/MarcPartField.h"
#include "framework/forms/Layout.h"

#include <memory>
#include <vector>

class QWidget;

namespace sysadmin {

class Application;

/// The orders that a rule creates: their header, and where a record has each part of a line: the dialog
/// "frmCataloging_BulkImportOrderSettings".
struct OrderSettingsForm : Form {
    OrderSettingsForm();
    ~OrderSettingsForm() override;

    /// Asks for what the orders choose from; `locations` of the library. A failure is told, and false.
    bool LoadChoices(Application& application, const QList<PickItem>& locations);
    /// True when the operator confirmed what is entered, and fund, ledger and fiscal period go together.
    bool Edit(Application& application, QWidget* parent);

    ChoiceField cboOrderLocation;
    ChoiceField cboOrderType;
    ChoiceField cboVendor;
    TextField txtCodeVendor;
    ChoiceField cboAcctVendor;
    ChoiceField cboCurrency;

private:
    struct Element;

    void AddElements();
    Layout Draw();
    void FollowVendor();
    bool CheckFunds(QWidget* parent);
    ValueField& DefaultOf(const QString& tag) const;

    Application* m_application = nullptr;
    QList<PickItem> m_vendorCodes; // by the vendors' ids
    std::vector<std::unique_ptr<Element>> m_elements;

    friend class OrderSettingsDialog;
};

} // namespace sysadmin
