#include "exact/DeclarationDriver.h"

#include "framework/Declaration.h"
#include "framework/DetailedRows.h"
#include "framework/forms/ListFields.h"

namespace sysadmin::exact {

namespace {

QString Named(const QString& name, const QString& value) {
    return value.isEmpty() ? QString() : " " + name + "=" + value;
}

QString RangeOf(const QString& kind, qint64 least, qint64 most) {
    return kind == u"number" || kind == u"interval" ? QString(" range=%1..%2").arg(least).arg(most)
                                                    : QString();
}

QString ItemsOf(const QList<PickItem>& items) {
    QString words;
    for (const PickItem& item : items)
        words += " entry=" + item.id + ":" + item.text;
    return words;
}

/// Where the entries of a choice stand in the reply.
QString TagsOf(const Source& source) {
    return source.request.isEmpty() ? QString() : " tags=" + source.id + "/" + source.text;
}

QString OfField(const Field& field) {
    QString line = field.kind + " " + field.control + " " + field.tag;
    if (field.kind == u"picked")
        return line + QStringList{field.caption,  field.available,      field.selectedCaption,
                                  field.selected, field.tags.join('/'), field.buttons.join(' ')}
                          .join('|');
    if (field.kind == u"grid")
        return line + "|" + field.parts.join('|');
    line += " " + field.caption + RangeOf(field.kind, field.least, field.most) +
            (field.required ? " required" : "") + (field.shown ? " shown" : "") +
            Named("initial", field.initial) + Named("unit", field.unit) + Named("by", field.by) +
            Named("suffix", field.suffix) + Named("tip", field.tip) + ItemsOf(field.entries) +
            Named("from", field.source.request) + Named("pick", field.source.pickList) + TagsOf(field.source);
    if (field.max > 0)
        line += " max=" + QString::number(field.max);
    return field.kind == u"date" ? line + " format=" + field.format : line;
}

QString KindOf(const sysadmin::Field& field) {
    using Kind = sysadmin::Field::Kind;
    static const QMap<Kind, QString> kinds{
        {Kind::Text, "text"},     {Kind::MultiLine, "lines"}, {Kind::Password, "password"},
        {Kind::Flag, "flag"},     {Kind::Choice, "choice"},   {Kind::Letter, "letter"},
        {Kind::Number, "number"}, {Kind::Date, "date"},       {Kind::Interval, "interval"},
        {Kind::Rows, "grid"},     {Kind::Picked, "picked"},   {Kind::Checked, "other"}};
    return kinds.value(field.GetKind(), "other");
}

QString OfField(const sysadmin::Field& field);

void AddButton(const QString& role, const RowButton& button, QStringList& parts) {
    if (!button.name.isEmpty())
        parts.append(role + "=" + button.name + ":" + button.caption);
}

void AddDialog(const RowAsker& asker, QStringList& parts) {
    if (!asker)
        return;
    const FormDialogSpec& dialog = asker.dialog;
    parts.append(QString("dialog=%1:%2:%3:%4:%5")
                     .arg(dialog.name, dialog.title)
                     .arg(dialog.helpContext)
                     .arg(dialog.okName, dialog.cancelName));
    for (const QString& caption : asker.captions)
        parts.append("caption=" + caption);
    if (asker.form)
        for (const sysadmin::Field* field : asker.form->Fields())
            parts.append("field=" + OfField(*field));
}

/// The fields beside a list in which its selected row is edited.
void AddBeside(const Form& form, QStringList& parts) {
    for (const sysadmin::Field* field : form.Fields())
        parts.append("beside=" + OfField(*field));
}

QStringList PartsOf(const RowsField& rows) {
    const RowsSpec& spec = rows.Behaviour();
    QStringList parts;
    for (const GridColumn& column : rows.Columns())
        parts.append("column=" + column.tag + ":" + column.caption);
    for (const RowTag& put : spec.puts)
        parts.append("put=" + put.tag);
    AddButton("add", spec.add, parts);
    AddButton("modify", spec.modify, parts);
    AddButton("remove", spec.remove, parts);
    AddDialog(spec.ask, parts);
    if (const auto* detailed = dynamic_cast<const DetailedRowsField*>(&rows))
        AddBeside(detailed->Details(), parts);
    return parts;
}

QString OfField(const sysadmin::Field& declared) {
    const FieldSpec& spec = declared.Spec();
    Field field;
    field.kind = KindOf(declared);
    field.control = spec.name;
    field.tag = spec.tag.isEmpty() ? QString("-") : spec.tag;
    field.caption = spec.caption;
    if (const auto* rows = dynamic_cast<const RowsField*>(&declared)) {
        field.tag = rows->Behaviour().marker.isEmpty() ? QString("-") : rows->Behaviour().marker;
        field.parts = PartsOf(*rows);
    }
    if (const auto* picked = dynamic_cast<const PickedField*>(&declared)) {
        const PickedNames& names = picked->Names();
        const PickedTags& tags = picked->Behaviour().tags;
        field.tag.clear();
        field.caption = names.availableCaption;
        field.available = names.availableGrid;
        field.selected = names.selectedGrid;
        field.selectedCaption = names.selectedCaption;
        field.tags = {tags.availableId, tags.availableName, tags.selectedId, tags.selectedName};
        field.buttons = {names.select, names.selectAll, names.discard, names.discardAll};
        AddButton("modify", picked->Behaviour().modify, field.buttons);
        AddDialog(picked->Behaviour().ask, field.buttons);
        if (picked->Behaviour().settings) {
            for (const GridColumn& column : picked->Behaviour().availableMore.value_or(QList<GridColumn>()))
                field.buttons.append("free=" + column.tag + ":" + column.caption);
            for (const GridColumn& column : picked->Behaviour().more)
                field.buttons.append("column=" + column.tag + ":" + column.caption);
            AddBeside(*picked->Behaviour().settings, field.buttons);
        }
    }
    field.least = spec.least;
    field.most = spec.most;
    field.required = spec.required;
    field.shown = spec.displayOnly;
    field.initial = spec.initial;
    field.unit = spec.unit;
    field.by = spec.enabledBy;
    field.suffix = spec.suffix;
    field.tip = spec.toolTip;
    field.entries = spec.options;
    field.source.request = spec.source.request;
    field.source.id = spec.source.idTag;
    field.source.text = spec.source.textTag;
    field.source.pickList = spec.source.pickList;
    field.max = spec.maxLength;
    if (!spec.format.isEmpty())
        field.format = spec.format;
    return OfField(field);
}

QString OfPuts(const QList<Put>& puts) {
    QString line;
    for (const Put& put : puts)
        line += " " + put.tag +
                (put.kind == Put::Kind::Constant  ? "=" + put.other
                 : put.kind == Put::Kind::Changed ? "~" + put.other
                 : put.kind == Put::Kind::Also    ? "^" + put.other
                 : put.kind == Put::Kind::Key     ? QString("=@")
                 : put.kind == Put::Kind::WhenOn  ? ">" + put.other
                                                  : QString());
    return line;
}

QString OfSteps(const QList<PutStep>& steps, bool adding) {
    using Kind = PutStep::Kind;
    QList<Put> puts;
    for (const PutStep& step : steps) {
        if (adding && step.when == PutStep::When::Update)
            continue;
        const QString tag = step.Tag().isEmpty() ? QString("*") : step.Tag();
        puts.append(step.kind == Kind::Constant      ? Put{Put::Kind::Constant, tag, step.value}
                    : step.kind == Kind::Changed     ? Put{Put::Kind::Changed, tag, step.field->Tag()}
                    : step.kind == Kind::Draft       ? Put{Put::Kind::Also, tag, step.field->Tag()}
                    : step.kind == Kind::OriginalKey ? Put{Put::Kind::Key, tag, {}}
                    : step.kind == Kind::WhenOn      ? Put{Put::Kind::WhenOn, tag, step.dependent->Tag()}
                                                     : Put{Put::Kind::Value, tag, {}});
    }
    return OfPuts(puts);
}

/// What stands in the form, kind by kind in its order.
struct Drawn {
    QStringList boxes, pages, notes, fields;

    void Take(const Layout& layout) {
        if (layout.kind == Layout::Kind::Frame)
            boxes.append("box " + layout.name + " " + layout.text);
        if (layout.kind == Layout::Kind::Page)
            pages.append("page " + layout.text);
        if (layout.kind == Layout::Kind::Note && !layout.text.isEmpty())
            notes.append("note " + layout.text);
        if (layout.kind == Layout::Kind::Field)
            fields.append(layout.field ? layout.field->Name() : layout.name);
        for (const Layout& child : layout.children)
            Take(child);
    }
    QStringList Lines() const { return boxes + pages + notes + QStringList{fields.join(' ')}; }
};

QString OfList(const QString& grid, const QString& key, const QString& getKey, bool strict, bool sorted) {
    return QStringList{grid, key, getKey, strict ? "strict" : "continuing", sorted ? "sorted" : "unsorted"}
        .join(' ');
}

QString OfColumn(const QString& tag, const QString& caption, bool hidden, const QString& marks) {
    return "column " + tag + " " + caption + (hidden ? " hidden" : "") + (marks.isEmpty() ? "" : " ") + marks;
}

std::map<qint16, OwnWords> Sorted(const QHash<qint16, OwnWords>& words) {
    std::map<qint16, OwnWords> sorted;
    for (auto one = words.begin(); one != words.end(); ++one)
        sorted[one.key()] = *one;
    return sorted;
}

QStringList LinesOf(const Screen& screen) {
    QStringList lines{screen.name, screen.caption};
    for (const Table& table : screen.tables) {
        lines.append(table.subject);
        lines.append((table.frame == u"-" ? QString() : table.frame) + "|" + table.notice);
        lines.append(QStringList{table.list, table.record, table.get, table.add, table.update, table.remove,
                                 table.available.isEmpty() ? QString() : table.available.first().request,
                                 table.single ? table.existsAs.value(0) : table.finds}
                         .join(' '));
        lines.append(QStringList{table.loadCaption, table.editCaption, table.saveCaption, table.deleteCaption,
                                 table.loadFailure, table.saveFailure}
                         .join('|'));
        lines.append(table.unable ? "unable" : "");
        if (!table.single)
            lines.append(OfList(table.grid, table.record, table.getKey, table.strict, table.sorted));
        for (const Column& column : table.columns)
            lines.append(OfColumn(column.tag, column.caption, column.hidden, column.marks));
        for (const Field& field : table.fields)
            lines.append(OfField(field));
        lines.append(OfPuts(table.adds));
        lines.append(OfPuts(table.updates));
        Drawn drawn;
        for (const auto& [name, caption] : table.frames)
            drawn.boxes.append("box " + name + " " + caption);
        for (const QString& page : table.pages)
            drawn.pages.append("page " + page);
        for (const QString& note : table.notes)
            drawn.notes.append("note " + note);
        for (const Field& field : table.fields)
            if (!field.control.isEmpty())
                drawn.fields.append(field.control);
        lines += drawn.Lines();
        for (const Words& words : table.words)
            lines.append(QString("%1 %2 %3|%4")
                             .arg(words.onDelete ? "delete" : "save")
                             .arg(words.status)
                             .arg(words.text, words.title));
    }
    return lines;
}

void FormLines(const Form& form, const Layout& layout, const QList<PutStep>& puts, bool adds,
               QStringList& lines) {
    for (const sysadmin::Field* field : form.Fields())
        lines.append(OfField(*field));
    lines.append(adds ? OfSteps(puts, true) : QString());
    lines.append(OfSteps(puts, false));
    Drawn drawn;
    drawn.Take(layout);
    lines += drawn.Lines();
}

QStringList LinesOf(const ScreenDeclaration& screen) {
    QStringList lines{screen.name, screen.caption};
    for (const TableDeclaration& table : screen.tables) {
        const TableSpec& spec = table.spec;
        lines.append(spec.subject);
        lines.append((spec.frameNoun.isEmpty() ? spec.subject : spec.frameNoun) + "|" + spec.notice);
        lines.append(QStringList{spec.listRequest, spec.recordTag, spec.getRequest, spec.addRequest,
                                 spec.updateRequest, spec.deleteRequest, spec.availableRequest, spec.matchTag}
                         .join(' '));
        lines.append(QStringList{spec.boxOnLoadFailure ? QString() : spec.loadCaption, spec.editCaption,
                                 spec.saveCaption, spec.deleteCaption, "", ""}
                         .join('|'));
        lines.append(spec.boxOnLoadFailure ? "unable" : "");
        lines.append(OfList(spec.gridName, spec.recordTag, spec.getKeyTag, !spec.continuing, spec.sorted));
        for (const GridColumn& column : spec.columns)
            lines.append(OfColumn(column.tag.isEmpty() ? QString("-") : column.tag, column.caption,
                                  column.hidden, MarksOf(column)));
        FormLines(*table.form, table.layout, table.puts, true, lines);
        for (const auto& [name, all] :
             {std::pair{"delete", &spec.deleteWords}, std::pair{"save", &spec.saveWords}})
            for (const auto& [status, words] : Sorted(*all))
                lines.append(QString("%1 %2 %3|%4").arg(name).arg(status).arg(words.text, words.title));
    }
    for (const RecordDeclaration& record : screen.records) {
        const RecordSpec& spec = record.spec;
        lines.append(spec.subject);
        lines.append(spec.frameNoun + (spec.frameNoun.isEmpty() ? QString() : spec.frameEnd) + "|" +
                     spec.notice);
        lines.append(
            QStringList{"", "", spec.getRequest, spec.addRequest, spec.updateRequest, "", "", spec.existsTag}
                .join(' '));
        const bool own = !spec.loadFailure.isEmpty();
        lines.append(QStringList{own ? QString() : spec.loadCaption, "", own ? QString() : spec.saveCaption,
                                 "", spec.loadFailure, spec.saveFailure}
                         .join('|'));
        lines.append("");
        FormLines(*record.form, record.layout, record.puts, !spec.addRequest.isEmpty(), lines);
    }
    return lines;
}

} // namespace

QString MarksOf(const GridColumn& column) {
    return !column.yesNo ? QString() : column.mark.isEmpty() ? QString("yes-no") : "yes-no=" + column.mark;
}

QStringList CompareDeclaration(const Screen& rows, const ScreenDeclaration& declared) {
    const QStringList is = LinesOf(declared);
    const QStringList wanted = LinesOf(rows);
    QStringList differences;
    for (qsizetype i = 0; i < qMax(is.size(), wanted.size()); ++i)
        if (is.value(i) != wanted.value(i))
            differences.append("    is     " + is.value(i) + "\n    wanted " + wanted.value(i));
    static const QHash<QString, Area> areas{
        {"Acquisitions", Area::Acquisitions}, {"Cataloging", Area::Cataloging},
        {"Circulation", Area::Circulation},   {"PatronGroups", Area::PatronGroups},
        {"Security", Area::Security},         {"System", Area::System}};
    if (areas.value(rows.area) != declared.area)
        differences.append("another area than " + rows.area);
    return differences;
}

} // namespace sysadmin::exact
