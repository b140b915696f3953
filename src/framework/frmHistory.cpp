#include "framework/frmHistory.h"
#include "framework/forms/ShownDate.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "framework/Captions.h"
#include "framework/CsvExport.h"
#include "framework/FormScreen.h"
#include "framework/ListGrid.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

namespace status = wire::status;

/// Which entries are shown.
struct HistoryFilterForm : Form {
    ChoiceField cboField{*this,
                         {.name = "cboField",
                          .caption = QDialog::tr("F&ield:"),
                          .options = {{"", QDialog::tr("All fields")}}}};
    DateField txtFrom{*this, {.name = "txtFrom", .caption = QDialog::tr("&From:")}};
    DateField txtTo{*this, {.name = "txtTo", .caption = QDialog::tr("&To:")}};
};

namespace {

constexpr int HistoryTopic = 50108;
constexpr qsizetype CaptionsInSummary = 4;

} // namespace

QString WhoInWords(const QString& name, const QString& operatorId) {
    return name.isEmpty() || name == operatorId ? operatorId : name + " (" + operatorId + ')';
}

QString PeerInWords(const QString& peer) {
    return peer == u"local" ? QDialog::tr("The server's computer") : peer;
}

frmHistory::frmHistory(Application& application, RecordHistory& history, QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_history(history)
    , m_filter(std::make_unique<HistoryFilterForm>()) {
    setObjectName("frmHistory");
    setProperty(HelpContextProperty, HistoryTopic);
    setWindowTitle(tr("History of \"%1\"").arg(history.Record().name));
    m_filter->Clear();
    m_view = std::make_unique<FormView>(
        *m_filter, Below({Beside({m_filter->cboField, m_filter->txtFrom, m_filter->txtTo})}), this);
    vsfEntries = new ListGrid("vsfEntries",
                              {{.caption = tr("When"), .width = 150, .dateFormat = WireMoment},
                               {.caption = tr("Who"), .width = 230},
                               {.caption = tr("From Where"), .width = 150},
                               {.caption = tr("What"), .width = 280},
                               {.caption = tr("Request"), .width = 90}},
                              this);
    vsfEntries->setAccessibleName(tr("Changes"));
    vsfEntries->SetSortable(false); // newest first
    vsfFields = new ListGrid("vsfFields",
                             {{.caption = tr("Field"), .width = 200},
                              {.caption = tr("Before"), .width = 340},
                              {.caption = tr("After"), .width = 340}},
                             this);
    vsfFields->setAccessibleName(tr("Fields"));
    vsfFields->SetSortable(false);
    for (ListGrid* grid : {vsfEntries, vsfFields})
        grid->SetPrompter(application.prompter);
    lblNote = new QLabel(this);
    lblNote->setObjectName("lblNote");
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->setWordWrap(true);
    auto* parts = new QSplitter(Qt::Vertical, this);
    parts->setChildrenCollapsible(false);
    parts->addWidget(vsfEntries);
    parts->addWidget(vsfFields);
    parts->setStretchFactor(0, 3);
    parts->setStretchFactor(1, 2);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(m_view.get());
    whole->addWidget(parts, 1);
    whole->addWidget(lblNote);
    BuildButtons();
    AssignMnemonics(*this);
    resize(960, 600);

    m_timer = new QTimer(this);
    m_timer->setInterval(0);
    connect(m_timer, &QTimer::timeout, this, &frmHistory::ReadNext);
    connect(vsfEntries, &ListGrid::SelectionMoved, this, &frmHistory::ShowFields);
    connect(vsfFields, &ListGrid::SelectionMoved, this, [this] {
        cmdBringBackValue->setEnabled(cmdBringBackRecord->isEnabled() && vsfFields->SelectedRow());
    });
    connect(m_filter.get(), &Form::Edited, this, &frmHistory::ShowEntries);
    ShowEntries();
    vsfEntries->setFocus();
    m_timer->start();
}

frmHistory::~frmHistory() = default;

void frmHistory::BuildButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName("cmdClose");
    const auto add = [&](const QString& name, const QString& caption, const QString& toolTip) {
        QPushButton* button = buttons->addButton(caption, QDialogButtonBox::ActionRole);
        button->setObjectName(name);
        button->setToolTip(toolTip);
        button->setAutoDefault(false);
        return button;
    };
    cmdBringBackValue =
        add("cmdBringBackValue", tr("Bring Back &Value"),
            tr("Puts the selected field's value before the change into the form, to be saved there"));
    cmdBringBackRecord =
        add("cmdBringBackRecord", tr("&Bring Back Record"),
            tr("Puts the whole record as it was before the change into the form, to be saved there"));
    cmdMore = add("cmdMore", tr("&Older"), tr("Reads further changes"));
    QPushButton* cmdExport =
        add("cmdExport", tr("&Export..."), tr("Writes the changes with all their fields into a CSV file"));
    connect(cmdBringBackValue, &QPushButton::clicked, this, [this] { BringBack(false); });
    connect(cmdBringBackRecord, &QPushButton::clicked, this, [this] { BringBack(true); });
    connect(cmdMore, &QPushButton::clicked, this, &frmHistory::ReadMore);
    connect(cmdExport, &QPushButton::clicked, this, &frmHistory::Export);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
}

void frmHistory::ReadMore() {
    const qint16 result = m_history.ReadMore();
    if (result != status::Ok)
        m_application.ReportRequestFailure(result, tr("Load History"), m_history.Record().name);
    // What the oldest entry began with is known as another one's end now.
    ShowEntries();
    m_timer->start();
}

const QList<FieldChange>* frmHistory::ChangesOf(qsizetype entry) {
    if (!m_changes.contains(entry))
        if (const auto changes = m_history.ChangesOf(entry)) {
            m_changes.insert(entry, *changes);
            if (IsShown(entry))
                vsfEntries->PutRows({RowOf(entry)}); // with what it comes to
        }
    const auto known = m_changes.constFind(entry);
    return known == m_changes.constEnd() ? nullptr : &*known;
}

void frmHistory::ReadNext() {
    if (m_application.channel.IsBusy())
        return;
    if (m_next >= m_history.Entries().size()) {
        m_timer->stop();
        OfferFields();
        ShowEntries();
        return;
    }
    if (!ChangesOf(m_next++))
        m_timer->stop(); // it was reported, and would be for each of them
}

QString frmHistory::Summary(qsizetype entry) const {
    switch (m_history.Entries()[entry].kind.unicode()) {
    case u'A':
        return tr("Created");
    case u'R':
        return tr("Deleted");
    default:
        break;
    }
    const auto changes = m_changes.constFind(entry);
    if (changes == m_changes.constEnd())
        return QString(QChar(0x2026));
    if (changes->isEmpty())
        return tr("Nothing that the screen shows");
    QStringList captions;
    for (const FieldChange& change : *changes)
        if (!captions.contains(change.caption))
            captions << change.caption;
    if (captions.size() > CaptionsInSummary)
        return tr("%1 and %2 more")
            .arg(captions.first(CaptionsInSummary).join(", "))
            .arg(captions.size() - CaptionsInSummary);
    return captions.join(", ");
}

bool frmHistory::IsShown(qsizetype entry) const {
    const QDate day = QDate::fromString(m_history.Entries()[entry].at.left(10), Qt::ISODate);
    const QDate from = m_filter->txtFrom.Date();
    const QDate to = m_filter->txtTo.Date();
    if ((from.isValid() && day < from) || (to.isValid() && day > to))
        return false;
    const QString field = m_filter->cboField.Draft();
    if (field.isEmpty())
        return true;
    for (const FieldChange& change : m_changes.value(entry))
        if (change.caption == field)
            return true;
    return false;
}

GridRow frmHistory::RowOf(qsizetype entry) const {
    const HistoryEntry& each = m_history.Entries()[entry];
    return {
        QString::number(entry),
        {each.at, WhoInWords(each.by, each.operatorId), PeerInWords(each.peer), Summary(entry), each.request},
        {}};
}

void frmHistory::ShowEntries() {
    QList<GridRow> rows;
    for (qsizetype entry = 0; entry < m_history.Entries().size(); ++entry)
        if (IsShown(entry))
            rows.append(RowOf(entry));
    const QString selected = vsfEntries->SelectedKey();
    vsfEntries->SetRows(rows);
    vsfEntries->SelectKey(selected);
    cmdMore->setVisible(m_history.HasMore());
    ShowFields();
}

void frmHistory::OfferFields() {
    QStringList captions;
    for (const QList<FieldChange>& changes : std::as_const(m_changes))
        for (const FieldChange& change : changes)
            if (!change.caption.isEmpty() && !captions.contains(change.caption))
                captions << change.caption;
    captions.sort(Qt::CaseInsensitive);
    QList<PickItem> items{{"", tr("All fields")}};
    for (const QString& caption : captions)
        items.append({caption, caption});
    m_filter->cboField.SetItems(items);
}

qsizetype frmHistory::Selected() const {
    const QString key = vsfEntries->SelectedKey();
    return key.isEmpty() ? -1 : key.toLongLong();
}

void frmHistory::ShowFields() {
    const qsizetype entry = Selected();
    QList<GridRow> rows;
    const QList<FieldChange>* changes =
        entry < 0 || m_application.channel.IsBusy() ? nullptr : ChangesOf(entry);
    if (changes)
        for (const FieldChange& change : *changes)
            rows.append({QString::number(change.field), {change.caption, change.before, change.after}, {}});
    vsfFields->SetRows(rows);
    const bool may = entry >= 0 && m_history.MayBringBack(entry);
    cmdBringBackRecord->setEnabled(may);
    cmdBringBackValue->setEnabled(may && !rows.isEmpty());
    QString note;
    const QString keptFrom = ShownDate(m_history.KeptFrom().left(10), WireDate);
    if (m_history.Entries().isEmpty() && !keptFrom.isEmpty())
        note = tr("Nobody has changed it since %1; what was before is not kept.").arg(keptFrom);
    else if (m_history.Entries().isEmpty())
        note = tr("Nobody has changed it since the library keeps a history.");
    else if (entry < 0)
        note = tr("No change fits the filter.");
    else if (changes && changes->isEmpty())
        note = tr("What was changed is not shown on the screen: a password, for example.");
    else if (!keptFrom.isEmpty())
        note = tr("Changes from before %1 are not kept.").arg(keptFrom);
    lblNote->setText(note);
    lblNote->setVisible(!note.isEmpty());
}

void frmHistory::Export() {
    const QString fileName = m_application.prompter.AskSaveFile(
        this, tr("Export as CSV"), FileNameFor(*this, ".csv"), tr("CSV files (*.csv)"));
    if (fileName.isEmpty())
        return;
    QList<QStringList> records{{tr("When"), tr("Who"), tr("Operator"), tr("From Where"), tr("Request"),
                                tr("What"), tr("Field"), tr("Before"), tr("After")}};
    for (qsizetype entry = 0; entry < m_history.Entries().size(); ++entry) {
        if (!IsShown(entry))
            continue;
        const HistoryEntry& each = m_history.Entries()[entry];
        const QList<FieldChange>* changes = ChangesOf(entry);
        const QStringList begin{each.at, each.by, each.operatorId, each.peer, each.request, Summary(entry)};
        if (!changes || changes->isEmpty())
            records.append(begin + QStringList{"", "", ""});
        else
            for (const FieldChange& change : *changes)
                records.append(begin + QStringList{change.caption, change.before, change.after});
    }
    if (const QString problem = WriteCsv(fileName, records); !problem.isEmpty())
        m_application.prompter.ShowBox(this,
                                       {.text = tr("The file could not be written:") + "\r\n" + problem});
}

void frmHistory::BringBack(bool whole) {
    const qsizetype entry = Selected();
    const auto state = entry < 0 ? std::nullopt : m_history.Before(entry);
    const GridRow* field = vsfFields->SelectedRow();
    if (!state || (!whole && !field))
        return;
    m_state = *state;
    m_fields = whole ? QList<int>() : QList<int>{field->key.toInt()};
    accept();
}

bool ShowRecordHistory(Application& application, QWidget* parent, const HistoryRecord& record) {
    RecordHistory history(application, record);
    if (const qint16 result = history.ReadMore(); result != status::Ok) {
        application.ReportRequestFailure(result, QDialog::tr("Load History"), record.name);
        return false;
    }
    frmHistory dialog(application, history, parent);
    if (!application.prompter.RunDialog(dialog) || !application.mainWindow)
        return false;
    MainWindow& window = *application.mainWindow;
    const QString place = window.PlaceOf(record.word)->key;
    window.OpenScreen(place);
    auto* screen = dynamic_cast<FormScreen*>(window.FindScreen(place));
    const bool isGone = history.Entries().first().kind == u'R';
    if (!screen ||
        !screen->BringBack(record.word, isGone ? QString() : record.key, dialog.State(), dialog.Fields()))
        application.prompter.ShowBox(
            &window, {.text = QDialog::tr("It could not be brought back now: something else is being edited "
                                          "there, or the record is not in the list as it is shown.")});
    return true;
}

} // namespace sysadmin

#include "moc_frmHistory.cpp"
