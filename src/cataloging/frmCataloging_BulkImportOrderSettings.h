#pragma once

#include "cataloging/MarcPartField.h"
#include "framework/forms/Layout.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace sysadmin {

class Application;
class ImportSettings;

/// The orders that a rule creates: their header, and where a record has each part of a line: the dialog
/// "frmCataloging_BulkImportOrderSettings".
struct OrderSettingsForm : Form {
    OrderSettingsForm();
    ~OrderSettingsForm() override;

    /// Asks for what the orders choose from; `locations` of the library. A failure is told, and false.
    bool LoadChoices(Application& application, const QList<PickItem>& locations);
    /// Takes the orders of a rule, with the accounts of their vendor.
    void Begin(const ImportSettings& orders);
    /// True when the operator confirmed what is entered, and fund, ledger and fiscal period go together.
    bool Edit(QWidget* parent);

    /// What the choices are called, by the names of the settings.
    QHash<QString, QString> ChosenNames() const;
    /// The entries of a default: "DefaultCodeFund" and so on.
    QList<PickItem> EntriesOf(const QString& name) const;
    /// Asks whether fund, ledger and fiscal period (their code and ids) go together. The sentence that says
    /// why not, empty when they do; none when the server did not say (`report` is told).
    std::optional<QString> AskFunds(const QStringList& values,
                                    const std::function<void(qint16)>& report) const;

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
