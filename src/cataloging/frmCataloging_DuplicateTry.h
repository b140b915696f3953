#pragma once

#include "cataloging/DuplicateScore.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;

namespace sysadmin {

class ListGrid;
class Prompter;

/// Two records side by side, compared by a profile: which indexes match, the sum of their weights against
/// both thresholds, and what would happen. Nothing is sent.
class frmCataloging_DuplicateTry : public QDialog {
    Q_OBJECT

public:
    frmCataloging_DuplicateTry(Prompter& prompter, const DuplicateProfile& profile, const QString& name,
                               QWidget* parent);

private:
    QPlainTextEdit* AddRecord(class QHBoxLayout& side, const QString& role, const QString& caption);
    void Open(QPlainTextEdit& text);
    void Compare();
    void Show(const DuplicateScore& score);

    Prompter& m_prompter;
    DuplicateProfile m_profile;
    QPlainTextEdit* m_txtIncoming = nullptr;
    QPlainTextEdit* m_txtExisting = nullptr;
    ListGrid* m_grid = nullptr;
    QLabel* m_lblOutcome = nullptr;
};

} // namespace sysadmin
