#include "framework/ManyFields.h"

#include "framework/Declaration.h"

#include <algorithm>

namespace sysadmin {

namespace {

using Kind = Field::Kind;

bool IsPlain(const Field& field, const TableSpec& spec) {
    static const QList<Kind> plain{Kind::Text,   Kind::MultiLine, Kind::Flag, Kind::Choice, Kind::Letter,
                                   Kind::Number, Kind::Money,     Kind::Date, Kind::Time,   Kind::Interval};
    const bool isLater = std::any_of(spec.steps.begin(), spec.steps.end(), [&](const SaveStep& step) {
        return std::find(step.fields.begin(), step.fields.end(), &field) != step.fields.end();
    });
    return plain.contains(field.GetKind()) && dynamic_cast<const ValueField*>(&field) && !isLater &&
           !field.Spec().displayOnly && !field.Name().isEmpty() && !field.Tag().isEmpty() &&
           !field.PlainCaption().isEmpty();
}

bool IsOwn(const ValueField& field, const TableSpec& spec) {
    const QStringList tags{spec.recordTag, spec.getKeyTag, spec.originalTag,
                           spec.nameTag,   spec.matchTag,  spec.pickTag};
    const bool names =
        field.Spec().required && (field.Name().endsWith("Code") || field.Name().endsWith("Name"));
    return tags.contains(field.Tag()) || names || &field == spec.defaultFlag;
}

QString Plain(const QString& text) {
    return QString(text).remove('&').trimmed();
}

/// The entry that the text names: by its text, or by what it travels as where that is a code.
const PickItem* EntryOf(const QList<PickItem>& items, const QString& text, bool byCode) {
    for (const PickItem& item : items)
        if (Plain(item.text).compare(text, Qt::CaseInsensitive) == 0)
            return &item;
    for (const PickItem& item : items)
        if (byCode && item.id.trimmed().compare(text, Qt::CaseInsensitive) == 0)
            return &item;
    return nullptr;
}

QString NoEntry(const Field& field, const QString& text) {
    return Form::tr("\"%1\" has no entry \"%2\".").arg(field.PlainCaption(), text);
}

QString EnterEntry(ValueField& field, const QList<PickItem>& items, const QString& text, bool byCode) {
    const auto count = std::count_if(items.begin(), items.end(), [&](const PickItem& item) {
        return Plain(item.text).compare(text, Qt::CaseInsensitive) == 0;
    });
    if (count > 1)
        return Form::tr("\"%1\" has several entries \"%2\".").arg(field.PlainCaption(), text);
    if (const PickItem* item = EntryOf(items, text, byCode))
        field.SetDraft(item->id);
    else if (text.isEmpty())
        field.SetDraft({});
    else
        return NoEntry(field, text);
    return {};
}

/// A number and its unit: "3 weeks", "3 W", "3W".
QString EnterInterval(IntervalField& field, const QString& text) {
    qsizetype digits = 0;
    while (digits < text.size() && text[digits].isDigit())
        ++digits;
    const QString number = text.left(digits);
    QString unit = text.mid(digits).trimmed();
    if (text.isEmpty()) {
        if (!field.IsBlank())
            field.SetParts({}, field.Unit());
        return {};
    }
    const auto singular = [](QString word) {
        while (word.size() > 1 && word.endsWith('s', Qt::CaseInsensitive))
            word.chop(1);
        return Plain(word).toLower();
    };
    if (unit.isEmpty() && field.Units().size() <= 1)
        unit = field.Unit();
    for (const PickItem& each : field.Units())
        if (!number.isEmpty() && (each.id.compare(unit, Qt::CaseInsensitive) == 0 ||
                                  (!unit.isEmpty() && singular(each.text) == singular(unit)))) {
            field.ChangeUnit(each.id);
            field.SetParts(number, each.id);
            return {};
        }
    QStringList units;
    for (const PickItem& each : field.Units())
        units.append(Plain(each.text).toLower());
    return Form::tr("\"%1\" must be a number and a unit (%2).").arg(field.PlainCaption(), units.join(", "));
}

std::unique_ptr<ValueField> MakeField(Form& form, const ValueField& of) {
    FieldSpec spec = of.Spec();
    spec.caption =
        of.Caption().isEmpty() && !spec.accessible.isEmpty() ? spec.accessible + ':' : of.Caption();
    spec.unit = of.Unit();
    spec.initial.clear();
    spec.enabledBy.clear();
    spec.source = {};
    switch (of.GetKind()) {
    case Kind::MultiLine:
        return std::make_unique<MultiLineField>(form, spec);
    case Kind::Flag:
        return std::make_unique<FlagField>(form, spec);
    case Kind::Choice: {
        auto choice = std::make_unique<ChoiceField>(form, spec);
        choice->SetItems(static_cast<const ChoiceField&>(of).Items());
        return choice;
    }
    case Kind::Letter:
        return std::make_unique<LetterField>(form, spec);
    case Kind::Number:
        return std::make_unique<NumberField>(form, spec);
    case Kind::Money: {
        auto money = std::make_unique<MoneyField>(form, spec);
        money->SetDecimals(static_cast<const MoneyField&>(of).Decimals());
        return money;
    }
    case Kind::Date:
        return std::make_unique<DateField>(form, spec);
    case Kind::Time:
        return std::make_unique<TimeField>(form, spec);
    case Kind::Interval:
        return std::make_unique<IntervalField>(form, spec);
    default:
        return std::make_unique<TextField>(form, spec);
    }
}

} // namespace

QList<ValueField*> PlainFields(const Form& form, const TableSpec& spec) {
    QList<ValueField*> fields;
    for (Field* field : form.Fields())
        if (IsPlain(*field, spec))
            fields.append(static_cast<ValueField*>(field));
    return fields;
}

QList<ValueField*> CommonFields(const Form& form, const TableSpec& spec) {
    QList<ValueField*> fields = PlainFields(form, spec);
    fields.removeIf([&](const ValueField* field) { return IsOwn(*field, spec); });
    return fields;
}

int KeyWorth(const TableDeclaration& table, int column) {
    const TableSpec& spec = table.spec;
    const QString tag = spec.columns[column].tag;
    if (const Field* field = table.form->FindByColumn(tag)) {
        const bool isRequired = field->Spec().required;
        if (tag == spec.recordTag || (isRequired && field->Name().endsWith("Code")))
            return 4;
        if (tag == spec.nameTag || (isRequired && field->Name().endsWith("Name")))
            return 3;
        return field->Spec().displayOnly ? 1 : 0;
    }
    if (!spec.order.request.isEmpty() || spec.columns[column].hidden || spec.columns[column].yesNo)
        return 0; // ranked rules have no names
    for (int other = 0; other < spec.columns.size(); ++other)
        if (table.form->FindByColumn(spec.columns[other].tag) && KeyWorth(table, other) > 0)
            return 0;
    return column == 0 ? 2 : 1; // the code stands first
}

QStringList FieldTitles(const QList<const Field*>& fields, const Layout& layout) {
    QHash<const Field*, QString> around;
    const std::function<void(const Layout&, const QString&)> walk = [&](const Layout& part,
                                                                        const QString& title) {
        if (part.field && !around.contains(part.field))
            around.insert(part.field, title);
        const bool names = part.kind == Layout::Kind::Frame || part.kind == Layout::Kind::Page;
        for (const Layout& child : part.children)
            walk(child, names && !part.text.isEmpty() ? Plain(part.text) : title);
    };
    walk(layout, {});
    QStringList captions;
    for (const Field* field : fields)
        captions.append(field->PlainCaption());
    QStringList titles = captions;
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (const QString title = around.value(fields[i]);
            captions.count(captions[i]) > 1 && !title.isEmpty())
            titles[i] = title + ": " + captions[i];
    const QStringList framed = titles;
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (framed.count(framed[i]) > 1)
            titles[i] += " (" + fields[i]->Tag() + ')';
    return titles;
}

QStringList FileCaptions(const QList<const Field*>& fields) {
    QStringList captions;
    for (const Field* field : fields)
        captions.append(field->PlainCaption().isEmpty() ? field->Name() : field->PlainCaption());
    QStringList unique = captions;
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (captions.count(captions[i]) > 1)
            unique[i] += " (" + (fields[i]->Tag().isEmpty() ? fields[i]->Name() : fields[i]->Tag()) + ')';
    return unique;
}

QString FileText(const Field& field) {
    if (const auto* date = dynamic_cast<const DateField*>(&field); date && date->Date().isValid())
        return date->Date().toString(Qt::ISODate);
    return field.Words().join("; ");
}

QString EnterText(ValueField& field, const QString& text) {
    if (text == FileText(field) || text == field.Draft())
        return {};
    const QString trimmed = text.trimmed();
    if (dynamic_cast<FlagField*>(&field)) {
        const bool isOn = QStringList{"y", "yes", "true", "1", "x"}.contains(trimmed.toLower());
        const bool isOff = QStringList{"n", "no", "false", "0", ""}.contains(trimmed.toLower());
        if (!isOn && !isOff)
            return Form::tr("\"%1\" must be Yes or No.").arg(field.PlainCaption());
        field.SetDraft(isOn ? "Y" : "N");
    } else if (auto* choice = dynamic_cast<ChoiceField*>(&field)) {
        // The ids of records that others made mean nothing to people; those of fixed entries are codes.
        bool isNumber = false;
        trimmed.toLongLong(&isNumber);
        return EnterEntry(field, choice->Items(), trimmed, !isNumber || !field.Spec().options.isEmpty());
    } else if (field.GetKind() == Kind::Letter) {
        return EnterEntry(field, field.Spec().options, trimmed, true);
    } else if (auto* interval = dynamic_cast<IntervalField*>(&field)) {
        return EnterInterval(*interval, trimmed);
    } else if (auto* date = dynamic_cast<DateField*>(&field)) {
        if (QDate::fromString(trimmed, date->Format()).isValid())
            date->SetDraft(trimmed);
        else
            date->TypeIn(trimmed);
    } else if (auto* time = dynamic_cast<TimeField*>(&field)) {
        time->TypeIn(trimmed);
    } else if (field.GetKind() == Kind::MultiLine) {
        field.SetDraft(QString(text).replace("\r\n", "\n"));
    } else if (trimmed.contains('\n') || trimmed.contains('\r')) {
        return Form::tr("\"%1\" takes one line.").arg(field.PlainCaption());
    } else {
        field.SetDraft(trimmed);
    }
    return {};
}

QString EnterDrafts(QList<NewValue> values) {
    const QList<NewValue> all = values;
    for (bool goesOn = true; goesOn;) {
        goesOn = false;
        for (const NewValue& value : QList<NewValue>(values)) {
            ValueField& field = *value.field;
            if (field.Draft() != value.draft && !field.IsUsable())
                continue; // maybe once another one is entered
            if (const auto* choice = dynamic_cast<const ChoiceField*>(&field);
                choice && field.Draft() != value.draft && !value.draft.isEmpty() &&
                std::none_of(choice->Items().begin(), choice->Items().end(),
                             [&](const PickItem& item) { return item.id == value.draft; }))
                continue;
            field.SetDraft(value.draft);
            field.Leave();
            values.removeIf([&](const NewValue& each) { return each.field == &field; });
            goesOn = true;
        }
    }
    for (const NewValue& value : values)
        return value.field->IsUsable()
                   ? Form::tr("\"%1\" does not have this entry here.").arg(value.field->PlainCaption())
                   : Form::tr("\"%1\" cannot be used in this record.").arg(value.field->PlainCaption());
    for (const NewValue& value : all) {
        // What is left is tidied: "007" becomes 7.
        const QString entered = value.field->Draft();
        const bool isTidy = dynamic_cast<TextField*>(value.field) || value.field->GetKind() == Kind::Number ||
                            value.field->GetKind() == Kind::Money || value.field->GetKind() == Kind::Interval;
        if (entered != value.draft && !isTidy)
            return Form::tr("\"%1\" does not go together with another value.")
                .arg(value.field->PlainCaption());
    }
    return {};
}

CommonForm::CommonForm(const QList<ValueField*>& fields)
    : m_of(fields) {
    for (const ValueField* field : fields)
        m_owned.push_back(MakeField(*this, *field));
}

ValueField* CommonForm::For(const Field& field) const {
    for (qsizetype i = 0; i < m_of.size(); ++i)
        if (m_of[i] == &field)
            return m_owned[size_t(i)].get();
    return nullptr;
}

Layout CommonForm::LayoutFrom(const Layout& layout) const {
    QList<const Field*> placed;
    Layout whole = Below({});
    if (const std::optional<Layout> part = Part(layout, placed))
        whole.children = part->kind == Layout::Kind::Below ? part->children : QList<Layout>{*part};
    for (const std::unique_ptr<ValueField>& field : m_owned)
        if (!placed.contains(field.get()))
            whole.children.append(*field);
    return whole;
}

// Frames and pages stay, as they say what their fields are about; what is empty now goes.
std::optional<Layout> CommonForm::Part(const Layout& layout, QList<const Field*>& placed) const {
    if (layout.kind == Layout::Kind::Field) {
        ValueField* field = layout.field ? For(*layout.field) : nullptr;
        if (!field || placed.contains(field))
            return std::nullopt;
        placed.append(field);
        return Layout(*field);
    }
    Layout part = layout;
    part.children.clear();
    for (const Layout& child : layout.children)
        if (const std::optional<Layout> kept = Part(child, placed)) {
            if (kept->kind == Layout::Kind::Below)
                part.children += kept->children;
            else
                part.children.append(*kept);
        }
    if (part.children.isEmpty())
        return std::nullopt;
    // A table of fields has no room for the boxes, and one page needs no tab.
    if (layout.kind == Layout::Kind::Tabs && part.children.size() == 1)
        return Below(part.children.first().children);
    const bool isBroken = layout.kind == Layout::Kind::Block || layout.kind == Layout::Kind::Beside;
    return isBroken ? Below(part.children) : part;
}

} // namespace sysadmin
