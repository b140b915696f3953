#pragma once

#include "framework/MaintenanceScreen.h"
#include "search/MatchRows.h"

namespace sysadmin {

/// A hook: how a record of another database finds this library's holdings.
struct HookForm : Form {
    HookForm();
    std::optional<Finding> FormProblem() override;

    TextField txtName;
    MatchField vsfMatches;
};

class frmSearch_HookToHolding : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_HookToHolding(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override { LoadIndexes(); }

private:
    void LoadIndexes();

    HookForm& m_form;
};

} // namespace sysadmin
