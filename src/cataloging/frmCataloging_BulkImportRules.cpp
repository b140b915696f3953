#include "cataloging/frmCataloging_BulkImportRules.h"

#include "cataloging/DuplicateScreen.h"
#include "cataloging/ImportSettings.h"
#include "cataloging/TrialRule.h"
#include "cataloging/TryImportDialog.h"
#include "cataloging/frmCataloging_BulkImportCopyNumberingSettings.h"
#include "cataloging/frmCataloging_BulkImportMultiMFHD.h"
#include "cataloging/frmCataloging_BulkImportOrderSettings.h"
#include "cataloging/frmCataloging_BulkImportSingleMFHD.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "wire/DuplicateDetection.h"
#include "wire/Status.h"

#include <QPushButton>

namespace sysadmin {

namespace {

const QString GetProfileCaption = "Edit Cataloging Authority Duplicate Detection";
const QString ProfileCaption = "Load Cataloging Bib/Auth Duplicate Detection";

} // namespace

frmCataloging_BulkImportRules::frmCataloging_BulkImportRules(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCataloging_BulkImportRules", tr("Bulk Import Rules"),
                        Area::Cataloging, parent) {
    AddTable({.subject = tr("Bulk Import Rule"),
              .word = "Imp",
              .plural = "Cataloging Bulk Import",
              .recordTag = "BII",
              .continuing = true,
              .copies = true,
              .namesRecord = true,
              .nameTag = "BIN"},
             m_form, Draw(), m_form.Puts());
    m_cmdTryIt = MakeButton("cmdTryIt", tr("&Try It..."));
    connect(m_cmdTryIt, &QPushButton::clicked, this, &frmCataloging_BulkImportRules::TryIt);
    AddEditButton(m_cmdTryIt);
    Finish();
    connect(&m_form, &Form::Edited, this, [this](const Field* field) {
        if (field == &m_form.cboBibDupProfile)
            FollowHandling();
    });
    ReloadOn({"Loc", "ItmTp", "Lib", "CatDp", "CNH"}, [this] { LoadChoiceLists(); });
}

Layout frmCataloging_BulkImportRules::Draw() {
    ImportRuleForm& form = m_form;
    const auto mode = [this](bool (LoadModeField::*suits)() const) {
        return [this, suits] { return EditsRule() && (m_form.optBulkLoad.*suits)(); };
    };
    const auto single = [this] {
        return EditsRule() && (m_form.optBulkLoad.IsBibsOnly() || m_form.optBulkLoad.IsSingle());
    };
    return Tabs(
        "tabBulkImport",
        {Page(tr("Ru&le Name"), {form.txtRuleCode, form.txtRuleName}),
         Page(tr("R&ules"),
              {form.cboBibDupProfile, form.cboAuthDupProfile, form.cboOwningLibrary, Below({form.cboCharSet}),
               form.chkBatchOpacSuppress, form.chkIgnoreOPACSuppress}),
         Page(tr("Pro&files"),
              {form.optBulkLoad,
               // By themselves: in columns with the load modes they would widen the page.
               Below({Beside({Button(
                                  "cmdSingleMFHD", tr("Single..."), [this] { EditSingle(); }, single),
                              Button(
                                  "cmdMultiMFHD", tr("Multiple..."), [this] { EditMultiple(); },
                                  mode(&LoadModeField::IsMultiple)),
                              Button(
                                  "cmdOrders", tr("&Orders..."), [this] { EditOrders(); },
                                  mode(&LoadModeField::CreatesOrders))})}),
               form.chkUse4DupBibs, form.chkCopy852, form.chkCopy856, form.chkOnePOPerBib,
               form.chkAutoApprove}),
         Page(tr("&Item Type"), {form.vsfItemType}),
         Page(tr("Ma&pping"), {Note(tr("You must have an Item Type Mapping entry with * for Marc Item and * "
                                       "for Marc Location.")),
                               form.vsfMapping}),
         Page(tr("&Barcode"), {form.vsfBarcode}),
         Page(tr("I&tem Information"),
              {form.chkCatalogingReview,
               Frame("fraItemStatuses", tr("Item Statuses to add"),
                     {Beside({form.chkAtBindery, form.chkCircReview, form.chkDamaged, form.chkInProcess}),
                      Beside({form.chkLost, form.chkMissing, form.chkWithdrawn})}),
               Frame("fraMagneticMedia", tr("Magnetic Media (Single item)"),
                     {form.magneticMedia, form.txtMagneticMatch,
                      Note(tr("Default is N. When value matches, set to Y."))}),
               Frame("fraSensitize", tr("Sensitize (Single item)"),
                     {form.sensitize, form.txtSensitizeMatch,
                      Note(tr("Default is Y.  When value matches, set to N."))}),
               Button(
                   "cmdCopyNumbers", tr("Co&py Numbers..."), [this] { EditCopyNumbers(); },
                   [this] { return EditsRule(); })})});
}

bool frmCataloging_BulkImportRules::EditsRule() const {
    return GetState() == State::EditingNew || GetState() == State::Editing;
}

void frmCataloging_BulkImportRules::BeforeLoad() {
    LoadChoiceLists();
}

// Several lists come in one reply, and those of the mappings serve a dialog as well.
void frmCataloging_BulkImportRules::LoadChoiceLists() {
    RequestChannel& channel = App().channel;
    const QString subject = Current().spec.subject;
    const auto read = [&](const QString& request, const QString& caption, const QList<ListStep>& steps) {
        ReadList(channel,
                 {.request = request,
                  .report = [&](qint16 result) { App().ReportRequestFailure(result, caption, subject); }},
                 steps);
    };
    QList<PickItem> bibs, authorities, libraries, hierarchies, locations, itemTypes;
    read("AvlImp", ProfileCaption,
         {CollectItems(bibs, "BuI", "BuN"), CollectItems(authorities, "AuI", "AuN"),
          CollectItems(libraries, "DCI", "DCN"), CollectItems(hierarchies, "D1", "D2")});
    read("AvlLocations", "Load Locations", {CollectItems(locations, "D5", "D6")});
    read("GetItemTypes", "Load Item Types", {CollectItems(itemTypes, "D3", "D4")});
    m_form.cboBibDupProfile.SetItems(WithNone(bibs, NoImportChoice()));
    m_form.cboAuthDupProfile.SetItems(WithNone(authorities, NoImportChoice()));
    m_form.cboOwningLibrary.SetItems(WithNone(libraries, NoImportChoice()));
    m_form.vsfMapping.SetChoices(itemTypes, locations, WithNone(hierarchies, NoImportChoice()));
}

void frmCataloging_BulkImportRules::ReadRecord(Table& table) {
    MaintenanceScreen::ReadRecord(table);
    m_form.handling.SetStored(AskHandling());
}

void frmCataloging_BulkImportRules::FollowHandling() {
    m_form.handling.SetDraft(AskHandling());
}

/// How the chosen profile treats a record that is there already; empty when there is none, or nobody says.
QString frmCataloging_BulkImportRules::AskHandling() {
    if (m_form.cboBibDupProfile.IsBlank())
        return {};
    App().channel.PutField("DID", m_form.cboBibDupProfile.Draft());
    return App().channel.SendRequest("GetDupHand") == wire::status::Ok ? App().channel.GetField("DH")
                                                                       : QString();
}

/// Whether the chosen profile replaces or merges, as it is stored now; none when that cannot be found out.
std::optional<bool> frmCataloging_BulkImportRules::ReplacesOrMerges() {
    if (m_form.cboBibDupProfile.IsBlank())
        return false;
    RequestChannel& channel = App().channel;
    channel.PutField("DID", m_form.cboBibDupProfile.Draft());
    channel.PutField("Look", "Y"); // the profile's own screen may be editing it
    if (const qint16 result = channel.SendRequest("GetCatDp"); result != wire::status::Ok) {
        App().ReportRequestFailure(result, GetProfileCaption, Current().spec.subject);
        return std::nullopt;
    }
    const QString handling = channel.GetField("DH");
    return handling == wire::duplicates::handling::Replace || handling == wire::duplicates::handling::Merge;
}

QStringList frmCataloging_BulkImportRules::ProblemsBeforeSave(Table&) {
    QStringList texts;
    m_isUnknown = false;
    if (m_form.optBulkLoad.Updates()) {
        const std::optional<bool> suits = ReplacesOrMerges();
        m_isUnknown = !suits;
        if (!suits)
            texts << tr("The bib dup detection profile could not be read.");
        else if (!*suits)
            texts << tr("When \"Update previously loaded MFHDs and Items\" is selected, then you must use a "
                        "REPLACE or MERGE bib dup detection profile.");
    }
    return texts + m_form.Shortcomings();
}

std::optional<Box> frmCataloging_BulkImportRules::QuestionBeforeSave(Table&) {
    if (!m_form.chkAutoApprove.IsOn())
        return std::nullopt;
    return Box{.text = tr("This profile will automatically approve the purchase orders it creates. "
                          "Are you sure you want to save it?"),
               .icon = Box::Icon::Question,
               .buttons = Box::Buttons::OkCancel};
}

bool frmCataloging_BulkImportRules::CheckBeforeSave(Table& table) {
    const QStringList texts = ProblemsBeforeSave(table);
    if (m_isUnknown) // and that was reported
        return false;
    const std::optional<Box> question = QuestionBeforeSave(table);
    return CheckAll(*table.form, *table.view,
                    tr("The following needs to be corrected before you are allowed to complete the save."),
                    texts) &&
           (!question || App().prompter.ShowBox(this, *question));
}

// What must be unique is where the operator goes on.
void frmCataloging_BulkImportRules::RefreshOwnControls() {
    m_cmdTryIt->setEnabled(GetState() != State::List);
}

void frmCataloging_BulkImportRules::EditSingle() {
    SingleHoldingsForm form;
    ImportSettings::Fill(form, {&m_form.location});
    if (form.Edit(App().prompter, this))
        m_form.location.TakeFrom(form);
}

void frmCataloging_BulkImportRules::EditMultiple() {
    MultipleHoldingsForm form;
    ImportSettings::Fill(form, {&m_form.multiple, &m_form.location});
    if (!form.Edit(App().prompter, this))
        return;
    m_form.multiple.TakeFrom(form);
    m_form.location.TakeFrom(form);
}

void frmCataloging_BulkImportRules::EditCopyNumbers() {
    CopyNumbersForm form;
    ImportSettings::Fill(form, {&m_form.copyNumbers});
    if (form.Edit(App().prompter, this))
        m_form.copyNumbers.TakeFrom(form);
}

void frmCataloging_BulkImportRules::EditOrders() {
    OrderSettingsForm form;
    if (!form.LoadChoices(App(), m_form.vsfMapping.Locations()))
        return;
    form.Begin(m_form.orders);
    if (form.Edit(this))
        m_form.orders.TakeFrom(form);
}

/// Shows what an import by the rule would come to, as the rule stands in the edit.
void frmCataloging_BulkImportRules::TryIt() {
    OrderSettingsForm orders;
    if (m_form.optBulkLoad.CreatesOrders()) {
        if (!orders.LoadChoices(App(), m_form.vsfMapping.Locations()))
            return;
        orders.Begin(m_form.orders);
    }
    CallNumberPolicies callNumbers;
    if (const qint16 result = callNumbers.Read(App().channel); result != wire::status::Ok) {
        App().ReportRequestFailure(result, "Load Cataloging Call Number Hierarchies", Current().spec.subject);
        return;
    }
    ImportTrialRule rule = RuleToTry(m_form, orders, callNumbers);
    const auto read = [this](const ChoiceField& profile, const DuplicateSpec& spec, bool& isRead) {
        std::optional<DuplicateProfile> found;
        qint16 result = wire::status::Ok;
        if (!profile.IsBlank())
            found = ReadDuplicateProfile(App().channel, spec, profile.Draft(), result);
        if (result != wire::status::Ok)
            App().ReportRequestFailure(result, GetProfileCaption, Current().spec.subject);
        isRead = result == wire::status::Ok;
        return found;
    };
    bool isRead = false;
    const std::optional<DuplicateProfile> bibs = read(m_form.cboBibDupProfile, BibDuplicates(), isRead);
    if (!isRead)
        return;
    const std::optional<DuplicateProfile> authorities =
        read(m_form.cboAuthDupProfile, AuthorityDuplicates(), isRead);
    if (!isRead)
        return;
    rule.bibHandling = bibs ? bibs->handling : QString();
    rule.discardsBibs = bibs && bibs->discardsUnmatched;
    rule.authorityHandling = authorities ? authorities->handling : QString();
    rule.discardsAuthorities = authorities && authorities->discardsUnmatched;
    TriedLibrary library = m_form.optBulkLoad.CreatesOrders() ? LibraryToTry(orders) : TriedLibrary();
    library.hierarchies = callNumbers.hierarchies;
    TryImportDialog dialog(App().prompter, rule, library, {bibs, authorities}, this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCataloging_BulkImportRules.cpp"
