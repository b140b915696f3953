#pragma once

#include "framework/forms/RowDialog.h"
#include "system/IpAddress.h"

#include <QDialog>

#include <functional>

class QRadioButton;

namespace sysadmin {

class IpAddressBoxes;
class Prompter;

/// Says why an entry is not taken; an empty text takes it.
using EntryCheck = std::function<QString(const QStringList& entry)>;

/// The options' names in a dialog for addresses, and a caption for each address that it asks for.
struct IpDialogNames {
    QString optionIpv4;
    QString optionIpv6;
    QStringList captions;
};

/// Asks for one address, or for the two ends of a range. It closes only over addresses that the check takes.
class IpAddressDialog : public QDialog {
    Q_OBJECT

public:
    IpAddressDialog(Prompter& prompter, const FormDialogSpec& spec, const IpDialogNames& names,
                    const EntryCheck& check, QWidget* parent);

    /// Shows addresses in canonical form, as many as there are captions.
    void SetAddresses(const QStringList& addresses);
    /// The accepted addresses in canonical form.
    const QStringList& Addresses() const { return m_addresses; }

    void accept() override;

private:
    void SetFamily(IpFamily family);

    Prompter& m_prompter;
    EntryCheck m_check;
    QStringList m_addresses;
    QRadioButton* m_ipv4 = nullptr;
    QRadioButton* m_ipv6 = nullptr;
    QList<IpAddressBoxes*> m_boxes;
};

} // namespace sysadmin
