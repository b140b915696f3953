#pragma once

#include "core/data/Components.h"

#include <QDialog>

namespace sysadmin {

class ListGrid;
class Prompter;

/// A list of components: those of the workstation with which something is wrong, or those on which the
/// program stands. It is printed, copied, and closed.
class frmVersionInfo : public QDialog {
    Q_OBJECT

public:
    /// A component and what there is to say of it.
    using Row = QStringList;
    struct Contents {
        QString title;
        QStringList columns;
        QList<Row> rows;
        QString note{};       ///< below the list
        bool isError = false; ///< the button that leaves ends the program
    };

    frmVersionInfo(const Contents& contents, Prompter& prompter, QWidget* parent = nullptr);

    /// Whether the operator left the program, not only this window.
    bool IsExit() const { return m_isExit; }

private:
    void Copy();

    Contents m_contents;
    ListGrid* m_grid = nullptr;
    bool m_isExit = false;
};

/// What is wrong with components, as the dialog shows it.
frmVersionInfo::Contents ErrorsOf(const QList<ComponentFinding>& findings);

/// What is done with the workstation's components before anybody signs on.
struct ComponentSetup {
    QString folder = SystemFolder();
    bool check = true; ///< their versions; they are registered in any case
    QString table = ComponentTable();
    ProgramRunner run = RunAndWait;
};

/// Registers the components and tells what is wrong with them. Where their folder is missing there are none.
/// False when the operator ends the program.
bool PrepareComponents(const ComponentSetup& setup, Prompter& prompter);

} // namespace sysadmin
