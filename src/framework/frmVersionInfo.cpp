#include "framework/frmVersionInfo.h"

#include "core/Prompter.h"
#include "framework/ListGrid.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

frmVersionInfo::frmVersionInfo(const Contents& contents, Prompter& prompter, QWidget* parent)
    : QDialog(parent)
    , m_contents(contents) {
    setObjectName("frmVersionInfo");
    setWindowTitle(contents.title);
    setProperty(HelpContextProperty, 50106);

    QList<GridColumn> columns;
    for (const QString& caption : contents.columns)
        columns.append({.caption = caption, .width = 250});
    m_grid = new ListGrid("vsfVersionInfo", columns, this);
    m_grid->SetPrompter(prompter);
    m_grid->setAccessibleName(contents.title);
    QList<GridRow> rows;
    for (const Row& row : contents.rows)
        rows.append({QString::number(rows.size()), row, {}});
    m_grid->SetRows(rows);

    auto* lblNote = new QLabel(contents.note, this);
    lblNote->setObjectName("lblNote");
    lblNote->setWordWrap(true);
    lblNote->setVisible(!contents.note.isEmpty());

    auto* buttons = new QHBoxLayout;
    const auto add = [&](const QString& name, const QString& caption) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        buttons->addWidget(button);
        return button;
    };
    auto* print = add("cmdV_I_PrintList", tr("&Print List"));
    auto* copy = add("cmdV_I_Copy", tr("&Copy"));
    buttons->addStretch();
    auto* leave = add("cmdV_I_Exit", contents.isError ? tr("E&xit") : tr("C&lose"));
    print->setEnabled(!rows.isEmpty());
    connect(print, &QPushButton::clicked, m_grid, &ListGrid::Print);
    connect(copy, &QPushButton::clicked, this, &frmVersionInfo::Copy);
    connect(leave, &QPushButton::clicked, this, [this] {
        m_isExit = m_contents.isError;
        reject();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_grid, 1);
    layout->addWidget(lblNote);
    layout->addLayout(buttons);
    m_grid->setFocus();
    resize(620, 420);
}

// The whole list, for a message to whoever helps.
void frmVersionInfo::Copy() {
    QStringList lines;
    for (const Row& row : m_contents.rows)
        lines.append(row.join('\t'));
    QGuiApplication::clipboard()->setText(lines.join('\n') + '\n');
}

frmVersionInfo::Contents ErrorsOf(const QList<ComponentFinding>& findings) {
    QList<frmVersionInfo::Row> rows;
    for (const ComponentFinding& finding : findings)
        rows.append({finding.resource, finding.condition});
    return {.title = frmVersionInfo::tr("Resource Validation Errors"),
            .columns = {frmVersionInfo::tr("Required Resource"), frmVersionInfo::tr("Error Condition")},
            .rows = rows,
            .note = frmVersionInfo::tr("These errors must be corrected for this application to run."),
            .isError = true};
}

bool PrepareComponents(const ComponentSetup& setup, Prompter& prompter) {
    if (!QDir(setup.folder).exists())
        return true;
    RegisterComponents(setup.folder, setup.run);
    if (!setup.check)
        return true;
    const ComponentList required = ReadComponentTable(setup.table);
    if (!required.isWhole)
        prompter.ShowBox(nullptr, {.text = frmVersionInfo::tr("Resource List/Count and/or") +
                                           frmVersionInfo::tr(" Version Table mismatch!"),
                                   .title = frmVersionInfo::tr("Resource Error")});
    const QList<ComponentFinding> findings = CheckComponents(required.components, setup.folder);
    if (findings.isEmpty())
        return true;
    frmVersionInfo dialog(ErrorsOf(findings), prompter);
    prompter.RunDialog(dialog);
    return !dialog.IsExit();
}

} // namespace sysadmin

#include "moc_frmVersionInfo.cpp"
