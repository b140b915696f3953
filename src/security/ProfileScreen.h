#pragma once

#include "framework/MaintenanceScreen.h"
#include "security/ProfileForm.h"

class QLineEdit;

namespace sysadmin {

/// The screen of a module rights profile. What distinguishes the modules is in the profile's declaration.
class ProfileScreen : public MaintenanceScreen {
    Q_OBJECT

public:
    ProfileScreen(Application& application, const ProfileSpec& spec, QWidget* parent);
    void GoTo(const QString& control) override;

protected:
    bool PrepareNew(Table& table) override;
    void RefreshOwnControls() override;

private:
    QList<PutStep> PutSteps();
    /// A list that is stored in a request of its own.
    QList<SaveStep> SaveSteps();
    PutStep PutRight(const QString& tag);
    /// Asks for a list of ids and names; false when there is nothing of it (which was reported).
    bool ReadAll(const QString& request, ListForm form, const QString& idTag, const QString& nameTag,
                 QList<GridRow>& rows);
    void Compare();
    QWidget* MakeFilter();
    void FilterRights(const QString& text);

    ProfileSpec m_spec;
    ProfileForm& m_form;
    QLineEdit* m_txtFindRight = nullptr;
    QPushButton* m_cmdCompare = nullptr;
};

} // namespace sysadmin
