#pragma once

#include "cataloging/CallNumberSearch.h"

#include <QDialog>

class QLabel;

namespace sysadmin {

class ListGrid;
class Prompter;
class RecordEntry;

/// Tries a hierarchy: which of its places gives a record's holdings their call number, and why the others do
/// not.
class frmCataloging_CallNumberTry : public QDialog {
    Q_OBJECT

public:
    frmCataloging_CallNumberTry(const CallNumberHierarchy& hierarchy, Prompter& prompter, QWidget* parent);

private:
    void Show();

    const CallNumberHierarchy m_hierarchy;
    RecordEntry* m_record = nullptr;
    QLabel* lblVerdict = nullptr;
    ListGrid* vsfPlaces = nullptr;
};

} // namespace sysadmin
