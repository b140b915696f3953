#include "search/IndexForm.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "search/IndexSentences.h"
#include "search/KeywordFields.h"
#include "wire/Bib1.h"
#include "wire/ItemText.h"

namespace sysadmin {

namespace indexes = wire::indexes;
namespace key = wire::indexes::key;
namespace kind = wire::indexes::kind;
using indexes::Family;

namespace {

constexpr char TextForm = 'A'; // of the RDA formats: subfield a
constexpr char CodeForm = 'B'; // subfield b
constexpr char NotShown = 'N';

QList<PickItem> UseAttributes() {
    QList<PickItem> items{{{}, Form::tr("<unspecified>")}};
    for (const wire::bib1::Value& value : wire::bib1::ValuesOf(wire::bib1::Use))
        items.append({QString::number(value.number), QString("%1 (%2)").arg(value.name).arg(value.number)});
    return items;
}

FieldSpec SortKey(const QString& name, const QString& tag, const QString& caption) {
    return {.name = name,
            .tag = tag,
            .caption = caption,
            .initial = indexes::NoSortKey,
            .options = {{indexes::NoSortKey, Form::tr("none")},
                        {"author", Form::tr("Author")},
                        {"title", Form::tr("Title")},
                        {"pub_date_asc", Form::tr("Date Published(ascending)")},
                        {"pub_date_desc", Form::tr("Date Published(descending)")}}};
}

PickedSpec Displays() {
    PickedSpec spec{.more = {{.caption = Form::tr("Code"), .width = 70}}, .ranked = true};
    return spec;
}

FieldSpec Indicator(const QString& name, const QString& spoken) {
    return {.name = name, .maxLength = indexes::SubfieldsLength + 1, .accessible = spoken};
}

FieldSpec Subfields(const QString& name, const QString& caption) {
    return {.name = name, .caption = caption, .maxLength = indexes::SubfieldsLength};
}

QString IndicatorsProblem() {
    return Form::tr("Indicators are digits and lower-case letters, each once; _ stands for a blank.");
}

QString InitialDefinition(Family family) {
    return key::Kind + '=' + (family == Family::HoldingsKeyword ? kind::Holdings : kind::Bibliographic);
}

/// Gives the item the part's draft, where somebody edited it: what nobody touched stays as others wrote it.
void SetItem(wire::ItemText& items, const QString& itemKey, const ValueField& part) {
    if (!part.IsChanged())
        return;
    const bool isFlag = part.GetKind() == Field::Kind::Flag;
    items.Set(itemKey, isFlag && part.Draft() != u"Y" ? QString() : part.Draft().trimmed());
}

QChar DisplayForm(const QString& formats) {
    for (const QChar letter : formats.left(3))
        if (letter != QChar(NotShown))
            return letter == QChar(CodeForm) ? CodeForm : TextForm;
    return TextForm;
}

bool IsShown(const QString& formats, int place) {
    return place < formats.size() && formats[place] != QChar(NotShown);
}

} // namespace

void CodesField::Choose(const QStringList& codes) {
    QList<GridRow> available = m_all;
    QList<GridRow> selected;
    for (const QString& code : codes) {
        const auto row =
            std::find_if(available.begin(), available.end(), [&](const GridRow& r) { return r.key == code; });
        if (row == available.end()) {
            selected.append({code, {code, code}, {}});
            continue;
        }
        selected.append(*row);
        available.erase(row);
    }
    LoadLists(available, selected);
}

QStringList CodesField::Codes() const {
    QStringList codes;
    for (const GridRow& row : Lists().Selected())
        codes.append(row.key);
    return codes;
}

void CodesField::Load(RequestChannel& channel) {
    if (m_tags.isEmpty())
        return;
    QStringList codes;
    for (const QString& tag : m_tags)
        if (const QString code = channel.GetField(tag); !code.isEmpty())
            codes.append(code);
    Choose(codes);
}

void CodesField::Put(RequestChannel& channel) const {
    for (qsizetype i = 0; i < m_tags.size(); ++i)
        channel.PutField(m_tags[i], Codes().value(i));
}

QList<PutStep> CodesField::Puts() const {
    QList<PutStep> puts;
    for (qsizetype i = 0; i < m_tags.size(); ++i)
        puts.append({[this, i](RequestChannel& channel, const SaveContext&) {
                         channel.PutField(m_tags[i], Codes().value(i));
                     },
                     m_tags[i]});
    return puts;
}

HeadingFields::HeadingFields(Form& form)
    : txtBibField(form,
                  {.name = "txtBibField",
                   .caption = Form::tr("Bib Field:"),
                   .maxLength = 3,
                   .toolTip = Form::tr("Three digits; X at the end stands for any digit, * for all fields")},
                  indexes::IsFieldPattern,
                  Form::tr("A field is three digits, such as 245; 24X and 6XX stand for several, * for all."))
    , txtInclude1(form, Indicator("txtInclude1", Form::tr("First indicator, include")),
                  indexes::AreIndicators, IndicatorsProblem())
    , txtExclude1(form, Indicator("txtExclude1", Form::tr("First indicator, exclude")),
                  indexes::AreIndicators, IndicatorsProblem())
    , txtInclude2(form, Indicator("txtInclude2", Form::tr("Second indicator, include")),
                  indexes::AreIndicators, IndicatorsProblem())
    , txtExclude2(form, Indicator("txtExclude2", Form::tr("Second indicator, exclude")),
                  indexes::AreIndicators, IndicatorsProblem())
    , txtIncludeSubfields(form, Subfields("txtIncludeSubfields", Form::tr("Include Subfields:")),
                          indexes::AreSubfields, SubfieldsProblem())
    , txtExcludeSubfields(form, Subfields("txtExcludeSubfields", Form::tr("Exclude Subfields:")),
                          indexes::AreSubfields, SubfieldsProblem())
    , optBibDefinitions(
          form, {.name = "optBibDefinitions",
                 .caption = Form::tr("Occurrence:"),
                 .initial = "A",
                 .options = {{"A", Form::tr("All")}, {"F", Form::tr("First")}, {"L", Form::tr("Last")}}})
    , txtTextLength(form, {.name = "txtTextLength",
                           .caption = Form::tr("Text Length:"),
                           .unit = Form::tr("characters"),
                           .most = indexes::MostOffset})
    , txtFixedOffset(
          form,
          {.name = "txtFixedOffset", .caption = Form::tr("Fixed Field Offset:"), .most = indexes::MostOffset})
    , txtFixedLength(
          form,
          {.name = "txtFixedLength", .caption = Form::tr("Fixed Field Length:"), .most = indexes::MostOffset})
    , chkCallNumberSearch(form, {.name = "chkCallNumberSearch", .caption = Form::tr("Call Number Search")}) {}

Layout HeadingFields::Draw() {
    return Below({txtBibField,
                  Frame("fraIndicators", Form::tr("Indicators:"),
                        {Block({Form::tr("Include"), Form::tr("Exclude")},
                               {BlockRow(Form::tr("First"), {txtInclude1, txtExclude1}),
                                BlockRow(Form::tr("Second"), {txtInclude2, txtExclude2})})}),
                  Beside({txtIncludeSubfields, txtExcludeSubfields}), optBibDefinitions, txtTextLength,
                  Beside({txtFixedOffset, txtFixedLength}), chkCallNumberSearch});
}

IndexForm::IndexForm(Family theFamily)
    : family(theFamily)
    , txtCode(*this,
              {.name = "txtCode",
               .tag = "Cd",
               .caption = tr("Code:"),
               .maxLength = indexes::CodeLength,
               .required = true,
               .column = {tr("Codes"), 110}},
              indexes::IsCode, tr("A code has no blanks and none of the characters = and ~."))
    , txtName(*this, {.name = "txtName",
                      .tag = "Nm",
                      .caption = tr("Name:"),
                      .maxLength = indexes::NameLength,
                      .required = true,
                      .column = {tr("Names")}})
    , cboUse(
          *this,
          {.name = "cboUse", .tag = "Z", .caption = tr("Z39.50 Use Attribute:"), .options = UseAttributes()})
    , chkStaffSuppress(*this, {.name = "chkStaffSuppress",
                               .tag = "SS",
                               .caption = tr("Staff Suppress"),
                               .toolTip = tr("The index is not offered where staff search")})
    , definition(*this, "Ix", InitialDefinition(theFamily))
    , vsfFields(family == Family::Keyword || family == Family::HoldingsKeyword
                    ? std::make_unique<RowsField>(*this,
                                                  FieldSpec{.name = "vsfFields", .accessible = tr("Fields")},
                                                  KeywordColumns(), KeywordRows())
                    : nullptr)
    , components(family == Family::Composite
                     ? std::make_unique<CodesField>(*this, FieldSpec{.name = "fraComponents"},
                                                    PickedNames{.availableGrid = "vsfAvailableComponents",
                                                                .availableCaption = tr("Available Indexes"),
                                                                .selectedGrid = "vsfSelectedComponents",
                                                                .selectedCaption = tr("Selected Indexes"),
                                                                .select = "cmdSelectComponent",
                                                                .selectAll = "cmdSelectAllComponents",
                                                                .discard = "cmdDiscardComponent",
                                                                .discardAll = "cmdDiscardAllComponents"},
                                                    Displays())
                     : nullptr)
    , heading(family == Family::Headings ? std::make_unique<HeadingFields>(*this) : nullptr)
    , chkShowIndexColumn(
          *this, {.name = "chkShowIndexColumn", .caption = tr("Show Index Column With Search Results")})
    , txtMeaning(*this, {.name = "txtMeaning", .caption = tr("In Words:"), .displayOnly = true})
    , displays(*this, {.name = "fraBibText", .tag = "DF1"},
               {.availableGrid = "vsfAvailableBibText",
                .availableCaption = tr("Available"),
                .selectedGrid = "vsfSelectedBibText",
                .selectedCaption = tr("Selected")},
               Displays(), {"DF1", "DF2", "DF3"})
    , cboPrimarySort(*this, SortKey("cboPrimarySort", "SF1", tr("Primary Sort:")))
    , cboSecondSort(*this, SortKey("cboSecondSort", "SF2", tr("Secondary Sort:")))
    , cboTeritarySort(*this, SortKey("cboTeritarySort", "SF3", tr("Tertiary Sort:")))
    , rdaFormats(*this, "RDAF", indexes::NoRdaFormats)
    , chkRDAformats(*this, {.name = "chkRDAformats", .caption = tr("Add RDA Formats to \"title\" statement")})
    , optRDADisplay(*this,
                    {.name = "optRDADisplay",
                     .caption = tr("Display:"),
                     .initial = QString(TextForm),
                     .enabledBy = "chkRDAformats",
                     .options = {{QString(TextForm), tr("text $a")}, {QString(CodeForm), tr("code $b")}}})
    , chkRDAField_0(*this,
                    {.name = "chkRDAField_0", .caption = tr("Show Media"), .enabledBy = "chkRDAformats"})
    , chkRDAField_1(*this,
                    {.name = "chkRDAField_1", .caption = tr("Show Carrier"), .enabledBy = "chkRDAformats"})
    , chkRDAField_2(*this,
                    {.name = "chkRDAField_2", .caption = tr("Show Content"), .enabledBy = "chkRDAformats"})
    , vouchers(*this, "PW") {
    displays.Behaviour().veto = [this](const QList<GridRow>& rows, bool toSelected) {
        return toSelected && displays.Lists().Selected().size() + rows.size() > indexes::MostDisplays
                   ? tr("A result list shows %1 display definitions at the most.").arg(indexes::MostDisplays)
                   : QString();
    };
    BindDefinition();
    BindRdaFormats();
    When([this] { return indexes::IsSystemCode(family, txtCode.Stored()); }).Disable(txtCode);
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field != &txtMeaning)
            SayMeaning();
    });
}

/// The text and the fields that make it up.
void IndexForm::BindDefinition() {
    definition.parts = {&chkShowIndexColumn};
    if (components)
        definition.parts << components.get();
    // Item by item, with the field that edits it.
    QList<std::pair<QString, ValueField*>> items;
    if (heading) {
        items = {{key::IncludeSubfields, &heading->txtIncludeSubfields},
                 {key::ExcludeSubfields, &heading->txtExcludeSubfields},
                 {key::ExcludeFirstIndicator, &heading->txtExclude1},
                 {key::IncludeFirstIndicator, &heading->txtInclude1},
                 {key::ExcludeSecondIndicator, &heading->txtExclude2},
                 {key::IncludeSecondIndicator, &heading->txtInclude2},
                 {key::CallNumber, &heading->chkCallNumberSearch},
                 {key::FixedOffset, &heading->txtFixedOffset},
                 {key::FixedLength, &heading->txtFixedLength},
                 {key::BibField, &heading->txtBibField},
                 {key::TextLength, &heading->txtTextLength}};
        definition.parts << &heading->optBibDefinitions;
    }
    for (const auto& [itemKey, part] : items)
        definition.parts << part;
    items.append({key::ShowsColumn, &chkShowIndexColumn});

    definition.split = [this, items](const QString& text) {
        const wire::ItemText read(text);
        for (const auto& [itemKey, part] : items)
            part->SetStored(part->GetKind() == Field::Kind::Flag && !read.Has(itemKey) ? QString("N")
                                                                                       : read.Value(itemKey));
        if (components)
            components->Choose(indexes::ComponentsOf(text));
        if (heading)
            heading->optBibDefinitions.SetStored(read.Value(key::FirstOccurrence) == u"Y"  ? "F"
                                                 : read.Value(key::LastOccurrence) == u"Y" ? "L"
                                                                                           : "A");
    };
    definition.join = [this, items](const QString& former) {
        wire::ItemText text(former);
        if (heading && heading->optBibDefinitions.IsChanged()) {
            const QString chosen = heading->optBibDefinitions.Draft();
            for (const auto& [itemKey, letter] :
                 {std::pair{key::AllOccurrences, "A"}, std::pair{key::FirstOccurrence, "F"},
                  std::pair{key::LastOccurrence, "L"}})
                text.Set(itemKey, chosen == QLatin1String(letter) ? "Y" : QString());
        }
        if (components && components->IsChanged()) {
            const QStringList codes = components->Codes();
            text.Set(key::Kind, codes.isEmpty() ? kind::Bibliographic : kind::Composite);
            text.Set(key::Components, codes.join(indexes::ComponentSeparator));
        }
        for (const auto& [itemKey, part] : items)
            SetItem(text, itemKey, *part);
        return text.Text();
    };
}

/// A letter each for media, carrier and content: N not shown, A as text, B as code.
void IndexForm::BindRdaFormats() {
    const QList<FlagField*> shown{&chkRDAField_0, &chkRDAField_1, &chkRDAField_2};
    rdaFormats.parts = {&chkRDAformats, &optRDADisplay, &chkRDAField_0, &chkRDAField_1, &chkRDAField_2};
    rdaFormats.split = [this, shown](const QString& text) {
        bool any = false;
        for (int i = 0; i < shown.size(); ++i) {
            shown[i]->SetStored(IsShown(text, i) ? "Y" : "N");
            any = any || IsShown(text, i);
        }
        chkRDAformats.SetStored(any ? "Y" : "N");
        optRDADisplay.SetStored(DisplayForm(text));
    };
    rdaFormats.join = [this, shown](const QString& former) {
        QString text;
        for (int i = 0; i < shown.size(); ++i) {
            const bool isShown = chkRDAformats.IsOn() && shown[i]->IsOn();
            const bool stays = IsShown(former, i) && optRDADisplay.Draft() == QString(DisplayForm(former));
            text += !isShown ? QString(NotShown) : stays ? QString(former[i]) : optRDADisplay.Draft();
        }
        return text + former.mid(3);
    };
}

void IndexForm::SayMeaning() {
    QHash<QString, QString> names;
    if (components)
        for (const GridRow& row : components->Offered())
            names.insert(row.key, row.cells.value(0));
    QStringList sentences{
        IndexInWords(family, definition.Text(), vsfFields ? vsfFields->Rows() : QList<GridRow>(), names)};
    if (!txtCode.Stored().isEmpty()) // nothing refers to a new index
        sentences += uses.InWords(definition.Text());
    const QString words = sentences.join('\n');
    if (words != txtMeaning.Draft())
        txtMeaning.SetStored(words);
}

std::optional<Form::Finding> IndexForm::FormProblem() {
    return vouchers.Problem();
}

QList<PutStep> IndexForm::Puts() const {
    QList<PutStep> puts{PutValue(txtCode), PutValue(txtName), PutValue(cboUse)};
    puts += displays.Puts();
    puts += {PutValue(cboPrimarySort), PutValue(cboSecondSort),    PutValue(cboTeritarySort),
             PutValue(rdaFormats),     PutValue(chkStaffSuppress), PutValue(definition)};
    if (vsfFields)
        puts += PutValue(*vsfFields);
    for (const Field* field : vouchers.All())
        puts += PutValue(*field);
    return puts << PutOriginalKey("FC");
}

Layout IndexForm::DrawDefinition() {
    if (heading)
        return heading->Draw();
    if (components)
        return *components;
    return *vsfFields;
}

Layout IndexForm::Draw() {
    return Tabs(
        "tabIndex",
        {Page(tr("Inde&x"), {txtCode, txtName, cboUse, chkStaffSuppress}),
         Page(tr("Defini&tions"), {DrawDefinition(), chkShowIndexColumn, txtMeaning}),
         Page(tr("Search &Results"),
              {displays, Frame("fraSort", tr("Sort"), {cboPrimarySort, cboSecondSort, cboTeritarySort}),
               Frame("fraRDA", tr("RDA"),
                     {chkRDAformats, optRDADisplay, Beside({chkRDAField_0, chkRDAField_1, chkRDAField_2})})}),
         Page(VoucherFields::PageCaption(), vouchers.Draw())});
}

} // namespace sysadmin
