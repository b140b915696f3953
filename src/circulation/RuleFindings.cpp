#include "circulation/RuleFindings.h"

#include "circulation/PolicyReader.h"
#include "circulation/frmCirculation_PatronDefaultDates.h"
#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "core/data/Tr.h"
#include "wire/Status.h"

#include <QLocale>

namespace sysadmin {

namespace {

/// Where it stands in the settings, unless it is about a pair of patron group and item type.
RecordPlace PlaceOf(const RuleFinding& found) {
    const loan::Finding& finding = found.finding;
    if (finding.calendar != 0)
        return {.screen = "Circ_Calendars",
                .cluster = found.cluster,
                .record = QString::number(finding.calendar)};
    RecordPlace place{.screen = "Circulation_PolicyDefinitions",
                      .cluster = found.cluster,
                      .record = QString::number(finding.group)};
    if (finding.location != 0) {
        place.grid = "vsfSelectedLocations";
        place.row = QString::number(finding.location);
    } else if (finding.kind == loan::Finding::Kind::NoCalendar) {
        place.grid = "vsfSelectedCalendars";
    } else if (finding.kind == loan::Finding::Kind::NoRules) {
        place.grid = "vsfMatrix";
    }
    return place;
}

qint16 CheckLoanRules(Application& application, QList<HealthFinding>& found) {
    RuleFindings rules;
    const qint16 result = ReadRuleFindings(application, rules);
    for (const RuleFinding& rule : rules.found) {
        const QString group =
            application.clusters.Count() > 1 ? rule.clusterName + ": " + rule.group : rule.group;
        found.append({rule.Key(), rule.finding.place.isEmpty() ? group : group + ", " + rule.finding.place,
                      loan::FindingText(rule.finding.kind) + ": " + rule.finding.text,
                      [&application, rule](QWidget* parent) { rule.Open(application, parent); }});
    }
    for (const PickItem& location : rules.freeLocations)
        found.append({"location " + location.id, location.text,
                      Tr("The location belongs to no circulation policy group: nothing can be lent there."),
                      [&application](QWidget*) {
                          if (application.mainWindow)
                              application.mainWindow->OpenScreen("Circulation_PolicyDefinitions");
                      }});
    return result;
}

qint16 CheckDefaultDates(Application& application, QList<HealthFinding>& found) {
    const qint16 result = application.channel.SendRequest("GetPatDefDates");
    if (result != wire::status::Ok)
        return result;
    PatronDefaultDatesForm form;
    form.Load(application.channel);
    const auto check = [&](DefaultDate& date, const QString& name, const QString& text) {
        date.FollowLoaded();
        if (!date.IsExact() || date.exact.Date() > QDate::currentDate())
            return;
        found.append({date.exact.Tag(), name,
                      text.arg(QLocale().toString(date.exact.Date(), QLocale::ShortFormat)),
                      [&application, control = date.exact.Name()](QWidget*) {
                          if (!application.mainWindow)
                              return;
                          const QString key = "Circulation_PatronDefaultDates";
                          application.mainWindow->OpenScreen(key);
                          if (Screen* screen = application.mainWindow->FindScreen(key))
                              screen->GoTo(control);
                      }});
    };
    check(form.expiration, Tr("Expiration date"),
          Tr("%1 is past: every new patron record is expired at once."));
    check(form.purge, Tr("Purge date"), Tr("%1 is past: new patron records go with the next purge job."));
    return result;
}

} // namespace

QString RuleFinding::Key() const {
    QStringList parts{cluster};
    for (const qint64 id : {finding.group, qint64(finding.kind), finding.rule, finding.patronGroup,
                            finding.itemType, finding.calendar, finding.location})
        parts.append(QString::number(id));
    return parts.join(' ') + ' ' + finding.text; // an entry may have two of a kind
}

bool RuleFinding::Open(Application& application, QWidget* parent) const {
    if (finding.patronGroup != 0)
        return OpenRule(application, parent, rule);
    OpenPlace(application, PlaceOf(*this));
    return false;
}

qint16 ReadRuleFindings(Application& application, RuleFindings& findings) {
    for (const auto& [id, cluster] : application.clusters) {
        PolicyReader reader(application.channel, id);
        if (const qint16 status = reader.ReadAll(); status != wire::status::Ok)
            return status;
        QHash<qint64, const loan::Group*> byId;
        for (const loan::Group& group : reader.Policy().groups)
            byId.insert(group.id, &group);
        findings.groups += byId.size();
        for (const loan::Finding& finding : loan::CheckRules(reader.Policy(), QDate::currentDate())) {
            const loan::Group& group = *byId[finding.group];
            findings.found.append(
                {id, cluster.sClusterName, group.name, finding,
                 PlaceOfRule(application, reader, group, finding.patronGroup, finding.itemType)});
        }
        for (const PickItem& location : reader.FreeLocations())
            if (!findings.freeLocations.contains(location))
                findings.freeLocations.append(location);
    }
    return wire::status::Ok;
}

QList<HealthCheck> CirculationChecks() {
    return {{"rules", Tr("Loan Rules"), wire::Area::Circulation, CheckLoanRules},
            {"dates", Tr("Patron Dates"), wire::Area::Circulation, CheckDefaultDates}};
}

} // namespace sysadmin
