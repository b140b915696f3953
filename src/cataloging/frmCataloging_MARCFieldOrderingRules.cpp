#include "cataloging/frmCataloging_MARCFieldOrderingRules.h"

#include "cataloging/frmCataloging_MARCFieldOrderTest.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "wire/FieldOrder.h"
#include "wire/Status.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

#include <utility>

namespace sysadmin {

namespace status = wire::status;

frmCataloging_MARCFieldOrderingRules::frmCataloging_MARCFieldOrderingRules(Application& application,
                                                                           QWidget* parent)
    : MaintenanceScreen(application, "frmCataloging_MARCFieldOrderingRules", tr("MARC Field Ordering Rules"),
                        Area::Cataloging, parent)
    , m_form(KeepForm<FieldOrderForm>(application.orderingRules)) {
    AddTable({.subject = tr("MARC Field Ordering Rule"),
              .word = "MarcFieldOrder",
              .recordTag = "MFOCID",
              .continuing = true,
              .copies = true,
              .addRequest = "UpdMarcFieldOrder",
              .loadCaption = "Load Cataloging MARC Field Ordering",
              .editCaption = "Edit Cataloging MARC Field Ordering Rule",
              .saveCaption = "Update MARC Field Ordering Rule",
              .deleteCaption = "Delete Cataloging MARC Field Ordering",
              .addedTag = "MFOCID",
              .namesRecord = true,
              .nameTag = "MFONAME",
              // What updates a rule takes its groups away; the requests behind it bring them again.
              .takesMany = false},
             m_form,
             Tabs("tabFieldOrder",
                  {Page(tr("&Rule Name"), {m_form.txtName, m_form.txtDescription, m_form.chkPairing880}),
                   Page(tr("&Field Groups and Sort Rules"),
                        {m_form.vsfGroups,
                         Button(
                             "cmdTry", tr("Tr&y It..."), [this] { TryOrder(); }, [] { return true; })})}),
             {OnUpdate(PutOriginalKey("MFOCID")),
              PutValue(m_form.txtName),
              PutValue(m_form.txtDescription),
              PutValue(m_form.chkPairing880),
              {[this](RequestChannel& channel, const SaveContext&) {
                   channel.PutField("MFOOPER", App().OperatorId());
               },
               "MFOOPER"}});
    Finish();
    connect(&m_form, &Form::Changed, this, [this](const Field* field) {
        if (field == &m_form.txtName)
            MarkName(false);
    });
}

// A configuration whose rules could not all be read is not offered: saved, it would lose them.
bool frmCataloging_MARCFieldOrderingRules::FillForm(Table& table, const GridRow& row) {
    m_isIncomplete = false;
    return MaintenanceScreen::FillForm(table, row) && !m_isIncomplete;
}

void frmCataloging_MARCFieldOrderingRules::ReadRecord(Table& table) {
    FieldOrderConfig configuration;
    MaintenanceScreen::ReadRecord(table);
    configuration.Read(App().channel);
    if (const qint16 result = configuration.ReadRules(App().channel, App().orderingRules);
        result != status::Ok) {
        App().ReportRequestFailure(result, table.spec.editCaption, table.spec.subject);
        m_isIncomplete = true;
    }
    if (m_isCopy) {
        for (FieldOrderGroup& group : configuration.groups)
            group.id = 0;
        const QString copy = tr("Copy of ");
        m_form.txtName.SetStored((copy + configuration.name).left(wire::fieldorder::NameLength));
        m_form.txtDescription.SetStored(
            (copy + configuration.description).left(wire::fieldorder::DescriptionLength));
    }
    m_form.vsfGroups.SetStoredGroups(configuration.groups);
}

void frmCataloging_MARCFieldOrderingRules::StartCopy() {
    m_isCopy = true;
    MaintenanceScreen::StartCopy();
    m_isCopy = false;
}

/// Every group goes in a request of its own; the configuration itself took away those that there were.
bool frmCataloging_MARCFieldOrderingRules::SendSteps(Table& table) {
    const QList<FieldOrderGroup> groups = m_form.vsfGroups.Groups();
    for (const FieldOrderGroup& group : groups) {
        PutGroup(App().channel, Saving().originalKey, group);
        const qint16 result = App().channel.SendRequest("AddMarcFieldOrderSortRule");
        if (result == status::Ok)
            continue;
        SetState(State::Editing);
        if (result == status::RecordChanged) // somebody came between: the question is that of the whole
            return SendRecord(table) && SendSteps(table);
        App().ReportRequestFailure(
            result, table.spec.saveCaption, table.spec.subject,
            tr("The field groups from %1 on are not stored; save again to store them.").arg(group.priority) +
                "\r\n\r\n");
        return false;
    }
    return true;
}

/// A name that another configuration has is no failure to report: the field itself says it.
void frmCataloging_MARCFieldOrderingRules::ReportSaveFailure(Table& table, qint16 result) {
    if (result != status::DuplicateName) {
        MaintenanceScreen::ReportSaveFailure(table, result);
        return;
    }
    table.view->FocusField(m_form.txtName);
    MarkName(true);
    emit App().notices.Done(tr("Not saved: this name exists already"));
}

void frmCataloging_MARCFieldOrderingRules::MarkName(bool isTaken) {
    auto* box = findChild<QLineEdit*>(m_form.txtName.Name());
    if (!box || isTaken == bool(m_nameTaken))
        return;
    if (isTaken) {
        const QString words = tr("This name exists already.  Please enter another one.");
        m_nameTaken =
            box->addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning), QLineEdit::TrailingPosition);
        m_nameTaken->setToolTip(words);
        m_nameTaken->setText(words);
        box->setAccessibleDescription(words);
    } else {
        box->removeAction(m_nameTaken);
        delete std::exchange(m_nameTaken, nullptr);
        box->setAccessibleDescription({});
    }
}

void frmCataloging_MARCFieldOrderingRules::TryOrder() {
    frmCataloging_MARCFieldOrderTest dialog(App().orderingRules, m_form.Draft(), App().prompter, this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCataloging_MARCFieldOrderingRules.cpp"
