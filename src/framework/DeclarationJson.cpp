#include "framework/Declaration.h"
#include "framework/DetailedRows.h"
#include "framework/forms/ListFields.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QMetaEnum>

#include <algorithm>

// What a declaration says, as the describe output writes it: whatever is empty or usual is left out.
namespace sysadmin {

namespace {

constexpr const char* KindNames[] = {"Text",     "MultiLine", "Password", "Flag",    "Choice",
                                     "Letter",   "Number",    "Money",    "Date",    "Time",
                                     "Interval", "Rows",      "Picked",   "Checked", "Own"};
constexpr const char* StepNames[] = {"value", "draft", "constant", "changed", "originalKey", "whenOn", "own"};
constexpr const char* AreaNames[] = {"AnyOperator",           "Acquisitions", "Cataloging", "Circulation",
                                     "CirculationConversion", "PatronGroups", "Security",   "System"};

void Say(QJsonObject& object, const QString& name, const QString& text) {
    if (!text.isEmpty())
        object[name] = text;
}

void Say(QJsonObject& object, const QString& name, bool value) {
    if (value)
        object[name] = true;
}

QJsonArray ColumnsOf(const QList<GridColumn>& columns) {
    QJsonArray array;
    for (const GridColumn& column : columns) {
        QJsonObject one{{"caption", column.caption}};
        Say(one, "tag", column.tag);
        if (column.width > 0)
            one["width"] = column.width;
        Say(one, "hidden", column.hidden);
        Say(one, "yesNo", column.yesNo);
        Say(one, "mark", column.mark);
        Say(one, "dateFormat", column.dateFormat);
        array.append(one);
    }
    return array;
}

QJsonArray ItemsOf(const QList<PickItem>& items) {
    QJsonArray array;
    for (const PickItem& item : items)
        array.append(QJsonArray{item.id, item.text});
    return array;
}

QJsonObject SourceOf(const ChoiceSource& source) {
    QJsonObject object;
    if (source == ChoiceSource())
        return object;
    Say(object, "request", source.request);
    if (!source.request.isEmpty())
        object["tags"] = QJsonArray{source.idTag, source.textTag};
    Say(object, "pickList", source.pickList);
    Say(object, "none", source.none);
    Say(object, "caption", source.caption);
    Say(object, "unableToLoad", source.unableToLoad);
    return object;
}

/// What the rows of a list put, by tag.
QJsonArray RowTagsOf(const QList<RowTag>& puts) {
    constexpr const char* names[] = {"key", "cell", "amount", "state", "rank", "fixed"};
    QJsonArray array;
    for (const RowTag& put : puts)
        array.append(QJsonArray{put.tag, names[int(put.source)]});
    return array;
}

QJsonArray FieldsOf(const Form& form) {
    QJsonArray array;
    for (const Field* field : form.Fields())
        array.append(ToJson(*field));
    return array;
}

QJsonObject DialogOf(const RowAsker& asker) {
    const FormDialogSpec& spec = asker.dialog;
    QJsonObject object{{"name", spec.name},
                       {"title", spec.title},
                       {"helpContext", spec.helpContext},
                       {"buttons", QJsonArray{spec.okName, spec.cancelName}}};
    Say(object, "focus", spec.focus);
    Say(object, "okCaption", spec.okCaption);
    Say(object, "newCaption", spec.newCaption);
    Say(object, "refusalTitle", spec.refusalTitle);
    if (asker.form)
        object["fields"] = FieldsOf(*asker.form);
    if (!asker.captions.isEmpty())
        object["captions"] = QJsonArray::fromStringList(asker.captions);
    return object;
}

void SayButtons(QJsonObject& object, std::initializer_list<const RowButton*> buttons) {
    QJsonArray array;
    for (const RowButton* button : buttons)
        if (!button->name.isEmpty())
            array.append(QJsonArray{button->name, button->caption});
    if (!array.isEmpty())
        object["buttons"] = array;
}

void SayPicked(QJsonObject& object, const PickedField& picked) {
    const PickedSpec& spec = picked.Behaviour();
    const PickedNames& names = picked.Names();
    object["lists"] = QJsonArray{QJsonArray{names.availableGrid, names.availableCaption},
                                 QJsonArray{names.selectedGrid, names.selectedCaption}};
    object["moves"] = QJsonArray{names.select, names.selectAll, names.discard, names.discardAll};
    if (!spec.tags.availableId.isEmpty())
        object["tags"] = QJsonArray{spec.tags.availableId, spec.tags.availableName, spec.tags.selectedId,
                                    spec.tags.selectedName};
    Say(object, "stateTag", spec.tags.state);
    if (!spec.more.isEmpty())
        object["more"] = ColumnsOf(spec.more);
    if (spec.availableMore)
        object["availableMore"] = ColumnsOf(*spec.availableMore);
    Say(object, "ranked", spec.ranked);
    if (spec.settings)
        object["settings"] = FieldsOf(*spec.settings);
    SayButtons(object, {&spec.modify});
    if (spec.ask)
        object["dialog"] = DialogOf(spec.ask);
}

void SayRows(QJsonObject& object, const RowsField& rows) {
    const RowsSpec& spec = rows.Behaviour();
    object["columns"] = ColumnsOf(rows.Columns());
    Say(object, "marker", spec.marker);
    Say(object, "keyTag", spec.keyTag);
    if (!spec.moreTags.isEmpty())
        object["moreTags"] = QJsonArray::fromStringList(spec.moreTags);
    if (!spec.puts.isEmpty())
        object["puts"] = RowTagsOf(spec.puts);
    if (std::any_of(spec.puts.begin(), spec.puts.end(),
                    [](const RowTag& put) { return put.source == RowTag::Source::State; }))
        object["codes"] =
            QJsonArray{spec.codes.added, spec.codes.changed, spec.codes.removed, spec.codes.unchanged};
    Say(object, "onlyChanged", spec.onlyChanged);
    Say(object, "ranked", spec.ranked);
    SayButtons(object, {&spec.add, &spec.modify, &spec.remove, &spec.up, &spec.down});
    if (spec.ask)
        object["dialog"] = DialogOf(spec.ask);
    if (const auto* detailed = dynamic_cast<const DetailedRowsField*>(&rows))
        object["details"] = FieldsOf(detailed->Details());
    Say(object, "removeQuestion", spec.removeQuestion);
    Say(object, "removeTitle", spec.removeTitle);
}

QJsonArray StepsOf(const QList<PutStep>& steps) {
    QJsonArray array;
    for (const PutStep& step : steps) {
        QJsonObject one{{"put", StepNames[int(step.kind)]}};
        Say(one, "tag", step.Tag());
        Say(one, "value", step.value);
        if (step.field)
            one["field"] = step.field->Name();
        if (step.dependent)
            one["dependent"] = step.dependent->Name();
        if (step.when != PutStep::When::Always)
            one["when"] = "update";
        array.append(one);
    }
    return array;
}

QJsonObject WordsOf(const QHash<qint16, OwnWords>& words) {
    QJsonObject object;
    for (auto each = words.begin(); each != words.end(); ++each)
        object[QString::number(each.key())] = QJsonArray{each->text, each->title};
    return object;
}

QJsonValue LayoutOf(const Layout& layout) {
    if (layout.kind == Layout::Kind::Field)
        return layout.field ? layout.field->Name() : layout.name;
    constexpr const char* names[] = {"field", "below", "beside", "frame", "flow",  "tabs",
                                     "page",  "note",  "slot",   "block", "button"};
    QJsonArray children;
    for (const Layout& child : layout.children)
        children.append(LayoutOf(child));
    QJsonObject object{{"kind", names[int(layout.kind)]}};
    Say(object, "name", layout.name);
    Say(object, "text", layout.text);
    if (!children.isEmpty())
        object["children"] = children;
    return object;
}

QJsonObject ToJson(const TableDeclaration& table) {
    const TableSpec& spec = table.spec;
    QJsonObject object{{"columns", ColumnsOf(spec.columns)},
                       {"fields", FieldsOf(*table.form)},
                       {"layout", LayoutOf(table.layout)},
                       {"puts", StepsOf(table.puts)}};
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, QString>>{{"subject", spec.subject},
                                                                {"frameNoun", spec.frameNoun},
                                                                {"notice", spec.notice},
                                                                {"grid", spec.gridName},
                                                                {"tab", spec.tabCaption},
                                                                {"recordTag", spec.recordTag},
                                                                {"getKeyTag", spec.getKeyTag},
                                                                {"list", spec.listRequest},
                                                                {"get", spec.getRequest},
                                                                {"add", spec.addRequest},
                                                                {"update", spec.updateRequest},
                                                                {"delete", spec.deleteRequest},
                                                                {"available", spec.availableRequest},
                                                                {"loadCaption", spec.loadCaption},
                                                                {"editCaption", spec.editCaption},
                                                                {"saveCaption", spec.saveCaption},
                                                                {"deleteCaption", spec.deleteCaption},
                                                                {"matchTag", spec.matchTag},
                                                                {"addedTag", spec.addedTag},
                                                                {"pickTag", spec.pickTag},
                                                                {"clusterTag", spec.clusterTag},
                                                                {"deleteSeveral", spec.deleteSeveralRequest}})
        Say(object, name, text);
    if (spec.namesRecord)
        Say(object, "nameTag", spec.nameTag);
    QJsonArray steps;
    for (const SaveStep& step : spec.steps)
        steps.append(QJsonObject{{"request", step.request},
                                 {"caption", step.caption},
                                 {"keyTag", step.keyTag},
                                 {"puts", StepsOf(step.puts)}});
    if (!steps.isEmpty())
        object["steps"] = steps;
    if (spec.several.form) {
        QJsonObject several{{"request", spec.several.request},
                            {"caption", spec.several.caption},
                            {"saveCaption", spec.several.saveCaption},
                            {"keyTag", spec.several.keyTag},
                            {"fields", FieldsOf(*spec.several.form)}};
        Say(several, "frame", spec.several.frame);
        if (spec.several.records)
            several["puts"] = StepsOf(spec.several.puts);
        object["several"] = several;
    }
    Say(object, "frameIdle", spec.frameIdle);
    Say(object, "listAfterChange", spec.listAfterChange);
    Say(object, "copies", spec.copies);
    if (const OrderSpec& order = spec.order; !order.request.isEmpty()) {
        QJsonObject one{{"request", order.request}, {"rankTag", order.rankTag}, {"button", order.button}};
        Say(one, "previousRankTag", order.previousRankTag);
        Say(one, "idTag", order.idTag);
        Say(one, "caption", order.caption);
        object["order"] = one;
    }
    Say(object, "clusterOnDelete", spec.clusterOnDelete);
    Say(object, "continuing", spec.continuing);
    Say(object, "boxOnLoadFailure", spec.boxOnLoadFailure);
    if (spec.sorted)
        object["sortColumn"] = spec.sortColumn;
    if (!spec.deleteWords.isEmpty())
        object["deleteWords"] = WordsOf(spec.deleteWords);
    if (!spec.saveWords.isEmpty())
        object["saveWords"] = WordsOf(spec.saveWords);
    if (!spec.pickLists.isEmpty())
        object["pickLists"] = QJsonArray::fromStringList(spec.pickLists);
    return object;
}

QJsonObject ToJson(const RecordDeclaration& record) {
    const RecordSpec& spec = record.spec;
    QJsonObject object{{"fields", FieldsOf(*record.form)},
                       {"layout", LayoutOf(record.layout)},
                       {"puts", StepsOf(record.puts)}};
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, QString>>{{"subject", spec.subject},
                                                                {"notice", spec.notice},
                                                                {"frameNoun", spec.frameNoun},
                                                                {"frameEnd", spec.frameEnd},
                                                                {"get", spec.getRequest},
                                                                {"add", spec.addRequest},
                                                                {"update", spec.updateRequest},
                                                                {"existsTag", spec.existsTag},
                                                                {"loadCaption", spec.loadCaption},
                                                                {"saveCaption", spec.saveCaption},
                                                                {"loadFailure", spec.loadFailure},
                                                                {"saveFailure", spec.saveFailure}})
        Say(object, name, text);
    return object;
}

} // namespace

QJsonObject ToJson(const Field& field) {
    const FieldSpec& spec = field.Spec();
    QJsonObject object{{"name", spec.name}, {"kind", KindNames[int(field.GetKind())]}};
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, QString>>{{"tag", spec.tag},
                                                                {"caption", spec.caption},
                                                                {"unit", spec.unit},
                                                                {"initial", spec.initial},
                                                                {"toolTip", spec.toolTip},
                                                                {"accessible", spec.accessible},
                                                                {"changedTag", spec.changedTag},
                                                                {"unitName", spec.unitName},
                                                                {"format", spec.format},
                                                                {"suffix", spec.suffix},
                                                                {"enabledBy", spec.enabledBy}})
        Say(object, name, text);
    Say(object, "required", spec.required);
    Say(object, "displayOnly", spec.displayOnly);
    if (spec.maxLength > 0)
        object["maxLength"] = spec.maxLength;
    if (const QJsonObject source = SourceOf(spec.source); !source.isEmpty())
        object["source"] = source;
    if (const auto* number = dynamic_cast<const NumberField*>(&field))
        object["range"] = QJsonArray{number->Least(), number->Most()};
    if (const auto* interval = dynamic_cast<const IntervalField*>(&field))
        object["range"] = QJsonArray{0, interval->Most()};
    if (!spec.options.isEmpty())
        object["options"] = ItemsOf(spec.options);
    Say(object, "letterFirst", spec.letterFirst);
    if (!spec.words.isEmpty())
        object["words"] = QJsonArray::fromStringList(spec.words);
    if (const auto* rows = dynamic_cast<const RowsField*>(&field))
        SayRows(object, *rows);
    if (const auto* picked = dynamic_cast<const PickedField*>(&field))
        SayPicked(object, *picked);
    return object;
}

QJsonObject ToJson(const ScreenDeclaration& screen) {
    QJsonObject object{
        {"name", screen.name}, {"caption", screen.caption}, {"area", AreaNames[int(screen.area)]}};
    QJsonArray tables;
    for (const TableDeclaration& table : screen.tables)
        tables.append(ToJson(table));
    QJsonArray records;
    for (const RecordDeclaration& record : screen.records)
        records.append(ToJson(record));
    if (!tables.isEmpty())
        object["tables"] = tables;
    if (!records.isEmpty())
        object["records"] = records;
    return object;
}

} // namespace sysadmin
