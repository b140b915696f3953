#include "security/ProfileForm.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "security/RightSentences.h"

namespace sysadmin {

namespace {

PickedNames NamesFor(const QString& what, const QString& one, const QString& available,
                     const QString& selected) {
    return {"vsfAvailable" + what, available,          "vsfSelected" + what,  selected, "cmdSelect" + one,
            "cmdSelectAll" + what, "cmdDiscard" + one, "cmdDiscardAll" + what};
}

} // namespace

ProfileForm::ProfileForm(const ProfileSpec& theSpec)
    : spec(theSpec)
    , operators(*this, {.name = "movOperators", .tag = "SOI", .accessible = tr("Operators")},
                NamesFor("Operators", "Operator", tr("Available Operators"), tr("Selected Operators")),
                {.tags = {"AOI", "AON", "SOI", "SON", "OSt"}}) {
    for (const RightGroup& group : spec.groups)
        for (const ProfileRight& right : group.rights)
            rights.emplace_back(*this,
                                FieldSpec{.name = right.control.isEmpty() ? "chk" + right.tag : right.control,
                                          .tag = right.tag,
                                          .caption = right.caption,
                                          .toolTip = SentenceOfRight(spec.word, right.tag)});
    if (spec.hasLevel)
        cboLevel.emplace(*this, FieldSpec{.name = "cboLevel",
                                          .tag = "RepPrfLevId",
                                          .caption = tr("Reporting level:"),
                                          .initial = "1",
                                          .options = {{"1", tr("Run reports")},
                                                      {"2", tr("Run and schedule reports")},
                                                      {"3", tr("Run, schedule and design reports")}}});
    if (spec.hasAllLocations)
        chkAllLocations.emplace(*this, FieldSpec{.name = "chkAllLoc",
                                                 .tag = "AllLoc",
                                                 .caption = tr("All locations, those added later too")});
    if (spec.hasLocations)
        locations.emplace(
            *this, FieldSpec{.name = "movLocations", .tag = "3", .accessible = tr("Locations")},
            NamesFor("Locations", "Location", tr("Available Locations"), tr("Selected Locations")),
            PickedSpec{.tags = {"1", "2", "3", "4", "LSt"}});
    for (const ProfileLists& pair : spec.lists)
        lists.emplace_back(
            *this,
            FieldSpec{.name = "mov" + pair.name, .tag = pair.selectedId, .accessible = pair.pageCaption},
            NamesFor(pair.name, pair.name, pair.availableCaption, pair.selectedCaption),
            PickedSpec{.tags = {pair.availableId, pair.availableName, pair.selectedId, pair.selectedName,
                                pair.stateTag}});
    if (chkAllLocations && locations)
        When([this] { return chkAllLocations->IsOn(); }).Disable(*locations);
}

FlagField* ProfileForm::FindRight(const QString& tag) {
    for (FlagField& right : rights)
        if (right.Tag() == tag)
            return &right;
    return nullptr;
}

bool ProfileForm::Shows(const FlagField& right) const {
    return right.PlainCaption().contains(filter, Qt::CaseInsensitive) ||
           right.Spec().toolTip.contains(filter, Qt::CaseInsensitive);
}

Layout ProfileForm::Draw() {
    auto right = rights.begin();
    QList<Layout> frames;
    for (const RightGroup& group : spec.groups) {
        QList<Layout> boxes;
        QList<FlagField*> own;
        for (qsizetype i = 0; i < group.rights.size(); ++i, ++right) {
            boxes.append(*right);
            own.append(&*right);
        }
        const auto setAll = [this, own](bool on) {
            return [this, own, on] {
                for (FlagField* each : own)
                    if (Shows(*each)) // what the filter hides is not granted unseen
                        each->SetOn(on);
            };
        };
        const QString number = QString::number(frames.size());
        boxes.append(Beside({Button("cmdAllRights" + number, tr("All"), setAll(true)),
                             Button("cmdNoRights" + number, tr("None"), setAll(false))}));
        frames.append(Frame("fraRights" + QString::number(frames.size()), group.caption, boxes));
    }
    QList<Layout> rows{Slot("txtFindRight"), Flow(spec.groupsPerRow, frames)};
    if (cboLevel)
        rows.prepend(*cboLevel);

    QList<Layout> pages{Page(tr(" &Profile Values"), rows), Page(tr("&Operator"), {operators})};
    if (locations) {
        QList<Layout> page{*locations};
        if (chkAllLocations)
            page.prepend(*chkAllLocations);
        pages.append(Page(tr("&Locations"), page));
    }
    for (size_t i = 0; i < lists.size(); ++i)
        pages.append(Page(spec.lists[qsizetype(i)].pageCaption, {lists[i]}));
    return Below({txtName, Tabs("tabProfile", pages)});
}

} // namespace sysadmin
