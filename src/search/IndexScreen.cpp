#include "search/IndexScreen.h"

#include "core/Application.h"
#include "wire/Status.h"

#include <QPlainTextEdit>
#include <QPushButton>

namespace sysadmin {

using wire::indexes::Family;

namespace {

constexpr int IndexMeaningLines = 5;

} // namespace

IndexSpec KeywordIndexes() {
    return {.family = Family::Keyword,
            .formName = "frmSearch_KeywordDefinitions",
            .caption = IndexScreen::tr("Indexes -  Keyword Definitions"),
            .subject = IndexScreen::tr("Keyword Definition"),
            .word = "KSrch",
            .loadCaption = "Load Search Definitions",
            .editCaption = "Edit Composite Search Definitions",
            .saveCaption = "Save Keyword Definition",
            .deleteCaption = "Delete Keyword Definition"};
}

IndexSpec HoldingsKeywordIndexes() {
    return {.family = Family::HoldingsKeyword,
            .formName = "frmSearch_MFHDKeywordDefinitions",
            .caption = IndexScreen::tr("Indexes - Holdings Keyword Definitions"),
            .subject = IndexScreen::tr("Holdings Keyword Definition"),
            .word = "MKSrch",
            .loadCaption = "Load Headings Keyword Search Definitions",
            .editCaption = "Edit Headings Keyword Search Definition",
            .saveCaption = "Save Holdings Keyword Search Definition",
            .deleteCaption = "Delete Holdings Keyword Search Definition"};
}

IndexSpec CompositeIndexes() {
    return {.family = Family::Composite,
            .formName = "frmSearch_CompositeDefinitions",
            .caption = IndexScreen::tr("Indexes - Composite Definition"),
            .subject = IndexScreen::tr("Composite Definition"),
            .word = "CSrch",
            .loadCaption = "Load Search Definitions",
            .editCaption = "Edit Composite Search Definitions",
            .saveCaption = "Save Indexes - Composite Definition",
            .deleteCaption = "Delete Indexes - Composite Definition"};
}

IndexSpec HeadingIndexes() {
    return {.family = Family::Headings,
            .formName = "frmSearch_SearchDefinitions",
            .caption = IndexScreen::tr("Indexes - Headings & Left-Anchored Definitions"),
            .subject = IndexScreen::tr("Headings/Left-Anchored Definition"),
            .word = "CSDef",
            .loadCaption = "Load Search Definitions",
            .editCaption = "Edit Search Definitions",
            .saveCaption = "Save Headings/Left-Anchored Definition"};
}

IndexScreen::IndexScreen(Application& application, const IndexSpec& spec, QWidget* parent)
    : MaintenanceScreen(application, spec.formName, spec.caption, Area::System, parent)
    , m_spec(spec)
    , m_form(KeepForm<IndexForm>(spec.family)) {
    const bool isFixed = spec.deleteCaption.isEmpty();
    AddTable({.subject = spec.subject,
              .notice = spec.word,
              .recordTag = "Cd",
              .continuing = true,
              .listRequest = "Lst" + spec.word,
              .getRequest = "Get" + spec.word,
              .addRequest = isFixed ? QString() : "Add" + spec.word,
              .updateRequest = "Upd" + spec.word,
              .deleteRequest = isFixed ? QString() : "Del" + spec.word,
              .originalTag = "FC",
              .loadCaption = spec.loadCaption,
              .editCaption = spec.editCaption,
              .saveCaption = spec.saveCaption,
              .deleteCaption = spec.deleteCaption},
             m_form, m_form.Draw(), m_form.Puts());
    Finish();
    ReloadOn({"Dsp"}, [this] { LoadDisplays(); });
    if (m_form.components)
        ReloadOn({"KSrch", "MKSrch", "CSDef"}, [this] { LoadComponents(); });
    // A few lines where there is a list above, which has more to show.
    if (auto* meaning = findChild<QPlainTextEdit*>("txtMeaning"); !m_form.heading)
        meaning->setMaximumHeight(IndexMeaningLines * meaning->fontMetrics().lineSpacing());
    if (!isFixed)
        return;
    SetRights(false, application.profile.MayEdit(Area::System), false);
    findChild<QPushButton*>("cmdNew")->hide();
}

/// The records of a list: key the code, cells name and code.
QList<GridRow> IndexScreen::ReadCodes(const QString& request, const QString& codeTag, const QString& nameTag,
                                      const QString& caption) {
    QList<GridRow> rows;
    const auto read = [&](RequestChannel& channel) {
        const QString code = channel.GetField(codeTag);
        rows.append({code, {channel.GetField(nameTag), code}, {}});
    };
    const auto report = [&](qint16 result) { App().ReportRequestFailure(result, caption, m_spec.subject); };
    ReadList(App().channel, {.request = request, .form = ListForm::Continuing, .report = report},
             {{codeTag, read}});
    return rows;
}

void IndexScreen::BeforeLoad() {
    LoadDisplays();
    LoadComponents();
}

void IndexScreen::LoadDisplays() {
    m_form.displays.Offer(ReadCodes("LstDsp", "BCd", "BNm", "Load Search Available Bib Definitions"));
}

void IndexScreen::LoadComponents() {
    if (m_form.components)
        m_form.components->Offer(ReadCodes("LstComp", "CC", "CN", m_spec.loadCaption));
}

void IndexScreen::ReadRecord(Table& table) {
    m_form.uses.Load(App().channel);
    MaintenanceScreen::ReadRecord(table);
}

bool IndexScreen::MayDeleteRow(const GridRow& row) const {
    return !wire::indexes::IsSystemCode(m_spec.family, row.key);
}

} // namespace sysadmin

#include "moc_IndexScreen.cpp"
