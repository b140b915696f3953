#include "framework/ConflictDialog.h"

#include "core/Prompter.h"
#include "framework/forms/ShownDate.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

QString Headline(const Conflict& conflict) {
    const QString by = conflict.by.isEmpty() ? ConflictDialog::tr("Somebody else") : conflict.by;
    const QString what =
        conflict.removed ? ConflictDialog::tr("%1 deleted this record (%2) on %3, after you had opened it.")
                         : ConflictDialog::tr("%1 changed this record (%2) on %3, after you had opened it.");
    return what.arg(by, conflict.subject, ShownDate(conflict.at, WireMoment));
}

QString Explanation(const Conflict& conflict, bool canSave, bool anyDifference) {
    if (conflict.deletes)
        return ConflictDialog::tr("It was not deleted.");
    if (conflict.removed)
        return canSave ? ConflictDialog::tr("Your changes were not saved. You can save them as a new record.")
                       : ConflictDialog::tr("Your changes were not saved.");
    return anyDifference ? ConflictDialog::tr("Your changes were not saved. These fields differ:")
                         : ConflictDialog::tr("Your changes were not saved.");
}

} // namespace

ConflictDialog::ConflictDialog(const Conflict& conflict, const QList<Difference>& differences, bool canSave,
                               QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmConflict");
    setProperty(HelpContextProperty, 50105);
    setWindowTitle(conflict.removed ? tr("Deleted by Somebody Else") : tr("Changed by Somebody Else"));
    auto* whole = new QVBoxLayout(this);
    auto* headline = new QLabel(Headline(conflict), this);
    headline->setObjectName("lblConflict");
    headline->setTextFormat(Qt::PlainText);
    headline->setWordWrap(true);
    QFont bold = headline->font();
    bold.setBold(true);
    headline->setFont(bold);
    whole->addWidget(headline);
    auto* explanation = new QLabel(Explanation(conflict, canSave, !differences.isEmpty()), this);
    explanation->setObjectName("lblExplanation");
    explanation->setWordWrap(true);
    whole->addWidget(explanation);

    if (!differences.isEmpty()) {
        auto* table = new QTableWidget(int(differences.size()), 4, this);
        table->setObjectName("vsfDifferences");
        const QString mine = conflict.deletes ? tr("In Your List") : tr("Mine");
        table->setHorizontalHeaderLabels({tr("Field"), tr("Before"), mine, tr("Theirs")});
        table->verticalHeader()->hide();
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->setSelectionMode(QAbstractItemView::NoSelection);
        table->setWordWrap(true);
        for (int row = 0; row < differences.size(); ++row) {
            const Difference& difference = differences[row];
            const QStringList cells{difference.caption, difference.stored, difference.mine,
                                    difference.theirs};
            for (int column = 0; column < cells.size(); ++column) {
                auto* item = new QTableWidgetItem(cells[column]);
                item->setToolTip(cells[column]);
                // What differs from the record as it was is what the operator looks for.
                if (column > 1 && cells[column] != difference.stored)
                    item->setFont(bold);
                table->setItem(row, column, item);
            }
        }
        if (conflict.deletes)
            table->setColumnHidden(2, true);
        table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
        table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
        whole->addWidget(table, 1);
        resize(720, qMin(480, 190 + 30 * int(differences.size())));
    }

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    if (conflict.deletes) {
        buttons->addWidget(AddButton("cmdSaveMine", tr("&Delete Anyway"), ConflictAnswer::SaveMine));
        buttons->addWidget(AddButton("cmdKeepTheirs", tr("&Keep Theirs"), ConflictAnswer::KeepTheirs));
    } else {
        auto* save = AddButton("cmdSaveMine", conflict.removed ? tr("&Save as New") : tr("&Save Mine"),
                               ConflictAnswer::SaveMine);
        save->setVisible(canSave);
        buttons->addWidget(save);
        buttons->addWidget(AddButton("cmdKeepTheirs",
                                     conflict.removed ? tr("&Discard Mine") : tr("&Keep Theirs"),
                                     ConflictAnswer::KeepTheirs));
        buttons->addWidget(
            AddButton("cmdBackToEditing", tr("&Back to Editing"), ConflictAnswer::BackToEditing));
    }
    whole->addLayout(buttons);
    auto* quiet = qobject_cast<QPushButton*>(buttons->itemAt(buttons->count() - 1)->widget());
    quiet->setDefault(true);
    quiet->setFocus();
}

QPushButton* ConflictDialog::AddButton(const QString& name, const QString& caption, ConflictAnswer answer) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, answer] {
        m_answer = answer;
        accept();
    });
    return button;
}

} // namespace sysadmin

#include "moc_ConflictDialog.cpp"
