#include "security/CopyPreview.h"

#include "core/Application.h"
#include "core/data/Tr.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "security/ConfigurationWords.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int HelpTopic = 50904;

QString WordOf(QChar kind) {
    return kind == u'A' ? Tr("Add") : kind == u'C' ? Tr("Change") : Tr("Remove");
}

QString ValuesOf(const ConfigurationDifference& difference, const ConfigurationWords& words) {
    QStringList values;
    for (const ConfigurationDifference::Value& value : difference.values)
        if (difference.kind == u'C')
            values << Tr("%1: %2 -> %3")
                          .arg(words.FieldOf(difference.table, value.column),
                               words.ValueOf(difference.table, value.column, value.before),
                               words.ValueOf(difference.table, value.column, value.after));
    return values.join("; ");
}

QList<GridRow> RowsOf(const ConfigurationDifferences& plan, const ConfigurationWords& words) {
    QList<GridRow> rows;
    const auto add = [&](const QStringList& cells) {
        rows.append({QString::number(rows.size()), cells, {}});
    };
    for (const ConfigurationProblem& problem : plan.problems)
        add({Tr("Refused"), words.PlaceOf(problem, plan.differences), problem.text});
    for (const ConfigurationDifference& difference : plan.differences) {
        QStringList details{ValuesOf(difference, words)};
        if (!difference.because.isEmpty())
            details << Tr("Comes along: %1").arg(difference.because);
        details.removeAll(QString());
        add({WordOf(difference.kind), words.PlaceOf(difference), details.join(' ')});
    }
    return rows;
}

} // namespace

bool ShowCopyPreview(Application& application, QWidget* parent, const ConfigurationDifferences& plan,
                     const QString& source, const QString& target) {
    const ConfigurationWords words(application, plan.tables);
    const bool isRefused = !plan.problems.isEmpty();
    QStringList sentences;
    int along = 0;
    for (const ConfigurationDifference& difference : plan.differences)
        along += difference.because.isEmpty() ? 0 : 1;
    if (isRefused)
        sentences
            << Tr("This cannot be copied from %1 into %2. Nothing has been changed.").arg(source, target);
    else
        sentences << Tr("%L1 records are copied from %2 into %3, all of them or none.")
                         .arg(plan.differences.size())
                         .arg(source, target);
    if (along > 0)
        sentences << Tr("%L1 of them come along because others need them.").arg(along);
    sentences += plan.missing;

    QDialog dialog(parent);
    dialog.setObjectName("frmCopyPreview");
    dialog.setProperty(HelpContextProperty, HelpTopic);
    dialog.setWindowTitle(Tr("Copy Preview"));
    auto* lblNote = new QLabel(sentences.join('\n'), &dialog);
    lblNote->setObjectName("lblNote");
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->setWordWrap(true);
    auto* grid = new ListGrid("vsfPreview",
                              {{.caption = Tr("What"), .width = 80},
                               {.caption = Tr("Record"), .width = 330},
                               {.caption = Tr("Details")}},
                              &dialog);
    grid->SetPrompter(application.prompter);
    grid->SetSortable(false);
    grid->setAccessibleName(dialog.windowTitle());
    grid->SetRows(RowsOf(plan, words));
    auto* buttons = new QDialogButtonBox(&dialog);
    QPushButton* cmdCopy = buttons->addButton(Tr("Co&py"), QDialogButtonBox::AcceptRole);
    cmdCopy->setObjectName("cmdCopy");
    cmdCopy->setEnabled(!isRefused && !plan.differences.isEmpty());
    QPushButton* cmdCancel = buttons->addButton(QDialogButtonBox::Cancel);
    cmdCancel->setObjectName("cmdCancel");
    auto* whole = new QVBoxLayout(&dialog);
    whole->addWidget(lblNote);
    whole->addWidget(grid, 1);
    whole->addWidget(buttons);
    AssignMnemonics(dialog);
    dialog.resize(900, 480);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    (isRefused ? cmdCancel : cmdCopy)->setDefault(true);
    grid->setFocus();
    return application.prompter.RunDialog(dialog);
}

} // namespace sysadmin
