#include "framework/Declaration.h"

#include <algorithm>

namespace sysadmin {

namespace {

void FillIn(QString& text, const QString& otherwise) {
    if (text.isEmpty())
        text = otherwise;
}

void FindFields(Layout& layout, const Form& form) {
    if (layout.kind == Layout::Kind::Field && !layout.field) {
        layout.field = form.Find(layout.name);
        if (!layout.field)
            qFatal("The layout names a field that the form lacks: %s", qUtf8Printable(layout.name));
        layout.name.clear(); // the control has the field's
    }
    for (Layout& child : layout.children)
        FindFields(child, form);
}

bool IsPut(const Field& field) {
    return !field.Tag().isEmpty() && !field.Spec().displayOnly;
}

void Order(QList<PutStep>& steps, const QStringList& order) {
    const auto place = [&order](const PutStep& step) {
        const qsizetype index = order.indexOf(step.Tag());
        return index < 0 ? order.size() : index;
    };
    std::stable_sort(steps.begin(), steps.end(),
                     [&](const PutStep& a, const PutStep& b) { return place(a) < place(b); });
}

QList<PutStep> StepsOf(const TableDeclaration& table) {
    QList<PutStep> steps{OnUpdate(PutOriginalKey(table.spec.originalTag))};
    for (const Field* field : table.form->Fields())
        if (IsPut(*field))
            steps.append(PutValue(*field));
    steps += table.spec.morePuts;
    for (const Field* field : table.form->Fields())
        if (!field->Spec().changedTag.isEmpty())
            steps.append(OnUpdate(PutChanged(field->Spec().changedTag, *field)));
    Order(steps, table.spec.putOrder);
    return steps;
}

} // namespace

void Resolve(Layout& layout, Form& form) {
    if (layout.kind == Layout::Kind::Below && layout.children.isEmpty())
        for (Field* field : form.Fields())
            layout.children.append(*field);
    FindFields(layout, form);
}

void Complete(TableDeclaration& table) {
    TableSpec& spec = table.spec;
    if (!spec.word.isEmpty()) {
        FillIn(spec.notice, spec.word);
        FillIn(spec.listRequest, "Lst" + spec.word);
        if (!spec.wholeRows)
            FillIn(spec.getRequest, "Get" + spec.word);
        FillIn(spec.addRequest, "Add" + spec.word);
        FillIn(spec.updateRequest, "Upd" + spec.word);
        FillIn(spec.deleteRequest, "Del" + spec.word);
        if (spec.asksAvailable)
            FillIn(spec.availableRequest, "Avl" + spec.word);
    }
    if (!spec.plural.isEmpty()) {
        FillIn(spec.loadCaption, "Load " + spec.plural);
        FillIn(spec.editCaption, "Edit " + spec.plural);
        FillIn(spec.saveCaption, "Save " + spec.plural);
        FillIn(spec.deleteCaption, "Delete " + spec.plural);
    }
    FillIn(spec.frameNoun, spec.subject);
    FillIn(spec.getKeyTag, spec.recordTag);
    FillIn(spec.originalTag, spec.recordTag);
    if (spec.columns.isEmpty())
        for (const Field* field : table.form->Fields())
            if (GridColumn column = field->Spec().column; !column.caption.isEmpty()) {
                FillIn(column.tag, field->Tag());
                spec.columns.append(column);
            }
    for (GridColumn& column : spec.columns) {
        const Field* field = table.form->FindByColumn(column.tag);
        if (const auto* date = dynamic_cast<const DateField*>(field))
            FillIn(column.dateFormat, date->Format());
        if (dynamic_cast<const ChoiceField*>(field) && column.items.isEmpty())
            column.items = field->Spec().options;
    }
    if (table.puts.isEmpty())
        table.puts = StepsOf(table);
    Resolve(table.layout, *table.form);
}

void Complete(RecordDeclaration& record) {
    RecordSpec& spec = record.spec;
    if (!spec.word.isEmpty()) {
        FillIn(spec.notice, spec.word);
        FillIn(spec.getRequest, "Get" + spec.word);
        FillIn(spec.updateRequest, "Upd" + spec.word);
        if (!spec.existsTag.isEmpty())
            FillIn(spec.addRequest, "Add" + spec.word);
    }
    if (!spec.plural.isEmpty()) {
        FillIn(spec.loadCaption, "Load " + spec.plural);
        FillIn(spec.saveCaption, "Save " + spec.plural);
    }
    if (record.puts.isEmpty()) {
        for (const Field* field : record.form->Fields())
            if (IsPut(*field))
                record.puts.append(PutValue(*field));
        Order(record.puts, spec.putOrder);
    }
    Resolve(record.layout, *record.form);
}

} // namespace sysadmin
