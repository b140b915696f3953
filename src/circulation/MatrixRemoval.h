#pragma once

#include "circulation/MatrixEntries.h"

#include <QDialog>
#include <QMap>

class QProgressBar;
class QTimer;

namespace sysadmin {

class Application;

/// Deletes entries of the matrix one after the other. What is refused stays, and each reason is reported
/// once, at the end; a lost connection ends it.
class MatrixRemoval {
public:
    MatrixRemoval(Application& application, const MatrixGroup& group, const QList<MatrixEntry>& entries);

    /// Deletes the next one; false when there is nothing more to do.
    bool Step();
    qsizetype Done() const { return m_done; }
    qsizetype Count() const { return m_entries.size(); }
    /// The ids of those that stay because the server refused.
    const QStringList& Refused() const { return m_refused; }
    /// Tells the operator why entries stay.
    void ReportRefusals();

private:
    Application& m_application;
    MatrixGroup m_group;
    QList<MatrixEntry> m_entries;
    qsizetype m_done = 0;
    QStringList m_refused;
    QMap<qint16, int> m_statuses;
    bool m_isLost = false;
};

/// Shows how far the removal is and lets the operator stop it; what is deleted by then is deleted.
class frmCirculation_MatrixRemoval : public QDialog {
    Q_OBJECT

public:
    frmCirculation_MatrixRemoval(MatrixRemoval& removal, QWidget* parent);

private:
    void Step();

    MatrixRemoval& m_removal;
    QProgressBar* m_bar;
    QTimer* m_next;
};

} // namespace sysadmin
