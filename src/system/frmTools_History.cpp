#include "system/frmTools_History.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "framework/ListGrid.h"
#include "framework/RowCount.h"
#include "framework/Utility.h"
#include "framework/forms/ShownDate.h"
#include "framework/frmHistory.h"
#include "wire/Status.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

/// Which changes are shown.
struct ChangeFilterForm : Form {
    ChoiceField cboOperator{*this,
                            {.name = "cboOperator",
                             .caption = QObject::tr("&Operator:"),
                             .options = {{"", QObject::tr("All operators")}}}};
    ChoiceField cboSetting{*this,
                           {.name = "cboSetting",
                            .caption = QObject::tr("Se&tting:"),
                            .options = {{"", QObject::tr("All settings")}}}};
    DateField txtFrom{*this, {.name = "txtFrom", .caption = QObject::tr("&From:")}};
    DateField txtTo{*this, {.name = "txtTo", .caption = QObject::tr("T&o:")}};
};

namespace {

QString KindInWords(const QString& kind) {
    return kind == u"A"   ? QObject::tr("Created")
           : kind == u"R" ? QObject::tr("Deleted")
                          : QObject::tr("Changed");
}

} // namespace

frmTools_History::frmTools_History(Application& application, QWidget* parent)
    : FormScreen(application, "frmTools_History", tr("History"), Area::Security, parent)
    , m_filter(KeepForm<ChangeFilterForm>()) {
    m_filter.Clear();
    FormView* view = MakeView(
        m_filter,
        Below({Beside({m_filter.cboOperator, m_filter.cboSetting, m_filter.txtFrom, m_filter.txtTo})}), this);
    vsf = new ListGrid("vsf",
                       {{.caption = tr("When"), .width = 150, .dateFormat = WireMoment},
                        {.caption = tr("Who"), .width = 190},
                        {.caption = tr("Setting"), .width = 180},
                        {.caption = tr("Record"), .width = 150},
                        {.caption = tr("What"), .width = 75},
                        {.caption = tr("From Where"), .width = 100},
                        {.caption = tr("Request"), .width = 85}},
                       this);
    vsf->setAccessibleName(tr("Changes"));
    vsf->SetSortable(false); // newest first
    vsf->KeepColumns(application.prefs, objectName());
    cmdGoTo = MakeButton("cmdGoTo", tr("&Go To"));
    cmdHistory = MakeButton("cmdHistory", tr("&History..."));
    cmdMore = MakeButton("cmdMore", tr("O&lder"));
    auto* cmdReload = MakeButton("cmdReload", tr("&Reload"));
    auto* cmdClose = MakeButton("cmdClose", tr("&Close"));

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(view);
    AddListWithButtons(*whole, *vsf, {cmdGoTo, cmdHistory, cmdMore, cmdReload, cmdClose});
    lblNote = new QLabel(this);
    lblNote->setObjectName("lblNote");
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->hide();
    whole->addWidget(lblNote);
    InTabOrder({view->TabOrder().last(), vsf->FilterBox(), vsf});

    connect(vsf, &ListGrid::SelectionMoved, this, &frmTools_History::RefreshButtons);
    connect(vsf, &ListGrid::RowActivated, this, &frmTools_History::GoToRecord);
    connect(cmdGoTo, &QPushButton::clicked, this, &frmTools_History::GoToRecord);
    connect(cmdHistory, &QPushButton::clicked, this, [this] { ShowHistory(); });
    connect(cmdMore, &QPushButton::clicked, this, [this] { ReadPage(false); });
    connect(cmdReload, &QPushButton::clicked, this, &frmTools_History::Reload);
    connect(cmdClose, &QPushButton::clicked, this, &frmTools_History::CloseScreen);
    // A date that is being typed counts when it is one.
    connect(&m_filter, &Form::Edited, this, [this] {
        if (!m_filter.FirstProblem())
            ReadPage(true);
    });
    vsf->SetMenuButtons({cmdGoTo, cmdHistory, cmdReload});
    BindKey(Qt::Key_F5, cmdReload);
    BindEscape(cmdClose, [] { return false; });
    FinishBuilding();
    RefreshButtons();
}

void frmTools_History::LoadScreen() {
    Reload();
    vsf->setFocus();
}

QString frmTools_History::SettingOf(const QString& word, const QString& otherwise) const {
    const SubjectPlace* place = App().mainWindow ? App().mainWindow->PlaceOf(word) : nullptr;
    return place ? place->screen : otherwise;
}

void frmTools_History::Reload() {
    RequestChannel& channel = App().channel;
    if (const qint16 result = channel.SendRequest("AvlChg"); result != status::Ok) {
        App().ReportRequestFailure(result, tr("Load History"), windowTitle());
        return;
    }
    QList<PickItem> operators;
    while (channel.NextRecord("OI"))
        operators.append({channel.GetField("OI"), channel.GetField("OI")});
    QList<PickItem> settings;
    while (channel.NextRecord("Sbj"))
        settings.append(
            {channel.GetField("Sbj"), SettingOf(channel.GetField("Sbj"), channel.GetField("HX"))});
    std::sort(settings.begin(), settings.end(),
              [](const PickItem& one, const PickItem& other) { return one.text < other.text; });
    m_filter.cboOperator.SetItems(QList<PickItem>{{"", tr("All operators")}} + operators);
    m_filter.cboSetting.SetItems(QList<PickItem>{{"", tr("All settings")}} + settings);
    ReadPage(true);
}

void frmTools_History::ReadPage(bool first) {
    RequestChannel& channel = App().channel;
    const auto put = [&](const QString& tag, const QString& value) {
        if (!value.isEmpty())
            channel.PutField(tag, value);
    };
    put("Op", m_filter.cboOperator.Draft());
    put("Sbj", m_filter.cboSetting.Draft());
    put("From", m_filter.txtFrom.Draft());
    put("To", m_filter.txtTo.Draft());
    if (!first)
        put("Cur", m_next);
    if (const qint16 result = channel.SendRequest("LstChg"); result != status::Ok) {
        App().ReportRequestFailure(result, tr("Load History"), windowTitle());
        return;
    }
    m_next = channel.GetField("Cur");
    const QString keptFrom = ShownDate(channel.GetField("Kept").left(10), WireDate);
    lblNote->setText(keptFrom.isEmpty() ? QString()
                                        : tr("Changes from before %1 are not kept.").arg(keptFrom));
    lblNote->setVisible(!keptFrom.isEmpty());
    if (first)
        m_changes.clear();
    QList<GridRow> rows;
    while (channel.NextRecord("HN")) {
        const Change change{channel.GetField("Sbj"), channel.GetField("UK"), channel.GetField("HRow"),
                            channel.GetField("UN"), channel.GetFlag("HG")};
        const QString setting = SettingOf(change.word, channel.GetField("HX"));
        const QString key = channel.GetField("HN") + ' ' + channel.GetField("HX") + ' ' + change.row;
        m_changes.insert(key, change);
        rows.append({key,
                     {channel.GetField("HT"), WhoInWords(channel.GetField("HB"), channel.GetField("HO")),
                      setting, change.name, KindInWords(channel.GetField("HK")),
                      PeerInWords(channel.GetField("HP")), channel.GetField("HR")},
                     {}});
    }
    if (first)
        vsf->SetRows(rows);
    else
        vsf->PutRows(rows);
    RefreshButtons();
}

const frmTools_History::Change* frmTools_History::Selected() const {
    const auto change = m_changes.constFind(vsf->SelectedKey());
    return change == m_changes.constEnd() ? nullptr : &*change;
}

std::optional<HistoryRecord> frmTools_History::RecordNow() const {
    const Change* change = Selected();
    if (!change || !App().mainWindow || !App().mainWindow->PlaceOf(change->word))
        return std::nullopt;
    return HistoryRecord{change->word, change->key,
                         change->name.isEmpty() ? SettingOf(change->word, {}) : change->name,
                         [row = change->row](RequestChannel& channel) { channel.PutField("HRow", row); }};
}

void frmTools_History::GoToRecord() {
    const Change* change = Selected();
    if (!cmdGoTo->isEnabled() || !change)
        return;
    const Change target = *change;
    App().mainWindow->GoToRecord(target.word, target.key, target.name);
}

void frmTools_History::RefreshButtons() {
    const Change* change = Selected();
    const bool isSeen = RecordNow().has_value();
    cmdGoTo->setEnabled(isSeen && !change->isGone);
    cmdHistory->setEnabled(isSeen);
    cmdMore->setVisible(!m_next.isEmpty());
}

} // namespace sysadmin

#include "moc_frmTools_History.cpp"
