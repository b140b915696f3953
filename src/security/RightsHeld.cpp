#include "security/RightsHeld.h"

#include "core/Navigation.h"
#include "core/data/RequestChannel.h"
#include "core/data/Tr.h"
#include "framework/forms/ReadList.h"
#include "security/ProfileForm.h"
#include "security/RightSentences.h"
#include "wire/Status.h"

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

namespace {

constexpr int MostPlaces = 2; // that are named

struct Module {
    ProfileSpec (*spec)();
    const char* name;
};

// Named as the list of an operator's profiles names them.
constexpr Module Modules[] = {
    {MasterProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "System Administration")},
    {AcqSerialsProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "Acquisitions/Serials")},
    {CatalogingProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "Cataloging")},
    {CirculationProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "Circulation")},
    {ReportingProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "Analyzer")},
    {GlobalDataChangeProfileSpec, QT_TRANSLATE_NOOP("RightsHeld", "Global Data Change")},
};

QString KeyOf(const QString& word, const QString& tag, const QString& value = {}) {
    return value.isEmpty() ? word + ' ' + tag : word + ' ' + tag + ' ' + value;
}

QString PlacesOf(const ProfileForm& form) {
    if (form.chkAllLocations && form.chkAllLocations->IsOn())
        return Tr("all locations");
    if (!form.locations)
        return {};
    const QList<GridRow>& rows = form.locations->Lists().Selected();
    if (rows.isEmpty())
        return Tr("no location");
    if (rows.size() > MostPlaces)
        return Tr("%1 locations").arg(rows.size());
    QStringList names;
    for (const GridRow& row : rows)
        names.append(row.cells.value(0));
    return names.join(", ");
}

/// The rights that open a screen: one of each list. `toChange`: those to change what it shows.
QList<QSet<QString>> NeedsOf(const ScreenEntry& entry, bool toChange) {
    QList<wire::Area> areas = AreasNeeded(entry);
    if (entry.groupKey == "WebServices") // offered by a flag of the library; what is in them hangs on a right
        areas.append(wire::Area::System);
    QList<QSet<QString>> needs;
    for (const wire::Area area : areas) {
        const wire::AreaRights rights = wire::RightsOf(area);
        // The last area is the screen's own; what leads to its group need not be a right to change.
        needs.append(toChange && area == areas.last()
                         ? QSet<QString>{KeyOf("MPrf", rights.edit)}
                         : QSet<QString>{KeyOf("MPrf", rights.edit), KeyOf("MPrf", rights.view)});
    }
    if (toChange && entry.key == "Circ_Clusters")
        needs.last() = {KeyOf("MPrf", "CluCreate"), KeyOf("MPrf", "CluEdit"), KeyOf("MPrf", "CluDelete")};
    return needs;
}

} // namespace

qint16 RightsHeld::Read(RequestChannel& channel, const ScreenCatalogue& screens) {
    *this = {};
    const auto readOperator = [this](RequestChannel& reply) {
        const QString first = (reply.GetField("FNm") + ' ' + reply.GetField("MI")).trimmed();
        const QString last = reply.GetField("LNm");
        m_operators.append({reply.GetField("OI"), first.isEmpty() ? last : last + ", " + first});
    };
    qint16 result = ReadList(
        channel,
        {.request = "LstOpr", .putKey = [](RequestChannel& request) { request.PutField("Srt", "L"); }},
        {{"OI", readOperator}});
    AddScreens(screens);
    for (size_t module = 0; module < std::size(Modules) && result == status::Ok; ++module)
        result = ReadProfiles(channel, module);
    if (result != status::Ok)
        *this = {};
    return result;
}

qint16 RightsHeld::ReadProfiles(RequestChannel& channel, size_t module) {
    const ProfileSpec spec = Modules[module].spec();
    ProfileForm form(spec);
    AddRights(form, module);
    QStringList ids;
    const auto readId = [&](RequestChannel& reply) { ids.append(reply.GetField("ID")); };
    qint16 result = ReadList(channel, {.request = "Lst" + spec.word}, {{"ID", readId}});
    for (const QString& id : ids) {
        if (result != status::Ok)
            break;
        channel.PutField("ID", id);
        result = channel.SendRequest("Get" + spec.word);
        if (result == status::Ok) {
            form.Load(channel);
            AddProfile(form, module, id);
        } else if (result == status::NotFound) {
            result = status::Ok; // somebody removed it since the list was read
        }
    }
    return result;
}

void RightsHeld::AddRights(ProfileForm& form, size_t module) {
    const QString moduleName = Tr(Modules[module].name);
    for (const RightGroup& group : form.spec.groups)
        for (const ProfileRight& right : group.rights) {
            const QString key = KeyOf(form.spec.word, right.tag);
            m_rights.append({key,
                             moduleName + " > " + group.caption,
                             right.caption,
                             SentenceOfRight(form.spec.word, right.tag),
                             {{key}}});
        }
    if (!form.cboLevel)
        return;
    for (const PickItem& level : form.cboLevel->Items()) {
        const QString key = KeyOf(form.spec.word, form.cboLevel->Tag(), level.id);
        m_rights.append({key, moduleName, level.text, {}, {{key}}});
    }
}

void RightsHeld::AddProfile(ProfileForm& form, size_t module, const QString& id) {
    const QString moduleName = Tr(Modules[module].name);
    RightsProfile profile{.word = form.spec.word,
                          .id = id,
                          .module = moduleName,
                          .name = form.txtName.Draft(),
                          .rights = {},
                          .operators = {},
                          .places = PlacesOf(form)};
    for (const FlagField& right : form.rights)
        if (right.IsOn())
            profile.rights.insert(KeyOf(form.spec.word, right.Tag()));
    if (form.cboLevel) // a level allows what those below it do
        for (const PickItem& level : form.cboLevel->Items()) {
            profile.rights.insert(KeyOf(form.spec.word, form.cboLevel->Tag(), level.id));
            if (level.id == form.cboLevel->Draft())
                break;
        }
    for (size_t i = 0; i < form.lists.size(); ++i)
        for (const GridRow& row : form.lists[i].Lists().Selected()) {
            const ProfileLists& list = form.spec.lists[qsizetype(i)];
            const QString key = KeyOf(form.spec.word, list.selectedId, row.key);
            profile.rights.insert(key);
            if (!Find(key))
                m_rights.append({key,
                                 moduleName + " > " + QString(list.pageCaption).remove('&').trimmed(),
                                 row.cells.value(0),
                                 {},
                                 {{key}}});
        }
    for (const GridRow& row : form.operators.Lists().Selected())
        profile.operators.insert(row.key);
    m_profiles.append(profile);
}

void RightsHeld::AddScreens(const ScreenCatalogue& screens) {
    for (const ScreenGroup& group : screens.Groups())
        for (const ScreenEntry& entry : screens.Entries()) {
            if (entry.groupKey != group.key)
                continue;
            const QString caption = QString(entry.caption).replace("&&", "&");
            const QString where = Tr("Screen") + " > " + group.caption;
            if (const auto needs = NeedsOf(entry, false); !needs.isEmpty())
                m_rights.append({"view " + entry.key, where, Tr("%1 (view)").arg(caption), {}, needs});
            if (const auto needs = NeedsOf(entry, true); !needs.isEmpty() && group.key != "Tools") {
                m_rights.append({"change " + entry.key, where, Tr("%1 (change)").arg(caption), {}, needs});
                if (entry.key == "Circ_Clusters")
                    m_rights.last().unless = {KeyOf("MPrf", "CluViewOnly")};
            }
        }
}

const KnownRight* RightsHeld::Find(const QString& key) const {
    const auto found = std::find_if(m_rights.begin(), m_rights.end(),
                                    [&](const KnownRight& right) { return right.key == key; });
    return found == m_rights.end() ? nullptr : &*found;
}

QSet<QString> RightsHeld::WhoHas(const KnownRight& right) const {
    const auto membersOfAny = [this](const QSet<QString>& rights) {
        QSet<QString> members;
        for (const RightsProfile& profile : m_profiles)
            if (profile.rights.intersects(rights))
                members.unite(profile.operators);
        return members;
    };
    QSet<QString> holders;
    for (qsizetype i = 0; i < right.needs.size(); ++i) {
        const QSet<QString> members = membersOfAny(right.needs[i]);
        holders = i == 0 ? members : holders.intersect(members);
    }
    return holders.subtract(membersOfAny(right.unless));
}

QList<const RightsProfile*> RightsHeld::Through(const KnownRight& right, const QString& operatorId) const {
    QSet<QString> needed;
    for (const QSet<QString>& need : right.needs)
        needed.unite(need);
    QList<const RightsProfile*> through;
    for (const RightsProfile& profile : m_profiles)
        if (profile.operators.contains(operatorId) && profile.rights.intersects(needed))
            through.append(&profile);
    return through;
}

QList<RightHolder> RightsHeld::HoldersOf(const KnownRight& right) const {
    const QSet<QString> who = WhoHas(right);
    QList<RightHolder> holders;
    for (const PickItem& person : m_operators)
        if (who.contains(person.id))
            holders.append({person, Through(right, person.id)});
    return holders;
}

} // namespace sysadmin
