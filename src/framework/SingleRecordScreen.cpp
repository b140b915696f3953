#include "framework/SingleRecordScreen.h"

#include "core/Application.h"
#include "framework/Captions.h"
#include "framework/ConflictCheck.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace sysadmin {

namespace status = wire::status;

SingleRecordScreen::SingleRecordScreen(Application& application, const QString& formName,
                                       const QString& caption, Area area, QWidget* parent)
    : FormScreen(application, formName, caption, area, parent)
    , m_readOnly(!application.profile.MayEdit(area)) {}

void SingleRecordScreen::Build(const RecordSpec& spec, Form& form, const Layout& layout,
                               const QList<PutStep>& puts, const FormView::SlotMaker& makeSlot) {
    m_declaration.records = {{spec, &form, layout, puts}};
    Declare();
    m_spec = m_declaration.records.first().spec;
    m_form = &form;
    m_puts = m_declaration.records.first().puts;
    m_readOnly = !App().profile.MayEdit(m_declaration.area);
    PrepareForm(form);

    // Where there is more room than a form can be read in, the buttons stay near the fields.
    auto* around = new QHBoxLayout(this);
    auto* middle = new QWidget(this);
    middle->setMaximumWidth(ReadableWidth);
    around->addWidget(middle, 1);
    around->addStretch();
    auto* whole = new QVBoxLayout(middle);
    whole->setContentsMargins({});
    m_fraEdit = new QGroupBox(middle);
    m_fraEdit->setObjectName("fraEdit");
    if (!m_spec.frameNoun.isEmpty())
        m_fraEdit->setTitle((m_readOnly ? tr("View ") : tr("Edit ")) + m_spec.frameNoun + m_spec.frameEnd);
    auto* frame = new QVBoxLayout(m_fraEdit);
    m_view = MakeView(form, m_declaration.records.first().layout, m_fraEdit, makeSlot);
    frame->addWidget(m_view->InScrollArea(m_fraEdit));
    whole->addWidget(m_fraEdit, 1);

    m_buttons = new QHBoxLayout;
    m_lblChanged = new QLabel(tr("Changed by others (F5)"), this);
    m_lblChanged->setObjectName("lblChangedByOthers");
    m_lblChanged->hide();
    auto* cmdHistory = MakeButton("cmdHistory", tr("&History..."));
    cmdHistory->setToolTip(tr("Who changed the settings, and when (Ctrl+H)"));
    connect(cmdHistory, &QPushButton::clicked, this, [this] { ShowHistory(); });
    m_buttons->addWidget(cmdHistory);
    m_buttons->addWidget(m_lblChanged);
    m_buttons->addWidget(MissingLabel(), 1);
    m_cmdSave = MakeButton("cmdSave", tr("&Save"));
    m_cmdCancel = MakeButton("cmdCancel", m_readOnly ? tr("&Close") : tr("&Cancel"));
    for (QPushButton* button : {m_cmdSave, m_cmdCancel})
        m_buttons->addWidget(button);
    whole->addLayout(m_buttons);

    connect(m_cmdSave, &QPushButton::clicked, this, &SingleRecordScreen::Save);
    connect(m_cmdCancel, &QPushButton::clicked, this, &SingleRecordScreen::Cancel);
    connect(&form, &Form::Changed, this, &SingleRecordScreen::RefreshButtons);
    auto* reload = new QShortcut(Qt::Key_F5, this);
    reload->setContext(Qt::WidgetWithChildrenShortcut);
    connect(reload, &QShortcut::activated, this, &SingleRecordScreen::Reload);
    connect(&App().notices, &Notices::ChangedByOthers, this, &SingleRecordScreen::OnChangedByOthers);
    BindKey(QKeySequence::Save, m_cmdSave);
    BindEscape(m_cmdCancel, [this] { return m_form->IsChanged(); });
    m_cmdSave->setDefault(true);
    m_cmdSave->setVisible(!m_readOnly);
    FinishBuilding();
}

void SingleRecordScreen::AddButton(QPushButton* button) {
    m_buttons->insertWidget(m_buttons->indexOf(m_cmdSave), button);
    setTabOrder(button, m_cmdSave);
    setTabOrder(m_cmdSave, m_cmdCancel);
    AssignMnemonics(*this); // the button's own letter may have been given to a field
}

void SingleRecordScreen::LoadScreen() {
    LoadRecord();
    if (m_readOnly)
        m_cmdCancel->setFocus();
    else
        m_view->FocusFirst();
}

void SingleRecordScreen::LoadRecord() {
    m_lblChanged->hide();
    m_form->Clear();
    m_loaded = BeforeLoad();
    if (m_loaded)
        AskForRecord();
    // A record that could not be read must not be overwritten by what stands in empty fields.
    m_view->SetReadOnly(m_readOnly || !m_loaded);
    RefreshButtons();
}

void SingleRecordScreen::AskForRecord() {
    LoadChoices(*m_form, m_spec.loadCaption, m_spec.subject);
    PutKey();
    const qint16 result = App().channel.SendRequest(m_spec.getRequest);
    m_loaded = result == status::Ok;
    if (m_loaded) {
        m_exists = m_spec.existsTag.isEmpty() || !App().channel.GetField(m_spec.existsTag).isEmpty();
        if (m_exists)
            ReadRecord();
    } else if (!m_spec.addRequest.isEmpty() && result == status::NotFound) {
        m_loaded = true; // nothing is stored yet: the first save adds it
        m_exists = false;
    } else if (!m_spec.loadFailure.isEmpty()) {
        Tell(m_spec.loadFailure);
    } else {
        App().ReportRequestFailure(result, m_spec.loadCaption, m_spec.subject);
    }
}

void SingleRecordScreen::ReadRecord() {
    m_form->Load(App().channel);
}

bool SingleRecordScreen::CheckBeforeSave() {
    return CheckForm(*m_form, *m_view);
}

void SingleRecordScreen::Save() {
    m_form->LeaveFields();
    if (CheckBeforeSave())
        SendSave();
}

void SingleRecordScreen::SendSave() {
    m_form->Tidy();
    const bool adds = !m_exists && !m_spec.addRequest.isEmpty();
    for (const PutStep& put : m_puts)
        put(App().channel, {.isNew = adds, .originalKey = {}});
    const qint16 result = App().channel.SendRequest(adds ? m_spec.addRequest : m_spec.updateRequest);
    if (const auto conflict = ConflictOf(App().channel, result, m_spec.subject)) {
        SettleConflict(*conflict);
        return;
    }
    if (result != status::Ok) {
        if (!m_spec.saveFailure.isEmpty())
            Tell(m_spec.saveFailure);
        else
            App().ReportRequestFailure(result, m_spec.saveCaption, m_spec.subject);
        return;
    }
    m_exists = true;
    m_form->Accept();
    AfterSave();
    Announce(m_spec.notice);
    RefreshButtons();
    emit App().notices.Done(tr("Saved %1").arg(windowTitle()));
}

void SingleRecordScreen::SettleConflict(const Conflict& conflict) {
    const auto readTheirs = [this] {
        PutKey();
        if (const qint16 result = App().channel.SendRequest(m_spec.getRequest); result != status::Ok) {
            App().ReportRequestFailure(result, m_spec.loadCaption, m_spec.subject);
            return false;
        }
        m_exists = m_spec.existsTag.isEmpty() || !App().channel.GetField(m_spec.existsTag).isEmpty();
        if (m_exists)
            ReadRecord();
        return true;
    };
    switch (SettleSave(App(), this, conflict, *m_form, true, readTheirs)) {
    case ConflictAnswer::SaveMine:
        SendSave();
        break;
    case ConflictAnswer::KeepTheirs:
        LoadRecord();
        break;
    case ConflictAnswer::BackToEditing:
        break;
    }
}

void SingleRecordScreen::OnChangedByOthers(const QString& subject) {
    if (subject != m_spec.notice && subject != SubjectOf(m_spec.getRequest))
        return;
    m_lblChanged->show();
    Reload();
}

void SingleRecordScreen::Reload() {
    if (!m_form->IsChanged())
        LoadRecord();
}

void SingleRecordScreen::Cancel() {
    m_form->Revert();
    AfterCancel();
}

void SingleRecordScreen::GoTo(const QString& control) {
    if (const Field* field = m_form->Find(control))
        m_view->FocusField(*field);
    else
        FormScreen::GoTo(control);
}

bool SingleRecordScreen::ShowRecord(const QString&, const QString&, const QString& control) {
    GoTo(control);
    return true;
}

std::optional<HistoryRecord> SingleRecordScreen::RecordNow() const {
    return HistoryRecord{SubjectOf(m_spec.getRequest), {}, windowTitle(), [this](RequestChannel&) {
                             const_cast<SingleRecordScreen*>(this)->PutKey();
                         }};
}

RecordState SingleRecordScreen::BlankState(const QString&) const {
    m_form->Clear();
    return StateOf(*m_form);
}

std::optional<RecordState> SingleRecordScreen::ReadState(const QString&, const QString&) {
    m_form->Clear();
    PutKey();
    const qint16 result = App().channel.SendRequest(m_spec.getRequest);
    if (result != status::Ok && result != status::NotFound)
        return std::nullopt;
    if (result == status::Ok &&
        (m_spec.existsTag.isEmpty() || !App().channel.GetField(m_spec.existsTag).isEmpty()))
        ReadRecord();
    return StateOf(*m_form);
}

bool SingleRecordScreen::BringBack(const QString&, const QString&, const RecordState& state,
                                   const QList<int>& fields) {
    if (!m_loaded || m_readOnly)
        return false;
    BringBackInto(*m_form, state, fields);
    if (fields.size() == 1)
        m_view->FocusField(*m_form->Fields()[fields.first()]);
    return true;
}

void SingleRecordScreen::RefreshButtons() {
    // A record that the server does not have yet is something to save, as it stands.
    m_cmdSave->setEnabled(m_loaded && m_form->IsComplete() && (m_form->IsChanged() || !m_exists));
    ShowMissing(m_loaded && !m_readOnly ? m_form : nullptr);
    emit UnsavedChanged();
}

bool SingleRecordScreen::MayClose() {
    if (!m_form->IsChanged())
        return true;
    WarnEditInProgress(App(), this);
    return false;
}

} // namespace sysadmin

#include "moc_SingleRecordScreen.cpp"
