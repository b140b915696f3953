#pragma once

#include "core/data/RequestChannel.h"

#include <QDialog>

class QPushButton;
class QTabWidget;

namespace sysadmin {

class AddressPage;
class Application;

/// The addresses of one location, a tab each. They travel inside the location's own record.
class frmSystem_Addresses : public QDialog {
    Q_OBJECT

public:
    frmSystem_Addresses(Application& application, const QString& locationId, bool readOnly, QWidget* parent);

    /// Reads the addresses; false when that failed (and was told).
    bool Load();
    /// Refuses to close over an edit that is not saved.
    void reject() override;

private:
    /// Asks for the location's record; its status.
    qint16 ReadLocation();
    void ReadAddresses(AddressPage* justSaved);
    qint16 Send(AddressPage& page, int action);
    void StartNew();
    void Save();
    void Delete();
    void RefreshControls();
    AddressPage& CurrentPage() const;
    AddressPage* PageOf(const QString& addressId) const;

    Application& m_application;
    QString m_locationId;
    bool m_readOnly;
    wire::Fields m_location; // the location's own fields, which go back unchanged
    QList<AddressPage*> m_pages;
    QTabWidget* tabAddress = nullptr;
    QPushButton* cmdNew = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdClear = nullptr;
    QPushButton* cmdDelete = nullptr;
    QPushButton* cmdClose = nullptr;
    QObject m_whileOpen; // ends before the tabs do, which tell of their pages' end, too
};

} // namespace sysadmin
