#pragma once

#include "circulation/MatrixEntries.h"
#include "circulation/MatrixForm.h"
#include "framework/FormDialog.h"

namespace sysadmin {

class Application;

/// A dialog that edits a loan rule and sends it itself: it closes once the server has taken the rule, and
/// keeps what was entered otherwise.
class MatrixDialog : public FormDialog {
    Q_OBJECT

public:
    void done(int result) override;

protected:
    /// The form outlives the dialog.
    MatrixDialog(Application& application, MatrixForm& rule, const MatrixGroup& group,
                 const FormDialogSpec& spec, const Layout& layout, QWidget* parent);

    /// Asks whatever has to be asked and sends the rule; true when it is stored.
    virtual bool Save() = 0;
    /// Asks where a zero stands that is seldom meant; false when the operator wants to change it.
    bool ConfirmZeros();
    /// Sends what was put; a failure is reported under the caption.
    bool Send(const QString& request, const QString& caption);
    void Report(qint16 status, const QString& caption);
    /// Tells the rest of the program that the matrix is another one now.
    void Announce(const QString& what);

    Application& m_application;
    MatrixForm& m_rule;
    MatrixGroup m_group;

private:
    bool m_readOnly;
};

/// Reads a stored entry's rule into the form; a failure is reported.
bool ReadMatrixRule(Application& application, const MatrixGroup& group, const MatrixEntry& entry,
                    MatrixForm& rule);
/// Asks what entries of the group can be made for; none after a failure, which is reported.
std::optional<MatrixChoices> ReadMatrixChoices(Application& application, const MatrixGroup& group);

/// Shows an entry's rule, to be changed where that is allowed. True when it was saved.
bool ModifyMatrixEntry(Application& application, QWidget* parent, const MatrixGroup& group,
                       const MatrixEntry& entry, MatrixKind kind);
/// Makes one rule for as many pairs as the operator chooses; begins with some of them chosen, and where
/// `source` is an entry with its rule. True when it was saved.
bool AddMatrixEntries(Application& application, QWidget* parent, const MatrixGroup& group, MatrixKind kind,
                      const QList<MatrixEntry>& chosen = {}, const MatrixEntry& source = {});
/// Changes chosen fields of several entries at once. True when they were saved.
bool ModifyMatrixEntries(Application& application, QWidget* parent, const MatrixGroup& group,
                         const QList<MatrixEntry>& entries, MatrixKind kind);

} // namespace sysadmin
