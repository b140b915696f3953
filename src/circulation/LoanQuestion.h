#pragma once

#include <QString>

class QWidget;

namespace sysadmin {

class Application;
struct MatrixEntry;
struct MatrixGroup;

/// What a test of a loan begins with. What is empty stays as it stood there.
struct LoanQuestion {
    QString cluster{};     ///< empty: the current one
    QString policyGroup{}; ///< its first desk is chosen, unless a location is given
    QString location{};
    QString patronGroup{};
    QString itemType{};
};

/// What is asked about an entry of a policy group's matrix.
LoanQuestion QuestionOf(const MatrixGroup& group, const MatrixEntry& entry);

/// Opens the test of a loan: as a screen, or, over a modal dialog (`parent` says from where), as a dialog.
void OpenLoanTest(Application& application, QWidget* parent, const LoanQuestion& preset);

/// Whether a change of the subject may give a loan another answer.
bool DependLoansOn(const QString& subject);

} // namespace sysadmin
