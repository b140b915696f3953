#pragma once

#include "framework/SingleRecordScreen.h"
#include "framework/forms/ListFields.h"
#include "search/MatchRows.h"

namespace sysadmin {

/// How results of several databases are freed of records that are the same.
struct SimultaneousSearchForm : Form {
    SimultaneousSearchForm();
    Layout Draw();
    std::optional<Finding> FormProblem() override;

    FlagField chkRemoveDuplicates;
    NumberField txtMostCompared;
    MatchField vsfKeys;
    PickedField databases;
};

class frmSearch_SimultaneousSearch : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSearch_SimultaneousSearch(Application& application, QWidget* parent);

private:
    SimultaneousSearchForm& m_form;
};

} // namespace sysadmin
