#include "search/frmSearch_HookToHolding.h"

#include "core/Application.h"
#include "wire/Status.h"

namespace sysadmin {

HookForm::HookForm()
    : txtName(*this, {.name = "txtName",
                      .tag = "DNm",
                      .caption = tr("Name:"),
                      .maxLength = NameLength,
                      .required = true,
                      .column = {tr("Names")},
                      .changedTag = "NNm"})
    , vsfMatches(*this, {.name = "vsfMatches", .tag = "HF", .accessible = tr("Matches")},
                 {.fieldTag = "HF",
                  .subfieldsTag = "HS",
                  .normalisationTag = "HN",
                  .indexTag = "HX",
                  .dialog = {.name = "frmSearch_HookMatch", .title = tr("Match"), .helpContext = 50673}}) {}

std::optional<Form::Finding> HookForm::FormProblem() {
    if (vsfMatches.IsBlank())
        return Finding{&vsfMatches, tr("A hook to holdings has one match at least.")};
    return {};
}

frmSearch_HookToHolding::frmSearch_HookToHolding(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_HookToHolding", tr("Hook To Holdings"), Area::System, parent)
    , m_form(KeepForm<HookForm>()) {
    AddTable({.subject = tr("Hook To Holdings"),
              .word = "Hook",
              .plural = "Search Hooks To Holdings",
              .recordTag = "DID",
              .copies = true,
              .deleteWords = {{wire::status::InUse,
                               {tr("This hook cannot be deleted because a search database uses it."),
                                tr("Cannot Delete Hook To Holdings")}}},
              .nameTag = "DNm"},
             m_form,
             Below({m_form.txtName,
                    Note(tr("A record of another database is looked for by each of these in turn, until "
                            "one finds it.")),
                    m_form.vsfMatches}));
    Finish();
    ReloadOn({"KSrch", "MKSrch", "CSDef"}, [this] { LoadIndexes(); });
}

/// The indexes in which a record can be looked for.
void frmSearch_HookToHolding::LoadIndexes() {
    QList<PickItem> indexes;
    const auto read = [&](RequestChannel& channel) {
        const QString code = channel.GetField("CC");
        indexes.append({code, QString("%1 (%2)").arg(channel.GetField("CN"), code)});
    };
    const auto report = [this](qint16 result) {
        App().ReportRequestFailure(result, "Load Search Hooks To Holdings", tr("Hook To Holdings"));
    };
    ReadList(App().channel, {.request = "LstComp", .form = ListForm::Continuing, .report = report},
             {{"CC", read}});
    m_form.vsfMatches.OfferIndexes(indexes);
}

} // namespace sysadmin

#include "moc_frmSearch_HookToHolding.cpp"
