#include "circulation/RecordPlace.h"

#include "circulation/MatrixDialog.h"
#include "circulation/PolicyReader.h"
#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "framework/ListGrid.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTabWidget>

namespace sysadmin {

namespace {

bool Press(const Screen& screen, const QString& name) {
    auto* button = screen.findChild<QAbstractButton*>(name);
    if (!button || !button->isEnabled())
        return false;
    button->click();
    return true;
}

/// Brings the pages on which the widget stands to the front.
void ShowPages(QWidget* widget) {
    for (QWidget* around = widget; around; around = around->parentWidget())
        if (auto* tabs = qobject_cast<QTabWidget*>(around))
            for (int page = 0; page < tabs->count(); ++page)
                if (tabs->widget(page)->isAncestorOf(widget))
                    tabs->setCurrentIndex(page);
}

} // namespace

bool GoToCluster(Application& application, const QString& cluster) {
    const clsCluster* current = application.clusters.Current();
    if (cluster.isEmpty() || (current && current->sClusterID == cluster))
        return true;
    for (const ScreenEntry& entry : application.catalogue.Entries()) {
        Screen* screen = entry.screen.needsCluster ? application.mainWindow->FindScreen(entry.key) : nullptr;
        if (screen && !screen->MayClose())
            return false;
    }
    application.clusters.SetCurrent(cluster);
    emit application.notices.CurrentClusterChanged();
    return true;
}

bool OpenPlace(Application& application, const RecordPlace& place) {
    MainWindow* window = application.mainWindow;
    if (!window || !GoToCluster(application, place.cluster))
        return false;
    window->OpenScreen(place.screen);
    Screen* screen = window->FindScreen(place.screen);
    auto* list = screen ? screen->findChild<ListGrid*>("vsf") : nullptr;
    if (!list || !screen->MayClose())
        return false;
    Press(*screen, "cmdCancel"); // of a view that is open
    if (list->FilterBox())
        list->FilterBox()->clear();
    if (!list->SelectKey(place.record) || !Press(*screen, "cmdEdit"))
        return false;
    auto* grid = place.grid.isEmpty() ? nullptr : screen->findChild<ListGrid*>(place.grid);
    if (!grid)
        return true;
    ShowPages(grid);
    grid->SelectKey(place.row);
    grid->setFocus(Qt::ShortcutFocusReason);
    return true;
}

RulePlace PlaceOfRule(const Application& application, const PolicyReader& reader, const loan::Group& group,
                      qint64 patronGroup, qint64 itemType) {
    const loan::Policy& policy = reader.Policy();
    const bool isShort = group.IsShortLoan(itemType);
    RulePlace place{
        .group = {.id = QString::number(group.id),
                  .name = group.name,
                  .clusterId = reader.ClusterId(),
                  .mayEdit = application.profile.MayEdit(Area::Circulation)},
        .entry = {.patronGroup = QString::number(patronGroup),
                  .itemType = QString::number(itemType),
                  .patronName = policy.patronGroups.value(patronGroup),
                  .itemName = policy.itemTypes.value(itemType)},
        .kind = isShort ? MatrixKind::ShortLoan : MatrixKind::Regular,
    };
    for (const loan::Rule& rule : group.rules)
        if (rule.patronGroup == patronGroup && rule.itemType == itemType)
            place.entry.id = QString::number(rule.id);
    return place;
}

bool OpenRule(Application& application, QWidget* parent, const RulePlace& place) {
    if (!place.entry.id.isEmpty())
        return ModifyMatrixEntry(application, parent, place.group, place.entry, place.kind);
    return place.group.mayEdit &&
           AddMatrixEntries(application, parent, place.group, place.kind, {place.entry});
}

} // namespace sysadmin
