#include "cataloging/DuplicateScreen.h"

#include "cataloging/DuplicateSearch.h"
#include "cataloging/frmCataloging_DuplicateTry.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTableView>

namespace sysadmin {

namespace duplicates = wire::duplicates;

namespace {

constexpr int MergeCharacter = 7; // pixels

} // namespace

DuplicateSpec BibDuplicates() {
    return {.recordType = duplicates::Bibliographic,
            .formName = "frmCataloging_BibDuplicateDetection",
            .caption = DuplicateScreen::tr("Cataloging Bib Duplicate Definitions"),
            .subject = DuplicateScreen::tr("Bib Duplicate Definition"),
            .plural = "Cataloging Bib Duplicate Detection",
            .recordId = DuplicateScreen::tr("Bibliographic Record ID"),
            .mergeWidth = 11 * MergeCharacter};
}

DuplicateSpec AuthorityDuplicates() {
    return {.recordType = duplicates::Authority,
            .formName = "frmCataloging_AuthorityDuplicateDetection",
            .caption = DuplicateScreen::tr("Cataloging Authority Duplicate Definitions"),
            .subject = DuplicateScreen::tr("Authority Duplicate Definition"),
            .plural = "Cataloging Authority Duplicate Detection",
            .recordId = DuplicateScreen::tr("Authority Record Id"),
            .mergeWidth = 10 * MergeCharacter};
}

DuplicateScreen::DuplicateScreen(Application& application, const DuplicateSpec& spec, QWidget* parent)
    : MaintenanceScreen(application, spec.formName, spec.caption, Area::Cataloging, parent)
    , m_spec(spec)
    , m_form(KeepForm<DuplicateForm>(spec)) {
    AddTable({.subject = spec.subject,
              .word = "CatDp",
              .plural = spec.plural,
              .recordTag = "DID",
              .continuing = true,
              .copies = true,
              .editCaption = "Edit Cataloging Authority Duplicate Detection"},
             m_form, m_form.Draw(), m_form.Puts());
    m_cmdTry = MakeButton("cmdTry", tr("Try &It..."));
    connect(m_cmdTry, &QPushButton::clicked, this, &DuplicateScreen::Try);
    AddListButton(m_cmdTry);
    Finish();
    // The code stands in front of the name.
    for (const char* grid : {"vsfAvailableIndexes", "vsfSelectedIndexes"})
        findChild<QTableView*>(grid)->horizontalHeader()->moveSection(DuplicateIndexes::Code,
                                                                      DuplicateIndexes::Name);
    ReloadOn({"CSDef"}, [this] { LoadIndexes(); });
}

void DuplicateScreen::BeforeLoad() {
    LoadIndexes();
}

void DuplicateScreen::PutListKey(const Table&) {
    App().channel.PutField("RT", m_spec.recordType);
}

void DuplicateScreen::LoadIndexes() {
    QList<DuplicateIndexes::Offer> offers;
    if (ReadDuplicateIndexes(App().channel, m_spec, offers) != wire::status::Ok)
        ReportUnableToLoad(App(), this, tr("Available Indexes"));
    m_form.indexes.SetOffers(offers);
}

void DuplicateScreen::RefreshOwnControls() {
    m_cmdTry->setEnabled(GetState() == State::List && Current().grid->SelectedRow());
}

/// Compares two records by the selected profile as it is stored.
void DuplicateScreen::Try() {
    const GridRow* selected = Current().grid->SelectedRow();
    if (!selected || !AskForRecord(Current(), selected->key, Current().spec.editCaption))
        return;
    DuplicateForm form(m_spec);
    form.indexes.SetOffers(m_form.indexes.Offers());
    form.Load(App().channel);
    frmCataloging_DuplicateTry dialog(App().prompter, form.Profile(), form.txtProfileName.Stored(), this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_DuplicateScreen.cpp"
