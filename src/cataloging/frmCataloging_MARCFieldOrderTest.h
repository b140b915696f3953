#pragma once

#include "cataloging/FieldOrder.h"
#include "marc/ReadRecords.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QPlainTextEdit;

namespace sysadmin {

class ListGrid;
class Prompter;
struct PlacedField;

/// Tries a configuration: a record, pasted or out of a file, before and after, with what placed each field.
class frmCataloging_MARCFieldOrderTest : public QDialog {
    Q_OBJECT

public:
    frmCataloging_MARCFieldOrderTest(const OrderingRules& catalogue, const FieldOrderConfig& configuration,
                                     Prompter& prompter, QWidget* parent);

private:
    void OpenFile();
    /// Takes what was read, and shows its first record.
    void Take(const marc::Result& result);
    void ShowRecord();
    QString GroupText(const PlacedField& field) const;
    QString RuleText(const PlacedField& field) const;

    const OrderingRules& m_catalogue;
    const FieldOrderConfig m_configuration;
    Prompter& m_prompter;
    QList<marc::Record> m_records;
    bool m_isFromFile = false;
    QPlainTextEdit* txtRecord = nullptr;
    QComboBox* cboRecord = nullptr;
    QLabel* lblProblems = nullptr;
    QLabel* lblVerdict = nullptr;
    ListGrid* vsfBefore = nullptr;
    ListGrid* vsfAfter = nullptr;
};

} // namespace sysadmin
