#include "requests/frmOPAC_RequestForms.h"

#include "core/Application.h"
#include "core/data/YesNo.h"
#include "framework/Utility.h"
#include "requests/RequestFormPreview.h"
#include "wire/Status.h"

#include <QPushButton>
#include <QTabWidget>

namespace sysadmin {

namespace {

/// Types that the screen offers of its own accord.
QList<PickItem> OwnTypes() {
    return {{"I", Form::tr("Item Level Form")},
            {"N", Form::tr("Index New Zealand Form")},
            {"B", Form::tr("NINZ BibU Form")}};
}

/// The types that take part in the exchange with an outside system, which not every library has.
const QString VdxTypes = "XY";
const QString ClioTypes = "CEF";

/// What is available and what is selected, each behind its mark.
PutStep PutBoth(const PickedField& lists, const std::function<bool()>& holds = {}) {
    return {[&lists, holds](RequestChannel& channel, const SaveContext&) {
                const PickedTags& tags = lists.Behaviour().tags;
                const bool keeps = !holds || holds();
                channel.PutField("A", {});
                for (const GridRow& row : lists.Lists().Available())
                    channel.PutField(tags.availableId, row.key);
                for (const GridRow& row : keeps ? QList<GridRow>() : lists.Lists().Selected())
                    channel.PutField(tags.availableId, row.key);
                channel.PutField("S", {});
                for (const GridRow& row : keeps ? lists.Lists().Selected() : QList<GridRow>())
                    channel.PutField(tags.selectedId, row.key);
            },
            lists.Behaviour().tags.selectedId};
}

QList<PutStep> Puts(RequestFormForm& form) {
    const auto borrows = [&form] { return requestforms::IsUniversalBorrowing(form.cboFormType.Draft()); };
    return {
        OnUpdate(PutOriginalKey("I")),
        OnUpdate({[&form](RequestChannel& channel, const SaveContext&) {
                      channel.PutField("NCd",
                                       form.txtFormCode.IsChanged() ? form.txtFormCode.Draft() : QString());
                  },
                  "NCd"}),
        PutValue(form.txtFormCode),
        PutValue(form.txtFormName),
        PutValue(form.cboFormType),
        PutValue(form.txtEmail),
        PutValue(form.txtInstructions),
        PutValue(form.chkSuppress),
        PutValue(form.optOutput),
        PutBoth(form.patronGroups),
        PutBoth(form.databases),
        PutBoth(form.ubDatabases, borrows),
        {[&form](RequestChannel& channel, const SaveContext&) { form.FormFields().Put(channel); }, "FS"},
        {[&form](RequestChannel& channel, const SaveContext&) {
             if (!form.HasVouchers())
                 return;
             for (const Field* field : form.vouchers.All())
                 field->Put(channel);
         },
         "VP"},
    };
}

} // namespace

frmOPAC_RequestForms::frmOPAC_RequestForms(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmOPAC_RequestForms", tr("OPAC Request Forms"), Area::System, parent) {
    AddTable(
        {.subject = tr("Request Form"),
         .word = "OFrm",
         .plural = "OPAC Request Form",
         .listAfterChange = true,
         .columns = {{.caption = tr("Codes"), .width = 92, .tag = "C"},
                     {.caption = tr("Names"), .tag = "N"},
                     {.caption = tr("Types"), .width = 110, .tag = "FT"}},
         .recordTag = "I",
         .asksAvailable = true,
         .editCaption = "Edit OPAC Request Forms",
         .saveCaption = "Save OPAC Hold Group",
         .nameTag = "N"},
        m_form,
        Below({m_form.txtFormCode, m_form.cboFormType, m_form.txtFormName,
               Tabs("tabRequestForm",
                    {Page("form", tr("F&orm"),
                          {m_form.txtEmail, m_form.optOutput, m_form.chkSuppress, m_form.txtInstructions}),
                     Page("simple", tr("Fie&lds"), {m_form.vsfFieldLabel1}),
                     Page("mapped", tr("Fi&elds"), {m_form.vsfFieldLabel}),
                     Page(tr("Patro&ns"), {m_form.patronGroups}), Page(tr("&Databases"), {m_form.databases}),
                     Page("ub", tr("&UB Databases"), {m_form.ubDatabases}),
                     Page("voucher", VoucherFields::PageCaption(), m_form.vouchers.Draw()),
                     Page(tr("Previe&w"), {Slot("picPreview")})})}),
        Puts(m_form), [this](const QString&) -> QWidget* { return new RequestFormPreview(m_form, this); });
    Finish();
    connect(&m_form, &Form::PagesChanged, this, &frmOPAC_RequestForms::ShowPages);
    auto* pages = findChild<QTabWidget*>("tabRequestForm");
    pages->setUsesScrollButtons(false); // where room is short captions are, and every page stays in sight
    pages->setElideMode(Qt::ElideRight);
    for (int i = 0; i < pages->count(); ++i)
        pages->setTabToolTip(i, QString(pages->tabText(i)).remove('&'));
    ShowPages();
}

void frmOPAC_RequestForms::BeforeLoad() {
    m_types.clear();
    bool hasVdx = false;
    bool hasClio = false;
    RequestChannel& channel = App().channel;
    const auto report = [this](qint16 status) {
        App().ReportRequestFailure(status, "GetFormTypes in OPAC Request Form Load", Current().spec.subject);
    };
    const auto read = [this](RequestChannel& reply) {
        m_types.append({reply.GetField("FT"), reply.GetField("FTD")});
    };
    ReadList(channel,
             {.request = "LstFormTypes",
              .report = report,
              .readHead =
                  [&](RequestChannel& reply) {
                      hasVdx = reply.GetFlag("VDX");
                      hasClio = reply.GetFlag("CLIO");
                  }},
             {{"FT", read}});
    for (const PickItem& own : OwnTypes())
        if (std::none_of(m_types.begin(), m_types.end(),
                         [&](const PickItem& type) { return type.id == own.id; }))
            m_types.append(own);
    m_offeredTypes = m_types;
    m_offeredTypes.removeIf([=](const PickItem& type) {
        return (!hasVdx && VdxTypes.contains(type.id)) || (!hasClio && ClioTypes.contains(type.id));
    });
    m_form.cboFormType.SetItems(m_types);
}

GridRow frmOPAC_RequestForms::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    for (const PickItem& type : m_types)
        if (type.id == row.cells[2]) {
            row.cells[2] = type.text;
            break;
        }
    return row;
}

bool frmOPAC_RequestForms::FillForm(Table& table, const GridRow& row) {
    m_form.isNew = false;
    m_form.cboFormType.SetItems(m_types);
    return MaintenanceScreen::FillForm(table, row);
}

bool frmOPAC_RequestForms::PrepareNew(Table& table) {
    m_form.isNew = true;
    m_form.cboFormType.SetItems(m_offeredTypes);
    return MaintenanceScreen::PrepareNew(table);
}

// The lists stay empty then; they can be filled later.
bool frmOPAC_RequestForms::GoOnWithoutAvailable(Table&, qint16) {
    ReportUnableToLoad(App(), this, tr("Available Patron and Available Databases"));
    return true;
}

/// There are many pages, and no form has all of them.
void frmOPAC_RequestForms::ShowPages() {
    auto* pages = findChild<QTabWidget*>("tabRequestForm");
    for (int i = 0; i < pages->count(); ++i)
        pages->setTabVisible(i, pages->isTabEnabled(i));
}

} // namespace sysadmin

#include "moc_frmOPAC_RequestForms.cpp"
