#include "app/Client.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "framework/DateEdit.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/forms/ValueFields.h"
#include "support/ClientTest.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSet>

namespace sysadmin {

namespace {

using Kind = Field::Kind;

/// The forms that a screen shows.
QList<FormView*> ViewsOf(Screen& screen) {
    return screen.findChildren<FormView*>();
}

bool IsRightControl(Kind kind, const QWidget* widget) {
    switch (kind) {
    case Kind::Text:
    case Kind::Password:
    case Kind::Number:
    case Kind::Money:
        return qobject_cast<const QLineEdit*>(widget);
    case Kind::MultiLine:
        return qobject_cast<const QPlainTextEdit*>(widget);
    case Kind::Flag:
        return qobject_cast<const QCheckBox*>(widget);
    case Kind::Choice:
        return qobject_cast<const QComboBox*>(widget);
    case Kind::Date:
        return qobject_cast<const DateEdit*>(widget);
    case Kind::Rows:
        return qobject_cast<const ListGrid*>(widget);
    case Kind::Checked:
        return qobject_cast<const QListWidget*>(widget);
    default:
        return widget != nullptr;
    }
}

bool TakesInput(const QWidget* widget) {
    return widget->isEnabled() && !widget->property("readOnly").toBool() &&
           !qobject_cast<const ListGrid*>(widget) && !qobject_cast<const QListWidget*>(widget);
}

/// Every value of a form by control name.
QMap<QString, QString> ValuesOf(const Form& form) {
    QMap<QString, QString> values;
    for (const Field* field : form.Fields())
        if (const auto* value = dynamic_cast<const ValueField*>(field))
            values[field->Name()] = value->Draft();
    return values;
}

class CatalogueTest : public ClientTest {
protected:
    /// Signs on; the first screen that depends on the circulation cluster has it chosen.
    void SignOnAs(const QString& operatorId) {
        SignOn(operatorId);
        prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) { Click(dialog, "cmdOK"); });
    }

    /// Runs over every screen that the program offers the operator.
    void ForEachScreen(const std::function<void(const ScreenEntry&, Screen&)>& check) {
        int seen = 0;
        for (const ScreenEntry& entry : App().catalogue.Entries()) {
            if (!entry.screen.make)
                continue;
            SCOPED_TRACE(entry.key.toStdString());
            Window().OpenScreen(entry.key);
            Screen* screen = Window().FindScreen(entry.key);
            ASSERT_TRUE(screen);
            check(entry, *screen);
            ++seen;
        }
        EXPECT_GT(seen, 0);
    }

    QAbstractButton* ButtonOf(Screen& screen, const char* name) {
        auto* button = screen.findChild<QAbstractButton*>(name);
        return button && !button->isHidden() ? button : nullptr;
    }
};

TEST_F(CatalogueTest, EachFieldHasItsTagAndItsControlAndIsReachedByTab) {
    SignOnAs("SYSADMIN");
    QSet<int> contexts;
    ForEachScreen([&](const ScreenEntry& entry, Screen& screen) {
        EXPECT_FALSE(contexts.contains(entry.screen.helpContext)) << "help context used twice";
        contexts.insert(entry.screen.helpContext);
        EXPECT_FALSE(screen.windowTitle().isEmpty());
        QSet<const QWidget*> reached;
        for (QWidget* widget = screen.nextInFocusChain(); !reached.contains(widget);
             widget = widget->nextInFocusChain())
            reached.insert(widget);
        for (FormView* view : ViewsOf(screen)) {
            QSet<QString> tags;
            QSet<QString> names;
            for (Field* field : view->GetForm().Fields()) {
                SCOPED_TRACE(field->Name().toStdString());
                EXPECT_FALSE(field->Name().isEmpty());
                EXPECT_FALSE(names.contains(field->Name()));
                names.insert(field->Name());
                EXPECT_TRUE(field->Tag().isEmpty() || !tags.contains(field->Tag()))
                    << field->Tag().toStdString();
                tags.insert(field->Tag());
                FieldEditor* editor = view->EditorOf(*field);
                ASSERT_TRUE(editor) << "declared, but not drawn";
                EXPECT_TRUE(IsRightControl(field->GetKind(), editor->NamedWidget()));
                const bool speaksItself =
                    field->GetKind() == Kind::Picked || field->GetKind() == Kind::Rows ||
                    field->GetKind() == Kind::Letter; // its lists or options are captioned
                EXPECT_TRUE(speaksItself || !field->PlainCaption().isEmpty())
                    << "neither caption nor accessible name";
                for (QWidget* widget : editor->FocusWidgets())
                    EXPECT_TRUE(reached.contains(widget));
            }
        }
    });
}

TEST_F(CatalogueTest, LoadThenSaveChangesNothing) {
    SignOnAs("SYSADMIN");
    ForEachScreen([&](const ScreenEntry&, Screen& screen) {
        QAbstractButton* edit = ButtonOf(screen, "cmdEdit");
        if (!edit || !edit->isEnabled())
            return;
        edit->click();
        QList<QMap<QString, QString>> before;
        for (FormView* view : ViewsOf(screen)) {
            EXPECT_FALSE(view->GetForm().IsChanged());
            before.append(ValuesOf(view->GetForm()));
        }
        QAbstractButton* save = ButtonOf(screen, "cmdSave");
        ASSERT_TRUE(save && save->isEnabled());
        save->click();
        ASSERT_TRUE(edit->isEnabled()) << "the save was refused";
        edit->click();
        QList<QMap<QString, QString>> after;
        for (FormView* view : ViewsOf(screen))
            after.append(ValuesOf(view->GetForm()));
        EXPECT_EQ(before, after);
        ButtonOf(screen, "cmdCancel")->click();
    });
}

TEST_F(CatalogueTest, ViewingLocksEverything) {
    SignOnAs("VIEWER");
    ForEachScreen([&](const ScreenEntry&, Screen& screen) {
        for (const char* gone : {"cmdNew", "cmdDelete", "cmdSave"})
            EXPECT_FALSE(ButtonOf(screen, gone)) << gone;
        QAbstractButton* view = ButtonOf(screen, "cmdEdit");
        if (view) {
            EXPECT_EQ(view->text(), "Vi&ew");
            if (!view->isEnabled())
                return;
            view->click();
            EXPECT_TRUE(screen.findChild<QGroupBox*>("fraEdit")->title().startsWith("View "));
        }
        for (FormView* form : ViewsOf(screen))
            for (Field* field : form->GetForm().Fields())
                for (QWidget* widget : form->EditorOf(*field)->FocusWidgets())
                    EXPECT_FALSE(field->GetKind() != Kind::Picked && TakesInput(widget))
                        << field->Name().toStdString();
        if (view)
            ButtonOf(screen, "cmdCancel")->click();
    });
}

} // namespace

} // namespace sysadmin
