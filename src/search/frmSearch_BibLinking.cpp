#include "search/frmSearch_BibLinking.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/forms/Rules.h"
#include "search/IndexSentences.h"
#include "search/RecordTrial.h"
#include "search/frmSearch_TryRecord.h"
#include "wire/BibLinks.h"
#include "wire/MarcMark.h"
#include "wire/Status.h"

#include <QPushButton>

#include <algorithm>

namespace sysadmin {

namespace links = wire::links;

namespace {

const QString PlaceColumn = "From";
enum Cell { CaptionCell, DirectionCell, PlaceCell }; ///< of the list

QList<PickItem> Directions() {
    return {{links::direction::Host, Form::tr("Host item")},
            {links::direction::Part, Form::tr("Part")},
            {links::direction::Earlier, Form::tr("Earlier title")},
            {links::direction::Later, Form::tr("Later title")},
            {links::direction::Related, Form::tr("Related title")}};
}

QString DirectionInWords(const QString& direction) {
    if (direction == links::direction::Host)
        return Form::tr("the host item");
    if (direction == links::direction::Part)
        return Form::tr("a part");
    if (direction == links::direction::Earlier)
        return Form::tr("an earlier title");
    return direction == links::direction::Later ? Form::tr("a later title") : Form::tr("a related title");
}

QString LinkIndicatorProblem() {
    return Form::tr("An indicator is a digit or a lower-case letter, _ for a blank, or * for any.");
}

/// A record with links; what it names is invented.
const QString RecordWithLinks = R"(001    300417
022    $a 0000-0019
245 00 $a Tides and harbours.
773 0  $t Annals of the coast $w 035-1177 $x 0000-0027
780 00 $t Harbour notes $x 0000-0035
785 00 $t Review of tides $x 0000-0043
)";

FieldSpec Indicator(const QString& name, const QString& tag, const QString& caption) {
    return {.name = name,
            .tag = tag,
            .caption = caption,
            .maxLength = 1,
            .required = true,
            .initial = links::AnyIndicator,
            .toolTip = Form::tr("* for any, _ for a blank")};
}

/// "780 *0 x": the place as lists show it.
QString ShownPlace(const QString& field, const QString& indicators, const QString& subfield) {
    QStringList parts{field};
    if (indicators != u"**" && !indicators.isEmpty())
        parts.append(indicators);
    if (!subfield.isEmpty())
        parts.append('$' + subfield);
    return parts.join(' ');
}

QString WhichIndicator(const QString& which, const QString& value) {
    return value == links::BlankIndicator ? Form::tr("the %1 indicator is blank").arg(which)
                                          : Form::tr("the %1 indicator is %2").arg(which, value);
}

} // namespace

BibLinkForm::BibLinkForm()
    : txtCaption(*this, {.name = "txtCaption",
                         .tag = "Cp",
                         .caption = tr("Caption:"),
                         .maxLength = links::CaptionLength,
                         .required = true,
                         .toolTip = tr("What stands in front of the link in the catalogue")})
    , cboDirection(*this, {.name = "cboDirection",
                           .tag = "Dr",
                           .caption = tr("Leads To:"),
                           .initial = links::direction::Host,
                           .options = Directions()})
    , txtField(*this,
               {.name = "txtField",
                .tag = "FF",
                .caption = tr("Field:"),
                .maxLength = 3,
                .required = true,
                .toolTip = tr("Three digits; X at the end stands for any digit")},
               links::IsField, tr("A field is three digits, such as 780; 78X stands for 780 to 789."))
    , txtIndicator1(*this, Indicator("txtIndicator1", "I1", tr("First Indicator:")), wire::IsMarcMark,
                    LinkIndicatorProblem())
    , txtIndicator2(*this, Indicator("txtIndicator2", "I2", tr("Second Indicator:")), wire::IsMarcMark,
                    LinkIndicatorProblem())
    , txtSubfield(*this,
                  {.name = "txtSubfield",
                   .tag = "SF",
                   .caption = tr("Subfield:"),
                   .maxLength = 1,
                   .toolTip = tr("w holds control numbers, x ISSNs, z ISBNs, t titles")},
                  links::IsSubfield, tr("A subfield is a digit or a lower-case letter."))
    , cboIndex(*this, {.name = "cboIndex", .tag = "IC", .caption = tr("Index:"), .required = true})
    , chkStaff(*this, {.name = "chkStaff", .tag = "SS", .caption = tr("Show To Staff"), .initial = "Y"})
    , chkPublic(*this,
                {.name = "chkPublic", .tag = "SP", .caption = tr("Show In Public Catalogue"), .initial = "Y"})
    , txtMeaning(*this, {.name = "txtMeaning", .caption = tr("In Words:"), .displayOnly = true}) {
    When([this] { return IsControlField(); })
        .Disable(txtIndicator1, txtIndicator2, txtSubfield)
        .Set(txtIndicator1, links::AnyIndicator)
        .Set(txtIndicator2, links::AnyIndicator)
        .Clear(txtSubfield);
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field != &txtMeaning)
            SayMeaning();
    });
}

Layout BibLinkForm::Draw() {
    return Below(
        {txtCaption, cboDirection,
         Frame("fraFrom", tr("From"), {txtField, Beside({txtIndicator1, txtIndicator2}), txtSubfield}),
         cboIndex, chkStaff, chkPublic, txtMeaning});
}

bool BibLinkForm::IsControlField() const {
    return links::IsControlField(txtField.Draft());
}

std::optional<Form::Finding> BibLinkForm::FormProblem() {
    if (IsControlField() || !txtSubfield.IsBlank())
        return {};
    return Finding{
        &txtSubfield,
        tr("Enter the subfield of field %1 whose text the index is searched for.").arg(txtField.Draft())};
}

void BibLinkForm::SayMeaning() {
    QString words;
    if (links::IsField(txtField.Draft()) && !cboIndex.IsBlank()) {
        QStringList conditions;
        for (const auto& [which, field] :
             {std::pair{tr("first"), &txtIndicator1}, std::pair{tr("second"), &txtIndicator2}})
            if (!field->IsBlank() && field->Draft() != links::AnyIndicator)
                conditions.append(WhichIndicator(which, field->Draft()));
        const QString field = FieldInWords(txtField.Draft());
        QString place =
            txtSubfield.IsBlank() ? field : tr("subfield %1 of %2").arg(txtSubfield.Draft(), field);
        if (!conditions.isEmpty())
            place += tr(", where %1,").arg(conditions.join(tr(" and ")));
        const QString who = chkStaff.IsOn() && chkPublic.IsOn() ? tr("to staff and in the public catalogue")
                            : chkStaff.IsOn()                   ? tr("to staff")
                            : chkPublic.IsOn()                  ? tr("in the public catalogue")
                                                                : tr("nowhere");
        words = tr("%1 is looked for in %2. A record that is found is %3; the link is shown %4.")
                    .arg(place, cboIndex.DisplayText(), DirectionInWords(cboDirection.Draft()), who);
        words[0] = words[0].toUpper();
    }
    if (words != txtMeaning.Draft())
        txtMeaning.SetStored(words);
}

frmSearch_BibLinking::frmSearch_BibLinking(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_BibLinking", tr("Bibliographic Record Linking"), Area::System,
                        parent) {
    AddTable({.subject = tr("Bibliographic Link"),
              .word = "BibLk",
              .plural = "Search Bibliographic Record Linking",
              .listAfterChange = true, // places are the list's own
              .columns = {{.caption = tr("Captions"), .width = 130, .tag = "Cp"},
                          {.caption = tr("Leads To"), .width = 90, .tag = "Dr", .items = Directions()},
                          {.caption = tr("From"), .width = 80, .tag = PlaceColumn},
                          {.caption = tr("Indexes"), .width = 55, .tag = "IC"},
                          {.caption = tr("Staff"), .width = 45, .yesNo = true, .tag = "SS"},
                          {.caption = tr("Public"), .width = 50, .yesNo = true, .tag = "SP"}},
              .sorted = false,
              .saveWords = {{wire::status::DuplicateRecord,
                             {tr("Another link leads from this place to this index already."),
                              tr("Cannot Save Bibliographic Link")}}},
              .order = {.request = "SeqBibLk",
                        .rankTag = "Rk",
                        .idTag = "ID",
                        .helpContext = 50642,
                        .caption = tr("Bibliographic Links"),
                        .button = "cmdOrder",
                        .buttonCaption = tr("Set &Order")}},
             m_form, m_form.Draw());
    cmdTry = MakeButton("cmdTry", tr("Try &It..."));
    AddListButton(cmdTry);
    Finish();
    connect(cmdTry, &QPushButton::clicked, this, &frmSearch_BibLinking::Try);
    ReloadOn({"KSrch", "MKSrch", "CSDef"}, [this] {
        LoadIndexes();
        ReloadLists(); // links follow the codes of indexes
    });
}

void frmSearch_BibLinking::BeforeLoad() {
    LoadIndexes();
}

void frmSearch_BibLinking::LoadIndexes() {
    QList<PickItem> items;
    const auto read = [&](RequestChannel& channel) {
        const QString code = channel.GetField("CC");
        items.append({code, tr("%1 (%2)").arg(channel.GetField("CN"), code)});
    };
    const auto report = [&](qint16 result) {
        App().ReportRequestFailure(result, Current().spec.loadCaption, Current().spec.subject);
    };
    ReadList(App().channel, {.request = "LstComp", .form = ListForm::Continuing, .report = report},
             {{"CC", read}});
    std::sort(items.begin(), items.end(),
              [](const PickItem& one, const PickItem& other) { return one.text < other.text; });
    m_form.cboIndex.SetItems(items);
}

/// Captions repeat: the place tells links apart.
QString frmSearch_BibLinking::DeleteItemText(const Table&, const GridRow& row) const {
    return tr("%1 (%2)").arg(row.cells.value(CaptionCell), row.cells.value(PlaceCell));
}

GridRow frmSearch_BibLinking::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    const auto field = [this](const char* tag) { return App().channel.GetField(tag); };
    row.cells[PlaceCell] = ShownPlace(field("FF"), field("I1") + field("I2"), field("SF"));
    return row;
}

void frmSearch_BibLinking::RefreshOwnControls() {
    cmdTry->setEnabled(GetState() == State::List);
}

/// Shows which links a record has by the definitions as they are stored.
void frmSearch_BibLinking::Try() {
    RequestChannel& channel = App().channel;
    channel.PutField("Look", "Y");
    if (const qint16 result = channel.SendRequest("LstBibLk"); result != wire::status::Ok) {
        App().ReportRequestFailure(result, Current().spec.loadCaption, Current().spec.subject);
        return;
    }
    const QList<GridRow> links = ReadRows(channel, "ID", {}, LinkTags);
    frmSearch_TryRecord dialog(App().prompter,
                               {.title = tr("Try Bibliographic Links"),
                                .helpContext = 50643,
                                .sample = RecordWithLinks,
                                .listName = tr("Links"),
                                .nothing = tr("The record has no links."),
                                .foundWord = tr("Texts looked for: %1"),
                                .columns = {{.caption = tr("Caption"), .width = 130},
                                            {.caption = tr("Leads To"), .width = 100, .items = Directions()},
                                            {.caption = tr("Field"), .width = 70},
                                            {.caption = tr("Looked For")},
                                            {.caption = tr("Index"), .width = 60},
                                            {.caption = tr("Staff"), .width = 45, .yesNo = true},
                                            {.caption = tr("Public"), .width = 50, .yesNo = true}},
                                .find = [&](const marc::Record& record) { return LinksIn(record, links); }},
                               this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmSearch_BibLinking.cpp"
