#include "framework/FormScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/DetailedRows.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/SecretField.h"
#include "framework/Utility.h"
#include "framework/forms/ListFields.h"
#include "framework/frmHistory.h"
#include "wire/Status.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>

namespace sysadmin {

FormScreen::FormScreen(Application& application, const QString& formName, const QString& caption, Area area,
                       QWidget* parent)
    : Screen(application, formName, caption, parent)
    , m_declaration{.name = formName, .caption = caption, .area = area} {
    auto* history = new QShortcut(Qt::CTRL | Qt::Key_H, this);
    history->setContext(Qt::WidgetWithChildrenShortcut);
    connect(history, &QShortcut::activated, this, &FormScreen::ShowHistory);
}

FormScreen::~FormScreen() = default;

FormView* FormScreen::MakeView(Form& form, const Layout& layout, QWidget* parent,
                               const FormView::SlotMaker& makeSlot) {
    FormView* view = m_views.emplace_back(std::make_unique<FormView>(form, layout, parent, makeSlot)).get();
    connect(view, &FormView::ProblemLeft, this, [this, view](const Form::Finding& finding) {
        Tell(finding.text);
        view->FocusField(*finding.field);
    });
    return view;
}

void FormScreen::Declare() {
    for (TableDeclaration& table : m_declaration.tables)
        Complete(table);
    for (RecordDeclaration& record : m_declaration.records)
        Complete(record);
    if (App().alterDeclaration)
        App().alterDeclaration(m_declaration);
    setObjectName(m_declaration.name);
    setWindowTitle(m_declaration.caption);
}

QList<ScreenWord> FormScreen::Words() const {
    QList<ScreenWord> words;
    const std::function<void(const Form*)> addForm = [&](const Form* form) {
        for (const Field* field : form ? form->Fields() : QList<Field*>()) {
            if (!field->Name().isEmpty() && !field->PlainCaption().isEmpty())
                words.append({field->PlainCaption(), field->Name()});
            // What stands beside a list and edits its selected row.
            if (const auto* picked = dynamic_cast<const PickedField*>(field))
                addForm(picked->Behaviour().settings);
            if (const auto* rows = dynamic_cast<const DetailedRowsField*>(field))
                addForm(&rows->Details());
        }
    };
    for (const TableDeclaration& table : m_declaration.tables) {
        addForm(table.form);
        addForm(table.spec.several.form);
    }
    for (const RecordDeclaration& record : m_declaration.records)
        addForm(record.form);
    static const QStringList everywhere{"cmdNew",  "cmdEdit",   "cmdDelete",
                                        "cmdSave", "cmdCancel", "cmdHistory"};
    for (const QPushButton* button : findChildren<QPushButton*>()) {
        QString caption = DeclaredCaption(*button).remove('&').remove("...");
        if (!everywhere.contains(button->objectName()) && !caption.isEmpty() && caption[0].isLetter())
            words.append({caption, button->objectName()});
    }
    return words;
}

QList<ScreenSubject> FormScreen::Subjects() const {
    QList<ScreenSubject> subjects;
    const auto add = [&](const QString& request, const Form& form) {
        QHash<QString, ScreenWord> fields;
        for (const Field* field : form.Fields()) {
            if (!field->Tag().isEmpty() && !field->Name().isEmpty()) {
                ScreenWord& word = fields[field->Tag()] = {field->PlainCaption(), field->Name()};
                for (const PickItem& option : field->Spec().options)
                    word.values.insert(option.id, option.text);
            }
            const auto* rows = dynamic_cast<const RowsField*>(field);
            for (const RowTag& tag : rows ? rows->Behaviour().puts : QList<RowTag>())
                if (tag.source == RowTag::Source::Cell && tag.column < rows->Columns().size() &&
                    !fields.contains(tag.tag))
                    fields.insert(tag.tag, {rows->Columns()[tag.column].caption, {}});
        }
        subjects.append({SubjectOf(request), fields});
    };
    for (const TableDeclaration& table : m_declaration.tables)
        add(table.spec.getRequest.isEmpty() ? table.spec.listRequest : table.spec.getRequest, *table.form);
    for (const RecordDeclaration& record : m_declaration.records)
        add(record.spec.getRequest, *record.form);
    return subjects;
}

void FormScreen::GoTo(const QString& control) {
    auto* widget = findChild<QWidget*>(control);
    if (widget && widget->isEnabled() && widget->isVisible())
        widget->setFocus(Qt::ShortcutFocusReason);
}

void FormScreen::Follow(ChoiceField& field, const QString& pickList, const QString& none) {
    const auto showEntries = [this, &field, pickList, none] {
        field.SetItems(WithNone(App().pickLists.Items(pickList), none));
    };
    showEntries();
    connect(&App().pickLists, &PickLists::Changed, this, [pickList, showEntries](const QString& list) {
        if (list == pickList)
            showEntries();
    });
}

void FormScreen::LoadChoices(const Form& form, const QString& loadCaption, const QString& subject) {
    for (Field* field : form.Fields())
        if (auto* choice = dynamic_cast<ChoiceField*>(field);
            choice && !field->Spec().source.request.isEmpty())
            LoadChoice(*choice, loadCaption, subject);
}

void FormScreen::LoadChoice(ChoiceField& field, const QString& loadCaption, const QString& subject) {
    const ChoiceSource& source = field.Spec().source;
    const auto report = [&](qint16 status) {
        const bool isBatch = status == wire::status::Continues && !source.caption.isEmpty();
        if (!source.unableToLoad.isEmpty() && !isBatch)
            ReportUnableToLoad(App(), this, source.unableToLoad);
        else
            App().ReportRequestFailure(status, source.caption.isEmpty() ? loadCaption : source.caption,
                                       subject);
    };
    ReadChoice(field, report);
}

void FormScreen::ReadChoice(ChoiceField& field, const std::function<void(qint16)>& report) {
    const ChoiceSource& source = field.Spec().source;
    QList<PickItem> items;
    const auto read = [&](RequestChannel& channel) {
        items.append({channel.GetField(source.idTag), channel.GetField(source.textTag)});
    };
    const qint16 result =
        ReadList(App().channel, {.request = source.request, .report = report}, {{source.idTag, read}});
    if (result != wire::status::Ok && !field.Items().isEmpty())
        return; // the old entries do
    if (source.pickList.isEmpty())
        field.SetItems(WithNone(items, source.none));
    else if (result == wire::status::Ok)
        App().pickLists.Set(source.pickList, items);
}

void FormScreen::Announce(const QString& subject) {
    emit App().notices.SubjectChanged(subject);
}

void FormScreen::FinishBuilding() {
    for (ListGrid* grid : findChildren<ListGrid*>())
        grid->SetPrompter(App().prompter);
    AssignMnemonics(*this);
}

void FormScreen::PrepareForm(Form& form) {
    for (Field* field : form.Fields()) {
        const FieldSpec& spec = field->Spec();
        if (const auto* flag = dynamic_cast<FlagField*>(form.Find(spec.enabledBy)))
            field->EnableBy(*flag);
        else if (!spec.enabledBy.isEmpty())
            qWarning("%s depends on a flag that the form lacks", qUtf8Printable(spec.name));
        if (auto* choice = dynamic_cast<ChoiceField*>(field); choice && !spec.source.pickList.isEmpty())
            Follow(*choice, spec.source.pickList, spec.source.none);
        if (auto* secret = dynamic_cast<SecretField*>(field))
            secret->SetSealer([this](const QString& plain) { return App().comm.EncodePassword(plain); });
    }
    connect(&App().notices, &Notices::ChangedByOthers, this, [this, &form](const QString& subject) {
        for (Field* field : form.Fields())
            if (const QString request = field->Spec().source.request;
                field->GetKind() == Field::Kind::Choice && SubjectOf(request) == subject)
                ReadChoice(static_cast<ChoiceField&>(*field), [](qint16) {});
    });
    const auto setDecimals = [this, &form] {
        for (Field* field : form.Fields())
            if (auto* money = dynamic_cast<MoneyField*>(field))
                money->SetDecimals(App().profile.MoneyDecimals());
    };
    setDecimals();
    connect(&App().notices, &Notices::SubjectChanged, this, [setDecimals](const QString& subject) {
        if (subject == u"BsCur")
            setDecimals();
    });
}

bool FormScreen::CheckForm(Form& form, FormView& view) {
    const std::optional<Form::Finding> problem = form.FirstProblem();
    if (!problem)
        return true;
    Tell(problem->text);
    view.FocusField(*problem->field);
    return false;
}

bool FormScreen::CheckAll(Form& form, FormView& view, const QString& beginning, const QStringList& more) {
    const QList<Form::Finding> problems = form.Problems();
    QStringList lines{beginning};
    for (const Form::Finding& problem : problems)
        lines.append(QString(QChar(0x2022)) + ' ' + problem.text);
    for (const QString& text : more)
        lines.append(QString(QChar(0x2022)) + ' ' + text);
    if (lines.size() == 1)
        return true;
    Tell(lines.join("\r\n"));
    if (!problems.isEmpty())
        view.FocusField(*problems.first().field);
    return false;
}

bool FormScreen::TellFailures(const QString& nameTag, const QString& problemTag) {
    QStringList lines;
    while (App().channel.NextRecord(nameTag))
        lines.append(App().channel.GetField(nameTag) + ":  " + App().channel.GetField(problemTag));
    if (!lines.isEmpty())
        Tell(lines.join("\r\n"));
    return !lines.isEmpty();
}

QLabel* FormScreen::MissingLabel() {
    m_lblMissing = new QLabel(this);
    m_lblMissing->setObjectName("lblMissing");
    m_lblMissing->setForegroundRole(QPalette::PlaceholderText);
    m_lblMissing->setWordWrap(true);
    m_lblMissing->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_lblMissing->setMinimumWidth(1);
    return m_lblMissing;
}

void FormScreen::ShowMissing(const Form* form) {
    QStringList names;
    for (const Field* field : form ? form->Missing() : QList<Field*>())
        names.append(field->PlainCaption());
    const QString text = names.isEmpty() ? QString() : tr("Still needed: %1").arg(names.join(", "));
    if (m_lblMissing->text() == text)
        return;
    m_lblMissing->setText(text);
    if (auto* save = findChild<QPushButton*>("cmdSave"))
        save->setAccessibleDescription(text);
}

void FormScreen::CloseScreen() {
    QWidget* around = parentWidget();
    const bool isWindow = qobject_cast<QMdiSubWindow*>(around) || qobject_cast<QDialog*>(around);
    (isWindow ? around : this)->close();
}

void FormScreen::ShowHistory() {
    if (const std::optional<HistoryRecord> record = RecordNow())
        ShowRecordHistory(App(), this, *record);
}

void FormScreen::Tell(const QString& text) {
    App().prompter.ShowBox(this, {.text = text});
}

QPushButton* FormScreen::MakeButton(const QString& name, const QString& caption) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    return button;
}

void FormScreen::BindKey(const QKeySequence& key, QPushButton* button) {
    auto* shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, button, [button] {
        if (button->isEnabled() && !button->isHidden())
            button->click();
    });
}

void FormScreen::BindEscape(QPushButton* cancel, const std::function<bool()>& isChanged) {
    auto* shortcut = new QShortcut(Qt::Key_Escape, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, cancel, [this, cancel, isChanged] {
        // A calendar that is open belongs to the screen as far as shortcuts go: the key is for it alone.
        if (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
            return;
        }
        if (cancel->isEnabled() && !cancel->isHidden() && (!isChanged() || ConfirmDiscard(App(), this)))
            cancel->click();
    });
}

// Enter in a field of one line presses the default button, as it does in a dialog.
void FormScreen::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isEnter && isPlain && qobject_cast<QLineEdit*>(focusWidget()))
        for (QPushButton* button : findChildren<QPushButton*>())
            if (button->isDefault() && button->isEnabled() && !button->isHidden()) {
                button->click();
                return;
            }
    Screen::keyPressEvent(event);
}

} // namespace sysadmin

#include "moc_FormScreen.cpp"
