#pragma once

#include <QList>
#include <QVersionNumber>

#include <functional>

namespace sysadmin {

/// A control or library that has to be installed on a workstation, and in which version.
struct RequiredComponent {
    QString file;
    QVersionNumber required;
    QVersionNumber minimum;
    bool exact = false; ///< only the required version will do; else any from the minimum on
};

/// What is wrong with a component.
struct ComponentFinding {
    QString resource;
    QString condition;
    bool operator==(const ComponentFinding&) const = default;
};

/// The components that this program requires, as one text: for each of them file name, required version,
/// minimum version and rule ("=" or "+"), all with "~" between them.
QString ComponentTable();

/// What a table says. Entries that are not in order are left out, and the list is not whole then.
struct ComponentList {
    QList<RequiredComponent> components;
    bool isWhole = false;
};
ComponentList ReadComponentTable(const QString& table);

/// The folder in which components are looked for unless another is named: "System" beside the program. There
/// is none where none are installed.
QString SystemFolder();
/// The path of the component's file in the folder, whatever the case of its name there; empty when there is
/// none.
QString FindComponent(const QString& folder, const QString& file);
/// What is wrong with the components in the folder, in the list's order.
QList<ComponentFinding> CheckComponents(const QList<RequiredComponent>& components, const QString& folder);

/// Runs a program and returns when it has ended.
using ProgramRunner = std::function<void(const QString& program, const QStringList& arguments)>;
void RunAndWait(const QString& program, const QStringList& arguments);
/// Registers the tree controls and libraries of the folder, one after the other, by its "ComUtil.exe".
void RegisterComponents(const QString& folder, const ProgramRunner& run);

} // namespace sysadmin
