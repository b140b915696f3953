#include "requests/frmOPAC_HoldGroup.h"

#include "core/Application.h"
#include "framework/forms/Rules.h"
#include "wire/Status.h"

#include <QSet>

namespace sysadmin {

namespace {

/// States of a selected location.
const QString IsNew = "1";
const QString IsMoved = "2";
const QString IsUnchanged = "4";

QString TypeText(const QString& type) {
    static const QHash<QString, QString> texts{{"D", Form::tr("Domain Name")},
                                               {"I", Form::tr("IP Address")},
                                               {"R", Form::tr("IP Range")},
                                               {"P", Form::tr("Patron Group")}};
    return texts.value(type, type);
}

QList<GridRow> ReadGroups(const RequestChannel& channel, const QString& idTag, const QString& nameTag,
                          const QString& otherTag) {
    QList<GridRow> groups;
    for (const GridRow& row : ReadRows(channel, idTag, {}, {nameTag, "STID"}, otherTag)) {
        const QString type = TypeText(row.cells.value(1));
        groups.append({row.key, {row.cells[0] + (type.isEmpty() ? QString() : " - " + type)}, {}});
    }
    return groups;
}

} // namespace

void UsingGroupsField::Load(RequestChannel& channel) {
    const PickedTags& tags = Behaviour().tags;
    LoadLists(ReadGroups(channel, tags.availableId, tags.availableName, tags.selectedId),
              ReadGroups(channel, tags.selectedId, tags.selectedName, tags.availableId));
}

void SortGroupForm::PutLocations(RequestChannel& channel) const {
    const PickedLists& lists = locations.Lists();
    channel.PutField("Available", {});
    for (const GridRow& row : lists.Available())
        channel.PutField("SGAI", row.key);
    QSet<QString> moved;
    for (const GridRow& row : lists.Altered())
        moved.insert(row.key);
    channel.PutField("Selected", {});
    int place = 0;
    for (const GridRow& row : lists.Selected()) {
        channel.PutField("SGSI", row.key);
        channel.PutField("LS", row.state == PickedLists::LoadedAvailable ? IsNew
                               : moved.contains(row.key)                 ? IsMoved
                                                                         : IsUnchanged);
        channel.PutField("SGSEQ", QString::number(++place));
    }
}

frmOPAC_HoldGroup::frmOPAC_HoldGroup(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmOPAC_HoldGroup", tr("OPAC Holdings Sort Group Definitions"),
                        Area::System, parent) {
    AddTable(
        {.subject = tr("Sort Group"),
         .word = "Sort",
         .plural = "OPAC Hold Group",
         .listAfterChange = true, // the mark of the default group and the places of the others move
         .columns = {{.caption = tr("Default"), .width = 70, .yesNo = true, .tag = "SGDEF"},
                     {.caption = tr("Codes"), .width = 120, .tag = "SGCD"},
                     {.caption = tr("Names"), .tag = "SGNM"}},
         .recordTag = "SGID",
         .sorted = false,
         .asksAvailable = true,
         .editCaption = "Load OPAC Hold Group",
         .deleteWords = {{wire::status::InUse,
                          {tr("The default sort group cannot be deleted.\r\nPlease make another group the "
                              "default first."),
                           tr("Cannot Delete Sort Group")}}},
         .defaultFlag = &m_form.chkDefault,
         .order = {.request = "SeqSort",
                   .rankTag = "SGSEQ",
                   .idTag = "SGID",
                   .helpContext = 50205,
                   .caption = tr("Holdings Sort Groups")}},
        m_form,
        Below({m_form.txtCode, m_form.txtName, m_form.chkDefault,
               Tabs("tabSortGroup",
                    {Page(tr("&Locations"), {m_form.locations}), Page(tr("&Groups"), {m_form.groups})})}),
        {OnUpdate(PutOriginalKey("SGID")),
         PutValue(m_form.txtName),
         PutChanged("NNm", m_form.txtName),
         PutValue(m_form.txtCode),
         PutChanged("NCd", m_form.txtCode),
         PutValue(m_form.chkDefault),
         {[this](RequestChannel& channel, const SaveContext&) { m_form.PutLocations(channel); }, "SGSI"},
         PutValue(m_form.groups)});
    Finish();
}

bool frmOPAC_HoldGroup::GoOnWithoutAvailable(Table& table, qint16 status) {
    App().ReportRequestFailure(status, table.spec.loadCaption, table.spec.subject);
    return false;
}

} // namespace sysadmin

#include "moc_frmOPAC_HoldGroup.cpp"
