#pragma once

#include "circulation/MatrixEntries.h"

#include <QObject>

class QWidget;

namespace sysadmin {

class Application;
class MatrixList;

/// The two lists of a policy group's loan rules, one for each kind, with the buttons that act on them: the
/// pages "&Matrix" and "Sh&ort Loan Matrix". A page is made with the widget around it (a slot of a layout);
/// before a group is given both are empty and locked.
class MatrixPages : public QObject {
    Q_OBJECT

public:
    explicit MatrixPages(Application& application, QObject* parent);

    /// The captions of the pages.
    static QString Caption(MatrixKind kind);
    /// The page; the widget around it takes it over.
    QWidget* MakePage(MatrixKind kind, QWidget* parent);
    /// Whose rules they are; none while there is no stored group.
    void SetGroup(const std::optional<MatrixGroup>& group);
    const std::optional<MatrixGroup>& Group() const { return m_group; }
    /// Reads the list anew ("LstMatPatronItem"); false after a failure, which is reported.
    bool Load();

    /// The entries of a kind.
    const QList<MatrixEntry>& Entries(MatrixKind kind) const;

signals:
    /// The lists were read, or there is no group any more.
    void Loaded();

private:
    bool AskShortLoans();

    Application& m_application;
    std::optional<MatrixGroup> m_group;
    QList<MatrixEntry> m_regular;
    QList<MatrixEntry> m_shortLoans;
};

} // namespace sysadmin
