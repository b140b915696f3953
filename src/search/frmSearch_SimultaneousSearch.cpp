#include "search/frmSearch_SimultaneousSearch.h"

#include "framework/forms/Rules.h"
#include "wire/MatchKeys.h"

namespace sysadmin {

namespace matching = wire::matching;

SimultaneousSearchForm::SimultaneousSearchForm()
    : chkRemoveDuplicates(*this,
                          {.name = "chkRemoveDuplicates",
                           .tag = "DD",
                           .caption = tr("Remove records that several databases have"),
                           .toolTip = tr("Results of a search in several databases show a record once")})
    , txtMostCompared(*this, {.name = "txtMostCompared",
                              .tag = "MC",
                              .caption = tr("Results Compared:"),
                              .required = true,
                              .unit = tr("of each database"),
                              .initial = QString::number(matching::UsuallyCompared),
                              .enabledBy = "chkRemoveDuplicates",
                              .least = 1,
                              .most = matching::MostCompared})
    , vsfKeys(*this, {.name = "vsfKeys", .tag = "XF", .accessible = tr("Match keys")},
              {.fieldTag = "XF",
               .subfieldsTag = "XS",
               .normalisationTag = "XN",
               .dialog = {.name = "frmSearch_MatchKey", .title = tr("Match Key"), .helpContext = 50675}})
    , databases(*this, {.name = "fraDatabases", .tag = "SDB"},
                {.availableGrid = "vsfAvailableDatabases",
                 .availableCaption = tr("By Weight"),
                 .selectedGrid = "vsfSelectedDatabases",
                 .selectedCaption = tr("Best First")},
                {.tags = {"ADB", "ADN", "SDB", "SDN"}, .ranked = true}) {
    When([this] { return chkRemoveDuplicates.IsOn(); }).Enable(vsfKeys, databases);
}

Layout SimultaneousSearchForm::Draw() {
    return Below(
        {chkRemoveDuplicates, txtMostCompared,
         Tabs("tabSimultaneous",
              {Page(tr("&Match Keys"),
                    {Note(tr("Records are the same when the first of these keys that both have is "
                             "the same.")),
                     vsfKeys}),
               Page(tr("&Databases"),
                    {Note(tr("Of records that are the same, that of the database stays which "
                             "stands first under \"Best First\", else that of the greatest weight.")),
                     databases})})});
}

std::optional<Form::Finding> SimultaneousSearchForm::FormProblem() {
    if (chkRemoveDuplicates.IsOn() && vsfKeys.IsBlank())
        return Finding{&vsfKeys, tr("Without a match key no records are the same.")};
    return {};
}

frmSearch_SimultaneousSearch::frmSearch_SimultaneousSearch(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSearch_SimultaneousSearch",
                         tr("Simultaneous Search De-Duplicating"), Area::System, parent)
    , m_form(KeepForm<SimultaneousSearchForm>()) {
    Build({.subject = tr("Simultaneous Search De-Duplicating"),
           .word = "SimSrch",
           .plural = "Simultaneous Search De-Duplicating",
           .frameNoun = tr("Simultaneous Search De-Duplicating")},
          m_form, m_form.Draw());
}

} // namespace sysadmin

#include "moc_frmSearch_SimultaneousSearch.cpp"
