#include "exact/Mutants.h"

#include "framework/Declaration.h"
#include "framework/forms/ListFields.h"
#include "server/Subject.h"

namespace sysadmin::exact {

void Mutator::Text(const QString& what, QString& text) {
    QList<qsizetype> letters;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i].isLetterOrNumber())
            letters.append(i);
    if (letters.isEmpty())
        return;
    const qsizetype place = letters[qsizetype(m_random() % size_t(letters.size()))];
    QChar other = text[place];
    while (other == text[place])
        other = QChar('a' + char16_t(m_random() % 26));
    QString altered = text;
    altered[place] = other;
    m_mutants.push_back({what + ": " + text + " -> " + altered, [&text, altered] { text = altered; }});
}

void Mutator::Flag(const QString& what, bool& flag) {
    m_mutants.push_back({what + (flag ? ": no longer" : ": now"), [&flag] { flag = !flag; }});
}

void Mutator::Number(const QString& what, const std::function<void(int by)>& add) {
    const int by = m_random() % 2 ? 1 : -1;
    m_mutants.push_back({what + QString(": by %1").arg(by), [add, by] { add(by); }});
}

namespace {

void MutateWords(Mutator& mutator, const QString& what, QHash<qint16, OwnWords>& words) {
    for (auto each = words.begin(); each != words.end(); ++each) {
        mutator.Text(what + " text", each->text);
        mutator.Text(what + " title", each->title);
        const qint16 status = each.key();
        mutator.Number(what + " status",
                       [&words, status](int by) { words.insert(qint16(status + by), words.take(status)); });
    }
}

void Draw(Mutator& mutator, Layout& layout) {
    if (layout.kind == Layout::Kind::Frame || layout.kind == Layout::Kind::Page ||
        layout.kind == Layout::Kind::Note)
        mutator.Text("text in the form", layout.text);
    if (layout.kind == Layout::Kind::Field)
        mutator.Text("name in the form", layout.name);
    const bool ofFields = std::all_of(layout.children.begin(), layout.children.end(),
                                      [](const Layout& child) { return child.kind == Layout::Kind::Field; });
    if (ofFields || layout.kind == Layout::Kind::Tabs)
        mutator.Order("order in the form", layout.children);
    for (Layout& child : layout.children)
        Draw(mutator, child);
}

void Puts(Mutator& mutator, QList<PutStep>& puts, bool adds) {
    mutator.Order("order of puts", puts);
    for (PutStep& put : puts) {
        if (put.kind == PutStep::Kind::Own)
            continue;
        if (put.kind != PutStep::Kind::Value && put.kind != PutStep::Kind::WhenOn)
            mutator.Text("tag of a put", put.tag);
        mutator.Text("constant", put.value);
        if (adds) // else there is one occasion only
            mutator.Add("a put on other occasions: " + put.Tag(), [&put] {
                put.when = put.when == PutStep::When::Always ? PutStep::When::Update : PutStep::When::Always;
            });
        mutator.Add("a put left out: " + put.Tag(), [&puts, &put] { puts.removeAt(&put - puts.data()); });
    }
}

void Fields(Mutator& mutator, Form& form);

void Rows(Mutator& mutator, RowsField& rows, const QString& of) {
    // Not to be changed by anybody else once the field is made.
    for (GridColumn& column : const_cast<QList<GridColumn>&>(rows.Columns())) {
        mutator.Text("column" + of, column.caption);
        mutator.Text("tag of a column" + of, column.tag);
    }
    RowsSpec& spec = rows.Behaviour();
    mutator.Text("marker" + of, spec.marker);
    for (RowTag& put : spec.puts)
        mutator.Text("tag of a put" + of, put.tag);
    for (RowButton* button : {&spec.add, &spec.modify, &spec.remove}) {
        mutator.Text("button" + of, button->name);
        mutator.Text("button's caption" + of, button->caption);
    }
    if (!spec.ask)
        return;
    FormDialogSpec& dialog = spec.ask.dialog;
    for (QString* text : {&dialog.name, &dialog.title, &dialog.okName, &dialog.cancelName})
        mutator.Text("dialog" + of, *text);
    mutator.Number("help of the dialog" + of, [&dialog](int by) { dialog.helpContext += by; });
    for (QString& caption : spec.ask.captions)
        mutator.Text("caption in the dialog" + of, caption);
    if (spec.ask.form)
        Fields(mutator, *spec.ask.form);
}

void Fields(Mutator& mutator, Form& form) {
    for (sysadmin::Field* field : form.Fields()) {
        FieldSpec& spec = field->Declaration();
        const QString of = " of " + spec.name;
        if (field->GetKind() == sysadmin::Field::Kind::Rows) {
            Rows(mutator, static_cast<RowsField&>(*field), of);
            continue;
        }
        if (field->GetKind() == sysadmin::Field::Kind::Picked) {
            auto& picked = static_cast<PickedField&>(*field);
            PickedTags& tags = picked.Behaviour().tags;
            for (QString* tag : {&tags.availableId, &tags.availableName, &tags.selectedId, &tags.selectedName,
                                 &tags.state, &tags.added, &tags.removed})
                if ((tag != &tags.added && tag != &tags.removed) || !tags.state.isEmpty())
                    mutator.Text("tag of a pair" + of, *tag);
            // Not to be changed by anybody else once the field is made.
            auto& names = const_cast<PickedNames&>(picked.Names());
            for (QString* name :
                 {&names.availableGrid, &names.availableCaption, &names.selectedGrid, &names.selectedCaption,
                  &names.select, &names.selectAll, &names.discard, &names.discardAll})
                mutator.Text("pair of lists" + of, *name);
            continue;
        }
        mutator.Text("tag" + of, spec.tag);
        if (field->GetKind() == sysadmin::Field::Kind::Checked)
            continue;
        if (field->GetKind() != sysadmin::Field::Kind::Flag) // those explain rights, in words of their own
            mutator.Text("tool tip" + of, spec.toolTip);
        mutator.Text("caption" + of, spec.caption);
        mutator.Text("unit" + of, spec.unit);
        mutator.Text("initial value" + of, spec.initial);
        mutator.Text("switch" + of, spec.enabledBy);
        if (spec.maxLength > 0 && field->GetKind() == sysadmin::Field::Kind::Text)
            mutator.Number("length" + of, [&spec](int by) { spec.maxLength += by; });
        if (field->GetKind() != sysadmin::Field::Kind::Flag &&
            field->GetKind() != sysadmin::Field::Kind::Letter && !spec.displayOnly &&
            !(field->GetKind() == sysadmin::Field::Kind::Choice && !spec.initial.isEmpty())) // never blank
            mutator.Flag("required" + of, spec.required);
        mutator.Flag("only shown" + of, spec.displayOnly);
        mutator.Text("suffix" + of, spec.suffix);
        if (field->GetKind() == sysadmin::Field::Kind::Number && spec.most > 0)
            mutator.Number("most" + of, [&spec](int by) { spec.most += by; });
        for (PickItem& option : spec.options) {
            mutator.Text("letter of an option" + of, option.id);
            mutator.Text("option" + of, option.text);
        }
        ChoiceSource& source = spec.source;
        if (source.request.isEmpty())
            continue;
        mutator.Text("entries' request" + of, source.request);
        mutator.Text("entries' id" + of, source.idTag);
        mutator.Text("entries' text" + of, source.textTag);
        mutator.Text("no entry" + of, source.none);
        mutator.Text("entries' caption" + of, source.caption);
        mutator.Text("entries' failure" + of, source.unableToLoad);
    }
}

void MutateTable(Mutator& mutator, TableDeclaration& table, bool hasTabs) {
    TableSpec& spec = table.spec;
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, QString*>>{{"subject", &spec.subject},
                                                                 {"frame", &spec.frameNoun},
                                                                 {"notice", &spec.notice},
                                                                 {"grid", &spec.gridName},
                                                                 {"record tag", &spec.recordTag},

                                                                 {"list", &spec.listRequest},
                                                                 {"get", &spec.getRequest},
                                                                 {"add", &spec.addRequest},
                                                                 {"update", &spec.updateRequest},
                                                                 {"delete", &spec.deleteRequest},
                                                                 {"available", &spec.availableRequest},
                                                                 {"key in get and delete", &spec.getKeyTag},
                                                                 {"save caption", &spec.saveCaption},
                                                                 {"delete caption", &spec.deleteCaption},
                                                                 {"match tag", &spec.matchTag},
                                                                 {"pick tag", &spec.pickTag}})
        mutator.Text(name, *text);
    if (hasTabs)
        mutator.Text("tab", spec.tabCaption);
    if (!spec.getRequest.isEmpty())
        mutator.Text("edit caption", spec.editCaption);
    if (!spec.boxOnLoadFailure)
        mutator.Text("load caption", spec.loadCaption);
    mutator.Flag("continuing", spec.continuing);
    mutator.Flag("box on load failure", spec.boxOnLoadFailure);
    mutator.Flag("sorted", spec.sorted);
    mutator.Order("columns", spec.columns);
    for (GridColumn& column : spec.columns) {
        mutator.Text("column", column.caption);
        mutator.Text("tag of a column", column.tag);
        mutator.Flag("hidden column " + column.caption, column.hidden);
        mutator.Flag("yes-no column " + column.caption, column.yesNo);
        mutator.Text("mark of a yes-no column", column.mark);
    }
    for (QString& list : spec.pickLists)
        mutator.Text("pick-list", list);
    MutateWords(mutator, "delete words", spec.deleteWords);
    MutateWords(mutator, "save words", spec.saveWords);
    Fields(mutator, *table.form);
    Draw(mutator, table.layout);
    Puts(mutator, table.puts, true);
}

void Record(Mutator& mutator, RecordDeclaration& record) {
    RecordSpec& spec = record.spec;
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, QString*>>{{"notice", &spec.notice},
                                                                 {"frame", &spec.frameNoun},
                                                                 {"end of the frame", &spec.frameEnd},
                                                                 {"get", &spec.getRequest},
                                                                 {"add", &spec.addRequest},
                                                                 {"update", &spec.updateRequest},
                                                                 {"exists", &spec.existsTag},
                                                                 {"load failure", &spec.loadFailure},
                                                                 {"save failure", &spec.saveFailure}})
        mutator.Text(name, *text);
    if (spec.loadFailure.isEmpty()) {
        mutator.Text("subject", spec.subject);
        mutator.Text("load caption", spec.loadCaption);
        mutator.Text("save caption", spec.saveCaption);
    }
    Fields(mutator, *record.form);
    Draw(mutator, record.layout);
    Puts(mutator, record.puts, !spec.addRequest.isEmpty());
}

} // namespace

std::vector<Mutant> MutantsOf(server::Subject& subject, unsigned seed) {
    Mutator mutator(seed);
    server::RequestNames& requests = subject.requests;
    for (QString* name : {&requests.list, &requests.get, &requests.add, &requests.update, &requests.remove,
                          &requests.available})
        mutator.Text("request", *name);
    mutator.Add("area", [&subject] {
        subject.area =
            subject.area == wire::Area::Cataloging ? wire::Area::Acquisitions : wire::Area::Cataloging;
    });
    const bool keyIsText =
        std::any_of(subject.fields.begin(), subject.fields.end(),
                    [&](const server::SubjectField& field) { return field.tag == subject.key; });
    if (!subject.single && !keyIsText)
        mutator.Text("key", subject.key);
    mutator.Text("original key", subject.originalKey);
    for (server::SubjectField& field : subject.fields) {
        const QString of = " of " + field.column;
        mutator.Text("tag" + of, field.tag);
        if (field.kind == server::SubjectField::Kind::Text && field.check == nullptr)
            mutator.Number("length" + of, [&field](int by) { field.limit += by; });
        if (field.kind == server::SubjectField::Kind::Whole) {
            mutator.Number("least" + of, [&field](int by) { field.least += by; });
            mutator.Number("most" + of, [&field](int by) { field.most += by; });
        }
        if (field.kind != server::SubjectField::Kind::Flag &&
            field.kind != server::SubjectField::Kind::Joined && field.inPut && field.tag != subject.key)
            mutator.Flag("required" + of, field.required);
        if (field.duplicateStatus != 0)
            mutator.Number("status of a second" + of,
                           [&field](int by) { field.duplicateStatus += qint16(by); });
        if (field.inGet && !requests.get.isEmpty())
            mutator.Flag("answered" + of, field.inGet);
        if (field.inList && !requests.list.isEmpty())
            mutator.Flag("listed" + of, field.inList);
        if (field.inPut)
            mutator.Flag("taken" + of, field.inPut);
    }
    for (server::UsedBy& use : subject.usedBy)
        mutator.Number("status while used by " + use.table, [&use](int by) { use.status += qint16(by); });
    for (server::UsageKind& use : subject.usages) {
        mutator.Text("use", use.kind);
        mutator.Number("status while used by " + use.kind, [&use](int by) { use.status += qint16(by); });
    }
    for (server::Membership& membership : subject.memberships) {
        for (QString* tag : {&membership.availableId, &membership.availableName, &membership.selectedId,
                             &membership.selectedName, &membership.state})
            mutator.Text("tag of a pair", *tag);
        mutator.Flag("offered", membership.offered);
    }
    for (QString& tag : subject.addReply)
        if (tag == subject.key)
            mutator.Text("answer to an add", tag);
    return std::move(mutator.Mutants());
}

std::vector<Mutant> MutantsOf(ScreenDeclaration& screen, unsigned seed) {
    Mutator mutator(seed);
    mutator.Text("name", screen.name);
    mutator.Text("window caption", screen.caption);
    mutator.Add("area", [&screen] {
        screen.area = screen.area == Area::Cataloging ? Area::System : Area::Cataloging;
    });
    for (TableDeclaration& table : screen.tables)
        MutateTable(mutator, table, screen.tables.size() > 1);
    for (RecordDeclaration& record : screen.records)
        Record(mutator, record);
    return std::move(mutator.Mutants());
}

} // namespace sysadmin::exact
