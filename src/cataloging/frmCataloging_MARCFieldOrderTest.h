#pragma once

#include "cataloging/FieldOrder.h"

#include <QDialog>

class QLabel;

namespace sysadmin {

class ListGrid;
class Prompter;
class RecordEntry;
struct PlacedField;

/// Tries a configuration: a record, pasted or out of a file, before and after, with what placed each field.
class frmCataloging_MARCFieldOrderTest : public QDialog {
    Q_OBJECT

public:
    frmCataloging_MARCFieldOrderTest(const OrderingRules& catalogue, const FieldOrderConfig& configuration,
                                     Prompter& prompter, QWidget* parent);

private:
    void ShowRecord();
    QString GroupText(const PlacedField& field) const;
    QString RuleText(const PlacedField& field) const;

    const OrderingRules& m_catalogue;
    const FieldOrderConfig m_configuration;
    RecordEntry* m_entry = nullptr;
    QLabel* lblVerdict = nullptr;
    ListGrid* vsfBefore = nullptr;
    ListGrid* vsfAfter = nullptr;
};

} // namespace sysadmin
