#include "security/ProfileScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "security/CompareDialog.h"
#include "security/LastSecurityHolder.h"
#include "wire/Status.h"

#include <QLineEdit>
#include <QPushButton>

namespace sysadmin {

namespace status = wire::status;

ProfileScreen::ProfileScreen(Application& application, const ProfileSpec& spec, QWidget* parent)
    : MaintenanceScreen(application, spec.formName, spec.caption, Area::Security, parent)
    , m_spec(spec)
    , m_form(KeepForm<ProfileForm>(m_spec)) {
    m_cmdCompare = MakeButton("cmdCompare", tr("Co&mpare..."));
    connect(m_cmdCompare, &QPushButton::clicked, this, [this] { Compare(); });
    AddTable({.subject = m_spec.subject,
              .word = m_spec.word,
              .plural = m_spec.caption,
              .columns = {{.caption = tr("Names"), .tag = "Nm"}},
              .boxOnLoadFailure = true,
              .copies = true,
              .editCaption = m_spec.editCaption,
              .matchTag = "Nm",
              .deleteWords = {{status::LastSecurityRight, {LastSecurityHolderText(), ApplicationTitle()}}},
              .saveWords = {{status::LastSecurityRight, {LastSecurityHolderText(), ApplicationTitle()}}},
              .steps = SaveSteps()},
             m_form, m_form.Draw(), PutSteps(), [this](const QString&) { return MakeFilter(); });
    AddListButton(m_cmdCompare);
    Finish();
}

QWidget* ProfileScreen::MakeFilter() {
    m_txtFindRight = new QLineEdit(this);
    m_txtFindRight->setObjectName("txtFindRight");
    m_txtFindRight->setPlaceholderText(tr("Find a right"));
    m_txtFindRight->setAccessibleName(tr("Find a right"));
    m_txtFindRight->setToolTip(tr("Shows only the rights whose caption or explanation holds this text"));
    m_txtFindRight->setClearButtonEnabled(true);
    m_txtFindRight->setMinimumWidth(m_txtFindRight->fontMetrics().averageCharWidth() * 36);
    connect(m_txtFindRight, &QLineEdit::textChanged, this, &ProfileScreen::FilterRights);
    return m_txtFindRight;
}

void ProfileScreen::FilterRights(const QString& text) {
    m_form.filter = text.trimmed();
    FormView& view = *Current().view;
    auto right = m_form.rights.begin();
    for (qsizetype group = 0; group < m_spec.groups.size(); ++group) {
        bool any = false;
        for (qsizetype i = 0; i < m_spec.groups[group].rights.size(); ++i, ++right) {
            const bool shown = m_form.Shows(*right);
            view.EditorOf(*right)->Widget()->setVisible(shown);
            any = any || shown;
        }
        view.findChild<QWidget*>("fraRights" + QString::number(group))->setVisible(any);
    }
}

void ProfileScreen::GoTo(const QString& control) {
    m_txtFindRight->clear();
    MaintenanceScreen::GoTo(control);
}

QList<PutStep> ProfileScreen::PutSteps() {
    QList<PutStep> steps{PutValue(m_form.operators)};
    if (m_form.locations)
        steps.append(PutValue(*m_form.locations));
    if (m_form.chkAllLocations)
        steps.append(PutValue(*m_form.chkAllLocations));
    const qsizetype inProfile =
        qsizetype(m_form.lists.size()) - (m_spec.listsUpdateRequest.isEmpty() ? 0 : 1);
    for (qsizetype i = 0; i < inProfile; ++i)
        steps.append(PutValue(m_form.lists[size_t(i)]));
    QStringList order = m_spec.putOrder;
    if (order.isEmpty())
        for (const FlagField& right : m_form.rights)
            order.append(right.Tag());
    for (const QString& tag : order)
        steps.append(PutRight(tag));
    if (m_form.cboLevel)
        steps.append(PutValue(*m_form.cboLevel));
    steps += {PutValue(m_form.txtName), OnUpdate(PutOriginalKey("ID")),
              OnUpdate(PutChanged("NNm", m_form.txtName))};
    return steps;
}

QList<SaveStep> ProfileScreen::SaveSteps() {
    if (m_spec.listsUpdateRequest.isEmpty())
        return {};
    PickedField& list = m_form.lists.back();
    return {{.request = m_spec.listsUpdateRequest,
             .caption = "Save " + m_spec.caption,
             .keyTag = "ID",
             .fields = {&list},
             .puts = {PutValue(list)}}};
}

PutStep ProfileScreen::PutRight(const QString& tag) {
    if (m_spec.alwaysNo.contains(tag))
        return PutConstant(tag, "N");
    return PutValue(*m_form.FindRight(tag));
}

bool ProfileScreen::ReadAll(const QString& request, ListForm form, const QString& idTag,
                            const QString& nameTag, QList<GridRow>& rows) {
    const auto read = [&](RequestChannel& channel) {
        rows.append({channel.GetField(idTag), {channel.GetField(nameTag)}, {}});
    };
    const auto report = [this](qint16) { ReportUnableToLoad(App(), this, windowTitle()); };
    return ReadList(App().channel, {.request = request, .form = form, .report = report}, {{idTag, read}}) ==
               status::Ok ||
           !rows.isEmpty();
}

bool ProfileScreen::PrepareNew(Table&) {
    QList<GridRow> rows;
    if (!ReadAll(m_spec.availableRequest, ListForm::Continuing, "AOI", "AON", rows))
        return false;
    m_form.operators.LoadLists(rows, {});
    if (m_form.locations) {
        QList<GridRow> locations;
        if (!ReadAll("LstLoc", ListForm::Strict, "ID", "Nm", locations))
            return false;
        m_form.locations->LoadLists(locations, {});
    }
    if (m_spec.listsRequest.isEmpty())
        return true;
    if (App().channel.SendRequest(m_spec.listsRequest) != status::Ok) {
        ReportUnableToLoad(App(), this, windowTitle());
        return false;
    }
    for (size_t i = 0; i < m_form.lists.size(); ++i) {
        const ProfileLists& pair = m_spec.lists[qsizetype(i)];
        m_form.lists[i].LoadLists(ReadPairs(App().channel, pair.availableId, pair.availableName), {});
    }
    return true;
}

void ProfileScreen::RefreshOwnControls() {
    const bool inList = GetState() == State::List && Current().grid;
    const bool hasRow = inList && Current().grid->SelectedRow();
    if (inList)
        for (QPushButton* button : Current().view->findChildren<QPushButton*>())
            if (button->objectName().startsWith("cmdAllRights") ||
                button->objectName().startsWith("cmdNoRights"))
                button->setVisible(!IsReadOnly());
    m_cmdCompare->setEnabled(hasRow && Current().grid->Model().Rows().size() > 1);
}

void ProfileScreen::Compare() {
    const auto describe = [this](const QString& key) -> std::optional<ComparedRecord> {
        ProfileForm form(m_spec);
        App().channel.PutField("ID", key);
        if (const qint16 result = App().channel.SendRequest("Get" + m_spec.word); result != status::Ok) {
            App().ReportRequestFailure(result, m_spec.editCaption, m_spec.subject);
            return {};
        }
        form.Load(App().channel);
        ComparedRecord record;
        for (const FlagField& right : form.rights)
            record.append(
                {tr("Rights"), right.Tag(), right.PlainCaption(), right.IsOn() ? tr("Yes") : tr("No")});
        if (form.cboLevel)
            record.append({tr("Rights"), form.cboLevel->Tag(), form.cboLevel->PlainCaption(),
                           form.cboLevel->DisplayText()});
        if (form.chkAllLocations)
            record.append({tr("Locations"), form.chkAllLocations->Tag(), form.chkAllLocations->PlainCaption(),
                           form.chkAllLocations->IsOn() ? tr("Yes") : tr("No")});
        const auto addList = [&](const QString& section, const PickedField& field) {
            for (const GridRow& row : field.Lists().Selected())
                record.append({section, row.key, row.cells.value(0), tr("Yes"), true});
        };
        addList(tr("Operators"), form.operators);
        if (form.locations)
            addList(tr("Locations"), *form.locations);
        for (const PickedField& field : form.lists)
            addList(field.PlainCaption(), field);
        return record;
    };
    CompareSelected(App(), this, m_spec.caption, *Current().grid, describe);
}

} // namespace sysadmin

#include "moc_ProfileScreen.cpp"
