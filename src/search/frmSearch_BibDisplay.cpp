#include "search/frmSearch_BibDisplay.h"

#include "core/Application.h"
#include "core/data/RequestChannel.h"
#include "search/KeywordFields.h"
#include "search/TitleListPreview.h"
#include "wire/SearchIndexes.h"
#include "wire/Status.h"

#include <QPushButton>

namespace sysadmin {

namespace indexes = wire::indexes;
namespace titles = wire::titles;

namespace {

/// The settings of the selected column, drawn beside the lists.
struct ColumnSettings : Form {
    TextField txtHeading{*this,
                         {.name = "txtHeading",
                          .tag = "Hd",
                          .caption = tr("Column Heading:"),
                          .maxLength = titles::HeadingLength}};
    NumberField txtWidth{*this,
                         {.name = "txtWidth",
                          .tag = "Wd",
                          .caption = tr("Width:"),
                          .unit = tr("characters"),
                          .least = 1,
                          .most = titles::MostWidth}};
};

} // namespace

BibTextForm::BibTextForm()
    : txtCode(*this, {.name = "txtCode",
                      .tag = "BCd",
                      .caption = tr("Code:"),
                      .maxLength = titles::TextCodeLength,
                      .required = true,
                      .column = {tr("Codes"), 90},
                      .changedTag = "NCd"})
    , txtName(*this, {.name = "txtName",
                      .tag = "BNm",
                      .caption = tr("Name:"),
                      .maxLength = TextLength,
                      .required = true,
                      .column = {tr("Names")},
                      .changedTag = "NNm"})
    , txtField(*this,
               {.name = "txtField",
                .tag = "BFd",
                .caption = tr("Field:"),
                .maxLength = 3,
                .toolTip = tr("Three digits; X at the end stands for any digit. Empty: the catalogue makes "
                              "the text itself"),
                .column = {.caption = tr("Field"), .hidden = true}},
               titles::IsTextField,
               tr("A field is three digits, such as 245; 24X and 6XX stand for several, * for all."))
    , txtSubfields(*this,
                   {.name = "txtSubfields",
                    .tag = "BSf",
                    .caption = tr("Subfields:"),
                    .maxLength = indexes::SubfieldsLength,
                    .column = {.caption = tr("Subfields"), .hidden = true}},
                   indexes::AreSubfields, SubfieldsProblem()) {}

TitleColumns::TitleColumns(Form& form)
    : PickedField(form, {.name = "fraColumns", .tag = "BCd"},
                  {.availableGrid = "vsfAvailableTexts",
                   .availableCaption = Form::tr("Available Texts"),
                   .selectedGrid = "vsfSelectedTexts",
                   .selectedCaption = Form::tr("Columns")},
                  {.ranked = true})
    , m_settings(std::make_shared<ColumnSettings>()) {
    // The preview shows them.
    Behaviour().more = {{.caption = Form::tr("Column Heading"), .hidden = true, .tag = "Hd"},
                        {.caption = Form::tr("Width"), .hidden = true, .tag = "Wd"}};
    Behaviour().settings = m_settings.get();
}

BibText TitleColumns::TextOf(const QString& code) const {
    for (const BibText& text : m_texts)
        if (text.code == code)
            return text;
    return {code, code};
}

void TitleColumns::Load(RequestChannel& channel) {
    QList<GridRow> selected = ReadRows(channel, "BCd", {}, {"BCd", "Hd", "Wd"});
    for (GridRow& row : selected)
        row.cells[Name] = TextOf(row.key).name;
    QList<GridRow> available;
    for (const BibText& text : m_texts)
        if (std::none_of(selected.begin(), selected.end(),
                         [&](const GridRow& row) { return row.key == text.code; }))
            available.append({text.code, {text.name, text.name, QString::number(titles::UsualWidth)}, {}});
    LoadLists(available, selected);
}

void TitleColumns::Put(RequestChannel& channel) const {
    for (const GridRow& row : Lists().Selected()) {
        channel.PutField("BCd", row.key);
        channel.PutField("Hd", row.cells.value(Heading).trimmed());
        channel.PutField("Wd", row.cells.value(Width).trimmed());
    }
}

QString TitleColumns::ColumnProblem() const {
    if (Lists().Selected().isEmpty())
        return Form::tr("A title list has one column at least.");
    for (const GridRow& row : Lists().Selected()) {
        if (row.cells.value(Heading).trimmed().isEmpty())
            return Form::tr("The column \"%1\" has no heading.").arg(row.cells.value(Name));
        bool isNumber = false;
        const int width = row.cells.value(Width).trimmed().toInt(&isNumber);
        if (!isNumber || width < 1 || width > titles::MostWidth)
            return Form::tr("The width of \"%1\" is not a number from 1 to %2.")
                .arg(row.cells.value(Heading))
                .arg(titles::MostWidth);
    }
    return {};
}

TitleListForm::TitleListForm()
    : cboKind(*this,
              {.name = "cboKind",
               .tag = "K",
               .caption = tr("Catalogue:"),
               .displayOnly = true,
               .column = {tr("Catalogue")},
               .options = {{titles::Staff, tr("Staff")}, {titles::PublicCatalogue, tr("Public Catalogue")}}})
    , columns(*this) {}

std::optional<Form::Finding> TitleListForm::FormProblem() {
    if (const QString problem = columns.ColumnProblem(); !problem.isEmpty())
        return Finding{&columns, problem};
    return {};
}

frmSearch_BibDisplay::frmSearch_BibDisplay(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_BibDisplay", tr("Title List Column Names"), Area::System,
                        parent)
    , m_text(KeepForm<BibTextForm>())
    , m_list(KeepForm<TitleListForm>()) {
    AddTable({.subject = tr("Bibliographic Text"),
              .word = "Dsp",
              .plural = "Search Bibliographic Texts",
              .gridName = "vsfTexts",
              .tabCaption = tr("Te&xts"),
              .recordTag = "BCd",
              .originalTag = "OC",
              .deleteWords = {{wire::status::InUse,
                               {tr("This text cannot be deleted because an index displays it."),
                                tr("Cannot Delete Bibliographic Text")}}},
              .nameTag = "BNm"},
             m_text);
    AddTable(
        {.subject = tr("Title List"),
         .notice = "TtlLst",
         .gridName = "vsfTitleLists",
         .tabCaption = tr("Title &Lists"),
         .recordTag = "K",
         .listRequest = "LstTtlLst",
         .getRequest = "GetTtlLst",
         .updateRequest = "UpdTtlLst",
         .loadCaption = "Load Search Title Lists",
         .editCaption = "Edit Search Title Lists",
         .saveCaption = "Save Search Title Lists",
         .nameTag = "K"},
        m_list,
        Below({m_list.cboKind, m_list.columns, Frame("fraPreview", tr("Preview"), {Slot("vsfPreview")})}), {},
        [this](const QString&) -> QWidget* { return new TitleListPreview(m_list, this); });
    Finish();
    m_cmdNew = findChild<QPushButton*>("cmdNew");
}

bool frmSearch_BibDisplay::FillForm(Table& table, const GridRow& row) {
    if (&table != &Tables().front()) {
        QList<BibText> texts;
        for (const GridRow& text : Tables().front().grid->Model().Rows())
            texts.append({text.key, text.cells.value(1), text.cells.value(2), text.cells.value(3)});
        m_list.columns.SetTexts(texts);
    }
    return MaintenanceScreen::FillForm(table, row);
}

void frmSearch_BibDisplay::RefreshOwnControls() {
    // Each kind of catalogue has its title list: there is no other.
    if (m_cmdNew && Current().spec.addRequest.isEmpty())
        m_cmdNew->setEnabled(false);
}

} // namespace sysadmin

#include "moc_frmSearch_BibDisplay.cpp"
