#include "framework/ManyRecords.h"

#include "core/Application.h"
#include "core/data/StatusTable.h"
#include "framework/Captions.h"
#include "framework/Declaration.h"
#include "framework/forms/ShownDate.h"
#include "wire/ManyChanges.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace many = wire::many;
namespace status = wire::status;

namespace {

constexpr int PlaceRole = Qt::UserRole;
/// Of so many records all fields are shown at once; of more the operator opens those that he wants to see.
constexpr qsizetype MostOpen = 200;

enum Column { Name, Before, After };

} // namespace

frmManyPreview::frmManyPreview(Application& application, const ManyWords& words, const QList<ManySave>& saves,
                               QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_words(words)
    , m_saves(saves) {
    setObjectName("frmManyPreview");
    setProperty(HelpContextProperty, words.helpContext);
    setWindowTitle(words.title);
    lblNote = new QLabel(this);
    lblNote->setObjectName("lblNote");
    lblNote->setWordWrap(true);
    tvwRecords = new QTreeWidget(this);
    tvwRecords->setObjectName("tvwRecords");
    tvwRecords->setAccessibleName(tr("Records"));
    tvwRecords->setHeaderLabels({tr("Record"), tr("Before"), tr("After")});
    tvwRecords->setUniformRowHeights(true); // long lists stay quick
    tvwRecords->setAllColumnsShowFocus(true);
    tvwRecords->setColumnWidth(Name, 340);
    tvwRecords->setColumnWidth(Before, 240);
    auto* buttons = new QDialogButtonBox(this);
    cmdLeaveOut = buttons->addButton(tr("&Leave Out Refused"), QDialogButtonBox::ActionRole);
    cmdLeaveOut->setObjectName("cmdLeaveOut");
    cmdLeaveOut->setToolTip(tr("Unchecks the records that cannot be saved"));
    cmdSave = buttons->addButton(tr("&Save"), QDialogButtonBox::AcceptRole);
    cmdSave->setObjectName("cmdSave");
    cmdBack = buttons->addButton(tr("&Back"), QDialogButtonBox::RejectRole);
    cmdBack->setObjectName("cmdBack");
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(lblNote);
    whole->addWidget(tvwRecords, 1);
    whole->addWidget(buttons);
    resize(860, 520);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmManyPreview::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmManyPreview::reject);
    connect(cmdLeaveOut, &QPushButton::clicked, this, &frmManyPreview::LeaveOutRefused);
    connect(tvwRecords, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (m_filling || item->parent())
            return;
        m_saves[item->data(Name, PlaceRole).toLongLong()].isChosen = item->checkState(Name) == Qt::Checked;
        Refresh();
    });
    AssignMnemonics(*this); // before any of them is hidden
    ShowSaves();
    tvwRecords->setFocus();
}

bool frmManyPreview::IsSent(const ManySave& save) const {
    return save.isChosen && save.problem.isEmpty() && !save.request.isEmpty();
}

qint16 frmManyPreview::Send(bool isTry) {
    RequestChannel& channel = m_application.channel;
    if (isTry)
        channel.PutField(many::OnlyTry, "Y");
    for (const ManySave& save : m_saves) {
        if (!IsSent(save))
            continue;
        channel.PutField(many::Begins, save.request);
        for (const wire::Field& field : save.fields)
            channel.PutField(field.tag, field.value);
    }
    return channel.SendRequest(many::Request);
}

bool frmManyPreview::Try() {
    if (std::none_of(m_saves.begin(), m_saves.end(), [this](const ManySave& save) { return IsSent(save); }))
        return true;
    const qint16 result = Send(true);
    if (result != many::NotDone) {
        m_application.ReportRequestFailure(result, m_words.caption, m_words.subject);
        return false;
    }
    NoteRefusals();
    return true;
}

void frmManyPreview::NoteRefusals() {
    QList<ManySave*> sent;
    for (ManySave& save : m_saves)
        if (IsSent(save))
            sent.append(&save);
    RequestChannel& channel = m_application.channel;
    while (channel.NextRecord(many::Refused)) {
        ManySave* refused = sent.value(channel.GetField(many::Refused).toInt());
        if (!refused)
            continue;
        const auto why = qint16(channel.GetField(many::Why).toInt());
        const QString by = channel.GetField("ChBy");
        const QString at = ShownDate(channel.GetField("ChAt"), WireMoment);
        if (!by.isEmpty() && why == status::RecordChanged)
            refused->problem =
                tr("%1 has changed it meanwhile (%2). Back and Preview show it as it is now.").arg(by, at);
        else if (!by.isEmpty())
            refused->problem = tr("%1 has deleted it meanwhile (%2).").arg(by, at);
        else if (m_words.own && m_words.own->contains(why))
            refused->problem = m_words.own->value(why).text;
        else
            refused->problem = TextOfStatus(why).message;
        refused->problem = refused->problem.simplified();
    }
    ShowSaves();
}

void frmManyPreview::ShowSaves() {
    m_filling = true;
    tvwRecords->clear();
    QList<QTreeWidgetItem*> items;
    QFont strong = tvwRecords->font();
    strong.setWeight(QFont::DemiBold);
    const bool opens = std::count_if(m_saves.begin(), m_saves.end(), [](const ManySave& save) {
                           return !save.changes.isEmpty();
                       }) <= MostOpen;
    // What is wrong stands first.
    for (const bool isWrong : {true, false})
        for (qsizetype i = 0; i < m_saves.size(); ++i) {
            const ManySave& save = m_saves[i];
            if (save.problem.isEmpty() == isWrong || (!isWrong && save.request.isEmpty()))
                continue;
            auto* item =
                new QTreeWidgetItem({save.record, QString(), save.isNew && !isWrong ? tr("new") : QString()});
            item->setData(Name, PlaceRole, i);
            item->setFont(Name, strong);
            item->setCheckState(Name, save.isChosen ? Qt::Checked : Qt::Unchecked);
            if (isWrong) {
                auto* problem = new QTreeWidgetItem(item, {tr("Refused: %1").arg(save.problem)});
                problem->setFont(Name, strong);
                problem->setToolTip(Name, save.problem);
                problem->setFirstColumnSpanned(true);
            }
            for (const ManyChange& change : save.changes) {
                const auto line = [](const QString& text) { return QString(text).replace('\n', u'\u21B5'); };
                auto* field =
                    new QTreeWidgetItem(item, {change.field, line(change.before), line(change.after)});
                field->setToolTip(Before, change.before);
                field->setToolTip(After, change.after);
            }
            items.append(item);
        }
    tvwRecords->addTopLevelItems(items);
    for (QTreeWidgetItem* item : items) {
        const bool isWrong = !m_saves[item->data(Name, PlaceRole).toLongLong()].problem.isEmpty();
        if (isWrong)
            item->child(0)->setFirstColumnSpanned(true); // it counts only inside the tree
        item->setExpanded(opens || isWrong);
    }
    if (!items.isEmpty())
        tvwRecords->setCurrentItem(items.first());
    m_filling = false;
    Refresh();
}

void frmManyPreview::Refresh() {
    qsizetype wrong = 0;
    qsizetype saved = 0;
    qsizetype leftOut = 0;
    qsizetype same = 0;
    for (const ManySave& save : m_saves) {
        if (save.problem.isEmpty() && save.request.isEmpty())
            ++same;
        else if (!save.isChosen)
            ++leftOut;
        else
            ++(save.problem.isEmpty() ? saved : wrong);
    }
    const auto records = [](qsizetype count) {
        return count == 1 ? tr("1 record") : tr("%L1 records").arg(count);
    };
    QStringList sentences;
    if (wrong > 0)
        sentences
            << (wrong == 1
                    ? tr("1 record cannot be saved: nothing is saved while it is checked.")
                    : tr("%1 cannot be saved: nothing is saved while they are checked.").arg(records(wrong)));
    if (saved > 0)
        sentences << (wrong > 0    ? tr("%1 could be saved.").arg(records(saved))
                      : saved == 1 ? tr("1 record will be saved.")
                                   : tr("%1 will be saved, all of them or none.").arg(records(saved)));
    if (leftOut > 0)
        sentences << tr("%1 left out.").arg(records(leftOut));
    if (same > 0)
        sentences << tr("%1 already as wanted.").arg(records(same));
    lblNote->setText(sentences.join(' '));
    cmdLeaveOut->setVisible(wrong > 0);
    cmdSave->setEnabled(wrong == 0 && saved > 0);
    (cmdSave->isEnabled() ? cmdSave : cmdBack)->setDefault(true);
}

void frmManyPreview::LeaveOutRefused() {
    for (ManySave& save : m_saves)
        save.isChosen = save.isChosen && save.problem.isEmpty();
    ShowSaves();
    tvwRecords->setFocus();
}

void frmManyPreview::accept() {
    if (!cmdSave->isEnabled())
        return;
    QSet<QString> asked;
    for (const ManySave& save : m_saves) {
        if (!IsSent(save) || !save.question || asked.contains(save.question->text))
            continue;
        asked.insert(save.question->text);
        if (!m_application.prompter.ShowBox(this, *save.question))
            return;
    }
    const qint16 result = Send(false);
    if (result == status::Ok) {
        m_saved = std::count_if(m_saves.begin(), m_saves.end(),
                                [this](const ManySave& save) { return IsSent(save); });
        QDialog::accept();
    } else if (result == many::NotDone) {
        NoteRefusals(); // somebody changed something since the preview
        m_application.prompter.ShowBox(this, {.text = TextOfStatus(result).message});
    } else {
        m_application.ReportRequestFailure(result, m_words.caption, m_words.subject);
    }
}

} // namespace sysadmin

#include "moc_ManyRecords.cpp"
