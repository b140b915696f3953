#include "framework/frmWhereUsed.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/data/Tr.h"
#include "framework/Captions.h"
#include "framework/ListGrid.h"
#include "framework/forms/ReadList.h"
#include "wire/Status.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int WhereUsedTopic = 50107;

/// A record that refers to the one in question.
struct Use {
    QString word;
    QString key;
    QString name;
    QString tag; ///< of the field that refers; empty: in a list that is part of the record
    int times = 1;
    bool keeps = false; ///< the record in question cannot be deleted meanwhile
};

struct Uses {
    QList<Use> records;
    QStringList elsewhere; ///< in words: what other programs keep
    int hidden = 0;        ///< further ones that the operator may not see
};

std::optional<Uses> ReadUses(Application& application, const UsedRecord& record) {
    Uses uses;
    const auto readRecord = [&](RequestChannel& reply) {
        uses.records.append({reply.GetField("Sbj"), reply.GetField("UK"), reply.GetField("UN"),
                             reply.GetField("UT"), reply.GetField("UC").toInt(), reply.GetFlag("UR")});
    };
    const auto readOther = [&](RequestChannel& reply) {
        uses.elsewhere.append(
            QString("%L1 %2").arg(reply.GetField("UQ").toLongLong()).arg(reply.GetField("UX")));
    };
    const qint16 result = ReadList(
        application.channel,
        {.request = "LstUse",
         .putKey =
             [&](RequestChannel& channel) {
                 channel.PutField("Sbj", record.word);
                 channel.PutField("ID", record.key);
             },
         .report =
             [&](qint16 status) { application.ReportRequestFailure(status, Tr("Where Used"), record.name); }},
        {{"Sbj", readRecord}, {"UX", readOther}, {"UH", [&](RequestChannel& reply) {
                                                      uses.hidden = reply.GetField("UH").toInt();
                                                  }}});
    return result == wire::status::Ok ? std::optional(uses) : std::nullopt;
}

QList<GridRow> RowsOf(const Uses& uses, MainWindow* window) {
    QList<GridRow> rows;
    for (const Use& use : uses.records) {
        const SubjectPlace* place = window ? window->PlaceOf(use.word) : nullptr;
        const QString field = place ? place->fields.value(use.tag).caption : QString();
        rows.append({QString::number(rows.size()),
                     {place    ? place->screen
                      : window ? Tr("Another program")
                               : use.word,
                      use.name, field, use.times > 1 ? QLocale().toString(use.times) : QString(),
                      use.keeps ? "Y" : "N"},
                     {}});
    }
    return rows;
}

QString NoteOf(const Uses& uses) {
    QStringList sentences;
    if (uses.records.isEmpty() && uses.elsewhere.isEmpty() && uses.hidden == 0)
        sentences << Tr("Nothing refers to it.");
    if (!uses.elsewhere.isEmpty())
        sentences << Tr("Other programs use it: %1.").arg(uses.elsewhere.join(", "));
    if (uses.hidden > 0)
        sentences << Tr("%L1 more that you may not see.").arg(uses.hidden);
    return sentences.join('\n');
}

} // namespace

bool ShowWhereUsed(Application& application, QWidget* parent, const UsedRecord& record) {
    const std::optional<Uses> uses = ReadUses(application, record);
    if (!uses)
        return false;
    QDialog dialog(parent);
    dialog.setObjectName("frmWhereUsed");
    dialog.setProperty(HelpContextProperty, WhereUsedTopic);
    dialog.setWindowTitle(Tr("Where \"%1\" Is Used").arg(record.name));
    auto* grid = new ListGrid("vsfUses",
                              {{.caption = Tr("Setting"), .width = 260},
                               {.caption = Tr("Record"), .width = 220},
                               {.caption = Tr("Field"), .width = 160},
                               {.caption = Tr("Times"), .width = 60},
                               {.caption = Tr("Keeps It"), .width = 70, .yesNo = true}},
                              &dialog);
    grid->SetPrompter(application.prompter);
    grid->setAccessibleName(dialog.windowTitle());
    grid->SetRows(RowsOf(*uses, application.mainWindow));
    auto* lblNote = new QLabel(NoteOf(*uses), &dialog);
    lblNote->setObjectName("lblNote");
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->setWordWrap(true);
    lblNote->setVisible(!lblNote->text().isEmpty());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    QPushButton* cmdGoTo = buttons->addButton(Tr("&Go To"), QDialogButtonBox::AcceptRole);
    cmdGoTo->setObjectName("cmdGoTo");
    auto* whole = new QVBoxLayout(&dialog);
    whole->addWidget(grid, 1);
    whole->addWidget(lblNote);
    whole->addWidget(buttons);
    AssignMnemonics(dialog);
    dialog.resize(820, 420);

    const auto chosen = [&]() -> const Use* {
        const QString key = grid->SelectedKey();
        const Use* use = key.isEmpty() ? nullptr : &uses->records[key.toInt()];
        const bool isSeen = use && application.mainWindow && application.mainWindow->PlaceOf(use->word);
        return isSeen ? use : nullptr;
    };
    const auto follow = [&] { cmdGoTo->setEnabled(chosen()); };
    QObject::connect(grid, &ListGrid::SelectionMoved, &dialog, follow);
    QObject::connect(grid, &ListGrid::RowActivated, cmdGoTo, &QPushButton::click);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    follow();
    grid->setFocus();
    if (!application.prompter.RunDialog(dialog))
        return false;
    const Use use = *chosen();
    const QString control = application.mainWindow->PlaceOf(use.word)->fields.value(use.tag).control;
    application.mainWindow->GoToRecord(use.word, use.key, use.name, control);
    return true;
}

} // namespace sysadmin
