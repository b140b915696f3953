#include "framework/forms/Rules.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/forms/ComposedText.h"
#include "framework/forms/ValueFields.h"
#include "support/ScriptedChannel.h"

#include <QLabel>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

struct RuledForm : Form {
    FlagField chkOn{*this, {.name = "chkOn", .tag = "On"}};
    FlagField chkInner{*this, {.name = "chkInner", .tag = "In"}};
    NumberField txtLeast{*this, {.name = "txtLeast", .tag = "Le", .caption = "Least:", .unit = "days"}};
    NumberField txtMost{*this, {.name = "txtMost", .tag = "Mo", .caption = "Most:"}};
    ChoiceField cboUnit{*this, {.name = "cboUnit", .tag = "U", .options = {{"D", "Days"}, {"H", "Hours"}}}};
    MoneyField txtFee{*this, {.name = "txtFee", .tag = "Fee"}};

    RuledForm() {
        When([this] { return chkOn.IsOn(); })
            .Enable(chkInner)
            .Caption(txtLeast, "At least:", "Least:")
            .Unit(txtLeast, "hours", "days")
            .Offer(cboUnit, {{"M", "Minutes"}, {"H", "Hours"}}, Rule::Lost::ChooseFirst)
            .Page("details");
        When([this] { return !chkOn.IsOn(); }).Offer(cboUnit, {{"D", "Days"}, {"H", "Hours"}}).Clear(txtMost);
        txtLeast.EnableBy(chkInner); // a chain: the flag counts only while it can be used
        WhenLeft(txtLeast, [this] {
            if (txtLeast.Value() > txtMost.Value())
                txtMost.SetValue(txtLeast.Value());
        });
    }
    void LoadFrom(const wire::Fields& reply) {
        ScriptedChannel channel;
        channel.Answer("Get", 0, reply);
        channel.SendRequest("Get");
        Load(channel);
    }
};

const wire::Fields On{{"On", "Y"}, {"In", "Y"}, {"Le", "30"}, {"Mo", "20"}, {"U", "D"}};
const wire::Fields Off{{"On", "N"}, {"In", "Y"}, {"Le", "30"}, {"Mo", "20"}, {"U", "M"}};

TEST(RulesTest, StateFollowsWhateverIsLoadedAndValuesStayAsTheyCame) {
    RuledForm form;
    QSignalSpy edited(&form, &Form::Edited);
    for (const bool on : {true, false, true}) {
        form.LoadFrom(on ? On : Off);
        EXPECT_EQ(form.chkInner.IsUsable(), on);
        EXPECT_EQ(form.txtLeast.IsUsable(), on) << "its flag is checked both times, but not always usable";
        EXPECT_EQ(form.txtLeast.Caption(), on ? "At least:" : "Least:");
        EXPECT_EQ(form.txtLeast.Unit(), on ? "hours" : "days");
        EXPECT_EQ(form.cboUnit.Items().first().id, on ? "M" : "D");
        EXPECT_EQ(form.HasPage("details"), on);
        EXPECT_FALSE(form.IsChanged()) << "a wrong pair and an entry that is not offered are only looked at";
        form.LeaveFields();
        EXPECT_FALSE(form.IsChanged()) << "nor does leaving fields that nobody edited touch them";
    }
    form.Clear();
    EXPECT_FALSE(form.chkInner.IsUsable());
    EXPECT_EQ(edited.count(), 0);
}

TEST(RulesTest, EditsCorrectValuesOnce) {
    RuledForm form;
    form.LoadFrom(Off);
    form.chkOn.SetOn(true);
    EXPECT_EQ(form.cboUnit.Draft(), "M") << "it is offered, so it stays";
    form.cboUnit.SetDraft("H");
    form.chkOn.SetOn(false);
    EXPECT_EQ(form.cboUnit.Draft(), "H");
    EXPECT_EQ(form.txtMost.Draft(), "");
    form.txtMost.SetDraft("7");
    EXPECT_EQ(form.txtMost.Draft(), "7") << "only the edit that turns the condition acts";
    form.cboUnit.SetDraft("D");
    form.chkOn.SetOn(true);
    EXPECT_EQ(form.cboUnit.Draft(), "M") << "no longer offered: the first one";

    QSignalSpy edited(&form, &Form::Edited);
    form.Revert();
    EXPECT_FALSE(form.IsChanged());
    EXPECT_FALSE(form.chkInner.IsUsable());
    EXPECT_EQ(edited.count(), 0);
}

TEST(RulesTest, LeavingActsAfterAnEditAndBeforeASave) {
    RuledForm form;
    form.LoadFrom(On);
    form.txtLeast.SetDraft("31");
    EXPECT_EQ(form.txtMost.Draft(), "20") << "not while it is typed";
    form.txtFee.SetDraft("1,5");
    form.LeaveFields();
    EXPECT_EQ(form.txtMost.Draft(), "31");
    EXPECT_EQ(form.txtFee.Draft(), "15.00");
    form.txtMost.SetDraft("5");
    form.LeaveFields();
    EXPECT_EQ(form.txtMost.Draft(), "5") << "the other field was not edited again";
}

TEST(RulesTest, AChangedCaptionHasAMnemonic) {
    RuledForm form;
    form.Clear();
    FormView view(form, Below({form.chkOn, form.txtLeast, form.txtMost}));
    AssignMnemonics(view);
    const auto& label = *view.findChild<QLabel*>("lblLeast");
    EXPECT_EQ(label.text(), "&Least:");
    form.chkOn.SetOn(true);
    EXPECT_EQ(label.text(), "&At least:");
    form.chkOn.SetOn(false);
    EXPECT_EQ(label.text(), "&Least:");
}

TEST(RulesTest, SeveralRecordsTakeChosenFieldsOnly) {
    RuledForm form;
    form.Clear();
    form.SetSeveral(true);
    form.txtMost.SetDraft("no number");
    EXPECT_FALSE(form.FirstProblem());
    form.txtMost.SetChosen(true);
    EXPECT_EQ(form.Problems().size(), 1);
    EXPECT_EQ(form.Chosen(), QList<Field*>{&form.txtMost});
    form.SetSeveral(false);
    EXPECT_TRUE(form.Chosen().isEmpty());
    EXPECT_TRUE(form.chkOn.IsUsable());
}

TEST(TimeFieldTest, TimesAsPeopleWriteThem) {
    Form form;
    TimeField time(form, {.name = "txtOpen", .caption = "Open:", .format = "HH:mm:ss", .words = {"Closed"}});
    const QList<std::pair<QString, QString>> typed{
        {"8:30 pm", "20:30:00"}, {"2030", "20:30:00"}, {"8", "08:00:00"},  {"12 am", "00:00:00"},
        {"12p", "12:00:00"},     {"closed", "Closed"}, {"", ""},           {"0:00", "00:00:00"},
        {" 7.05 ", "07:05:00"},  {"13 pm", "13 pm"},   {"25:00", "25:00"}, {"soon", "soon"}};
    for (const auto& [text, draft] : typed) {
        time.TypeIn(text);
        EXPECT_EQ(time.Draft(), draft) << text.toStdString();
        const bool isWrong = draft == "13 pm" || draft == "25:00" || draft == "soon";
        EXPECT_EQ(time.Problem().isEmpty(), !isWrong) << text.toStdString();
    }
    time.SetStored("");
    EXPECT_EQ(time.DisplayText(), "") << "a missing time is not midnight";
    time.SetStored("Closed");
    EXPECT_EQ(time.DisplayText(), "Closed");
}

TEST(ComposedTextTest, OneTextOfSeveralEntriesAndBack) {
    Form form;
    ComposedText text(form, "P", "??");
    TextField one(form, {.name = "txtOne", .initial = "?"});
    TextField two(form, {.name = "txtTwo", .initial = "?"});
    text.parts = {&one, &two};
    text.split = [&](const QString& loaded) {
        one.SetStored(loaded.left(1));
        two.SetStored(loaded.mid(1, 1));
    };
    text.join = [&](const QString& former) { return one.Draft() + two.Draft() + former.mid(2); };
    ScriptedChannel channel;
    channel.Answer("Get", 0, {{"P", "abc"}});
    channel.SendRequest("Get");
    form.Load(channel);
    EXPECT_EQ(one.Draft() + two.Draft(), "ab");
    EXPECT_EQ(text.Text(), "abc");
    two.SetDraft("X");
    EXPECT_TRUE(form.IsChanged());
    EXPECT_EQ(text.Text(), "aXc");
    // What was saved is what there is from now on.
    form.Accept();
    EXPECT_EQ(text.Text(), "aXc");
    form.Clear();
    EXPECT_EQ(text.Text(), "??");
}

} // namespace

} // namespace sysadmin
