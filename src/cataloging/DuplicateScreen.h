#pragma once

#include "cataloging/DuplicateForm.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

DuplicateSpec BibDuplicates();
DuplicateSpec AuthorityDuplicates();

/// The screen of the profiles by which incoming records of one type are recognised as duplicates.
class DuplicateScreen : public MaintenanceScreen {
    Q_OBJECT

public:
    DuplicateScreen(Application& application, const DuplicateSpec& spec, QWidget* parent);

protected:
    void BeforeLoad() override;
    void PutListKey(const Table& table) override;
    void RefreshOwnControls() override;

private:
    void LoadIndexes();
    void Try();

    DuplicateSpec m_spec;
    DuplicateForm& m_form;
    QPushButton* m_cmdTry = nullptr;
};

} // namespace sysadmin
