#pragma once

#include "core/data/OrderingRules.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace sysadmin {

/// Asks for the parameter of a sort option that takes one.
class frmCataloging_MARCFieldSort : public QDialog {
    Q_OBJECT

public:
    explicit frmCataloging_MARCFieldSort(QWidget* parent);

    /// The option and what its parameter reads now.
    void Initialize(const OrderingRule& rule, const QString& shownParameter);
    /// What was entered; empty when the operator gave up.
    QString ParameterValue() const { return result() == Accepted ? m_value : QString(); }

private:
    void TakeText(const QString& text);

    QString m_value;
    int m_least = 1;
    QLabel* lblParameter = nullptr;
    QLineEdit* txtParameter = nullptr;
    QPushButton* cmdSave = nullptr;
};

} // namespace sysadmin
