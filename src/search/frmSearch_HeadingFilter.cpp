#include "search/frmSearch_HeadingFilter.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormDialog.h"
#include "framework/forms/CheckedText.h"
#include "framework/forms/Rules.h"
#include "search/HeadingFilterWords.h"
#include "search/IndexItems.h"
#include "search/RecordTrial.h"
#include "search/frmSearch_TryRecord.h"
#include "wire/Status.h"

#include <QPushButton>

#include <algorithm>

namespace sysadmin {

namespace headings = wire::headings;

namespace {

/// A record with headings of many kinds; what it names is invented.
const QString RecordWithHeadings = R"(100 1  $a Aldana, Ruth, $e author.
130  0 $a Tide tables.
245 14 $a The tide tables of the northern harbours.
650  0 $a Tides $x History.
650  2 $a Water Movements.
650  7 $a Tides. $2 fast
651  0 $a Northern Coast.
653    $a ebb and flow
655  7 $a Handbooks. $2 lcgft
700 1  $a Okonjo, Ada.
711 2  $a Congress of Harbour Masters $d (2023)
)";

QString Capitalised(QString text) {
    text[0] = text[0].toUpper();
    return text;
}

QList<PickItem> Kinds() {
    QList<PickItem> items{{headings::Any, Form::tr("Any kind")}};
    for (const headings::Kind& kind : headings::Kinds())
        items.append({kind.code, Form::tr("%1 (X%2)").arg(Capitalised(kind.plural), kind.code)});
    return items;
}

QList<PickItem> Vocabularies() {
    QList<PickItem> items{{headings::Any, Form::tr("Any vocabulary")}};
    for (const headings::Vocabulary& vocabulary : headings::Vocabularies())
        items.append({vocabulary.indicator,
                      QString("%1 - %2").arg(vocabulary.indicator, Capitalised(vocabulary.name))});
    return items;
}

QList<GridColumn> LeftOutColumns() {
    return {{.caption = Form::tr("Kind of Heading"), .width = 170, .tag = "HK", .items = Kinds()},
            {.caption = Form::tr("Vocabulary"), .tag = "HV", .items = Vocabularies()},
            {.caption = Form::tr("Source ($2)"), .width = 90, .tag = "HS"}};
}

struct LeftOutForm : RowForm {
    LeftOutForm() {
        const auto isNamed = [this] { return cboVocabulary.Draft() == headings::NamedInSubfield; };
        When(isNamed).Enable(txtSource);
        When([isNamed] { return !isNamed(); }).Clear(txtSource);
        WhenLeft(txtSource, [this] { txtSource.SetDraft(txtSource.Draft().trimmed().toLower()); });
    }

    ChoiceField cboKind{*this,
                        {.name = "cboKind",
                         .tag = "HK",
                         .caption = tr("Kind of Heading:"),
                         .initial = headings::Any,
                         .options = Kinds()}};
    ChoiceField cboVocabulary{
        *this,
        {.name = "cboVocabulary",
         .tag = "HV",
         .caption = tr("Vocabulary:"),
         .initial = headings::Any,
         .toolTip = tr("The second indicator of a subject heading says from which vocabulary it comes"),
         .options = Vocabularies()}};
    CheckedText txtSource{*this,
                          {.name = "txtSource",
                           .tag = "HS",
                           .caption = tr("Source ($2):"),
                           .maxLength = headings::SourceLength,
                           .toolTip = tr("A code such as fast or lcgft; empty: whatever $2 names")},
                          headings::IsSource,
                          tr("A source is a code of lower-case letters and digits, such as fast or lcgft.")};

    Layout Draw() override { return Below({cboKind, cboVocabulary, txtSource}); }
};

RowsSpec LeftOutRows() {
    return {.marker = "HK",
            .puts = {PutCell("HK", 0), PutCell("HV", 1), PutCell("HS", 2)},
            .add = {"cmdAdd", Form::tr("Add...")},
            .modify = {"cmdModify", Form::tr("Modify...")},
            .remove = {"cmdRemove", Form::tr("Remove")},
            .ask = AskInForm({.name = "frmSearch_HeadingLeftOut",
                              .title = Form::tr("Headings Left Out"),
                              .helpContext = 50632},
                             LeftOutColumns(), std::make_shared<LeftOutForm>()),
            .several = true};
}

} // namespace

HeadingFilterForm::HeadingFilterForm()
    : vsfLeftOut(*this, {.name = "vsfLeftOut", .tag = "HK", .caption = tr("Left Out:"), .required = true},
                 LeftOutColumns(), LeftOutRows()) {
    vsfLeftOut.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        return Refusal(row, former);
    };
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field != &txtMeaning)
            SayMeaning();
    });
}

void HeadingFilterForm::OfferIndexes() {
    cboIndex.SetItems(IndexItems(indexes));
}

QString HeadingFilterForm::Refusal(const GridRow& row, const GridRow* former) const {
    const headings::LeftOut entry = LeftOutOf(row);
    if (!headings::IsInOrder(entry))
        return tr("Choose a kind of heading or a vocabulary: otherwise nothing would be left in the index.");
    for (const GridRow& other : vsfLeftOut.Rows()) {
        if (former && other.key == former->key)
            continue;
        if (headings::Covers(LeftOutOf(other), entry))
            return tr("This is left out already: %1.").arg(InWords(LeftOutOf(other)));
        if (headings::Covers(entry, LeftOutOf(other)))
            return tr("This takes in another entry: %1.\r\nPlease remove that one first.")
                .arg(InWords(LeftOutOf(other)));
    }
    return {};
}

void HeadingFilterForm::SayMeaning() {
    const QString code = cboIndex.Draft();
    const QStringList lines = LeftOutInWords(vsfLeftOut.Rows(), indexes.value(code).definition);
    QString words;
    if (!code.isEmpty() && !lines.isEmpty())
        words = tr("%1 leaves out:").arg(cboIndex.DisplayText()) + "\n- " + lines.join("\n- ");
    if (words != txtMeaning.Draft())
        txtMeaning.SetStored(words);
}

frmSearch_HeadingFilter::frmSearch_HeadingFilter(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_HeadingFilter", tr("Heading Filters"), Area::System, parent) {
    AddTable({.subject = tr("Heading Filter"),
              .word = "HdFlt",
              .plural = "Search Heading Filters",
              .listAfterChange = true, // the list shows the index's name
              .columns = {{.caption = tr("Codes"), .width = 110, .tag = "HC"},
                          {.caption = tr("Names"), .tag = "HN"}},
              .saveWords = {{wire::status::DuplicateRecord,
                             {tr("This index has a heading filter already.  Please edit that one."),
                              tr("Cannot Save Heading Filter")}}}},
             m_form);
    cmdTry = MakeButton("cmdTry", tr("Try &It..."));
    AddListButton(cmdTry);
    Finish();
    connect(cmdTry, &QPushButton::clicked, this, &frmSearch_HeadingFilter::Try);
    ReloadOn({"CSDef"}, [this] { LoadIndexes(); });
}

void frmSearch_HeadingFilter::BeforeLoad() {
    LoadIndexes();
}

void frmSearch_HeadingFilter::LoadIndexes() {
    m_form.indexes.clear();
    const auto read = [&](RequestChannel& channel) {
        m_form.indexes.insert(channel.GetField("HC"), {channel.GetField("HN"), channel.GetField("Ix")});
    };
    const auto report = [&](qint16 result) {
        App().ReportRequestFailure(result, Current().spec.loadCaption, Current().spec.subject);
    };
    ReadList(App().channel, {.request = "AvlHdFlt", .report = report}, {{"HC", read}});
    m_form.OfferIndexes();
}

void frmSearch_HeadingFilter::RefreshOwnControls() {
    cmdTry->setEnabled(GetState() == State::List && Current().grid && Current().grid->SelectedRow());
}

/// Shows which headings of a record the selected filter, as it is stored, leaves out.
void frmSearch_HeadingFilter::Try() {
    const GridRow* selected = Current().grid->SelectedRow();
    if (!selected || !AskForRecord(Current(), selected->key, Current().spec.editCaption))
        return;
    HeadingFilterForm form;
    form.indexes = m_form.indexes;
    form.OfferIndexes();
    form.Load(App().channel);
    const QString definition = form.indexes.value(form.cboIndex.Stored()).definition;
    const QList<GridRow> leftOut = form.vsfLeftOut.Rows();
    frmSearch_TryRecord dialog(
        App().prompter,
        {.title = tr("Try %1").arg(form.cboIndex.DisplayText()),
         .helpContext = 50633,
         .sample = RecordWithHeadings,
         .listName = tr("Headings"),
         .nothing = tr("The index takes no heading from the record."),
         .foundWord = tr("Headings taken from the record: %1"),
         .columns = {{.caption = tr("Field"), .width = 80},
                     {.caption = tr("Heading")},
                     {.caption = tr("Outcome"), .width = 330}},
         .find = [&](const marc::Record& record) { return HeadingsIn(record, definition, leftOut); }},
        this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmSearch_HeadingFilter.cpp"
