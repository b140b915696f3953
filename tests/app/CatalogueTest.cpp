#include "app/Client.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "framework/FormView.h"
#include "framework/forms/ValueFields.h"
#include "support/ClientTest.h"

#include <QAbstractButton>
#include <QDialog>
#include <QFile>
#include <QSet>

namespace sysadmin {

namespace {

/// The forms that a screen shows.
QList<FormView*> ViewsOf(Screen& screen) {
    return screen.findChildren<FormView*>();
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
            SCOPED_TRACE(entry.key.toStdString());
            ASSERT_TRUE(entry.screen.make) << "an item that nobody sees";
            Window().OpenScreen(entry.key);
            Screen* screen = Window().FindScreen(entry.key);
            ASSERT_TRUE(screen);
            check(entry, *screen);
            seen += entry.groupKey == u"Tools" ? 0 : 1;
        }
        EXPECT_EQ(seen, 71);
    }

    QAbstractButton* ButtonOf(Screen& screen, const char* name) {
        auto* button = screen.findChild<QAbstractButton*>(name);
        return button && !button->isHidden() ? button : nullptr;
    }
};

TEST_F(CatalogueTest, EachScreenHasItsHelpAndIconAndEachFieldItsNameAndTag) {
    SignOnAs("SYSADMIN");
    QSet<int> contexts;
    QSet<QString> icons;
    QSet<QString> windows;
    ForEachScreen([&](const ScreenEntry& entry, Screen& screen) {
        contexts.insert(entry.screen.helpContext);
        icons.insert(entry.icon);
        windows.insert(screen.objectName());
        EXPECT_EQ(contexts.size(), windows.size()) << "a help context used twice";
        EXPECT_EQ(icons.size(), windows.size()) << "an icon used twice";
        EXPECT_TRUE(QFile::exists(QString(":/help/%1.md").arg(entry.screen.helpContext)));
        for (FormView* view : ViewsOf(screen)) {
            QSet<QString> names;
            for (Field* field : view->GetForm().Fields()) {
                SCOPED_TRACE(field->Name().toStdString());
                if (field->Name().isEmpty()) // a tag that other fields make up
                    continue;
                EXPECT_FALSE(names.contains(field->Name()));
                EXPECT_FALSE(!field->Tag().isEmpty() && names.contains("tag " + field->Tag()));
                names += {field->Name(), "tag " + field->Tag()};
                EXPECT_TRUE(view->EditorOf(*field)) << "declared, but not drawn";
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
        ASSERT_TRUE(save);
        if (!save->isEnabled() && screen.objectName() == u"frmCirculation_PatronGroupMapping") {
            ButtonOf(screen, "cmdCancel")->click(); // it sends changed rows only: there is nothing to save
            return;
        }
        ASSERT_TRUE(save->isEnabled());
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

} // namespace

} // namespace sysadmin
