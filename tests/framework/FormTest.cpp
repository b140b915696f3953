#include "framework/forms/ListFields.h"
#include "framework/forms/PutList.h"
#include "support/ScriptedChannel.h"

#include <gtest/gtest.h>

namespace sysadmin {

namespace {

struct SampleForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode", .tag = "Cd", .caption = "Code:", .maxLength = 5, .required = true}};
    FlagField chkLimit{*this, {.name = "chkLimit", .tag = "L", .caption = "Limit:"}};
    NumberField txtLimit{*this,
                         {.name = "txtLimit", .tag = "LP", .caption = "Limit percentage:", .most = 100}};
    ChoiceField cboLibrary{
        *this,
        {.name = "cboLibrary", .tag = "Lb", .caption = "Library:", .options = {{"1", "Main"}, {"2", "Law"}}}};
    MoneyField txtFee{*this, {.name = "txtFee", .tag = "Fee", .caption = "Fee:"}};
    DateField dtEnd{*this, {.name = "dtEnd", .tag = "EDt", .caption = "End:", .suffix = " 23:59:59"}};
    IntervalField fpPeriod{*this,
                           {.name = "fpPeriod",
                            .tag = "LKD",
                            .caption = "Period:",
                            .options = {{"M", "Minutes"}, {"H", "Hours"}},
                            .unitName = "cboPeriod",
                            .letterFirst = true}};
    MultiLineField txtNote{*this, {.name = "txtNote", .tag = "N", .caption = "Note:"}};

    SampleForm() { txtLimit.EnableBy(chkLimit); }

    void LoadFrom(const wire::Fields& reply) {
        ScriptedChannel channel;
        channel.Answer("Get", 0, reply);
        channel.SendRequest("Get");
        Load(channel);
    }
    wire::Fields Put(const QList<PutStep>& steps, const SaveContext& context) {
        ScriptedChannel channel;
        for (const PutStep& step : steps)
            step(channel, context);
        channel.Answer("Save", 0);
        channel.SendRequest("Save");
        return channel.sent.last().fields;
    }
};

const wire::Fields Record{{"Cd", "AB"},   {"L", "Y"},          {"LP", "90"},
                          {"Lb", "77"},   {"Fee", "1,234.50"}, {"EDt", "2027-06-30 23:59:59"},
                          {"LKD", "H24"}, {"N", "one\r\ntwo"}};

TEST(FormTest, WhatWasLoadedIsPutUnchanged) {
    SampleForm form;
    form.LoadFrom(Record);
    EXPECT_FALSE(form.IsChanged());
    EXPECT_FALSE(form.FirstProblem());
    QList<PutStep> all;
    for (Field* field : form.Fields())
        all.append(PutValue(*field));
    wire::Fields expected = Record;
    expected[4].value = "1234.50"; // group marks are the only thing that does not come back
    EXPECT_EQ(form.Put(all, {}), expected);
    EXPECT_EQ(form.dtEnd.Date(), QDate(2027, 6, 30));
    EXPECT_EQ(form.fpPeriod.Number(), "24");
    EXPECT_EQ(form.fpPeriod.Unit(), "H");
    EXPECT_EQ(form.txtNote.Draft(), "one\ntwo");
}

TEST(FormTest, ChangeIsComputedFromTheValues) {
    SampleForm form;
    form.LoadFrom(Record);
    form.txtCode.SetDraft("ab");
    EXPECT_TRUE(form.txtCode.IsChanged()) << "letter case counts";
    form.txtCode.SetDraft("AB");
    EXPECT_FALSE(form.IsChanged());
    form.fpPeriod.SetParts("24", "M");
    EXPECT_EQ(form.fpPeriod.Draft(), "M24");
    EXPECT_TRUE(form.IsChanged());
    form.Revert();
    EXPECT_FALSE(form.IsChanged());
    form.txtCode.SetDraft("X");
    form.Accept();
    EXPECT_FALSE(form.IsChanged());
    EXPECT_EQ(form.txtCode.Stored(), "X");
}

TEST(FormTest, BlankValuesAndProblems) {
    SampleForm form;
    form.Clear();
    EXPECT_FALSE(form.IsComplete());
    EXPECT_EQ(form.Put({PutValue(form.txtFee), PutValue(form.chkLimit), PutValue(form.dtEnd)}, {}),
              (wire::Fields{{"Fee", " "}, {"L", "N"}, {"EDt", ""}}));
    form.txtCode.SetDraft("TOOLONG");
    EXPECT_EQ(form.FirstProblem()->text, "\"Code\" takes 5 characters at the most.");
    form.txtCode.SetDraft("OK");
    form.txtFee.SetDraft("ten");
    EXPECT_EQ(form.FirstProblem()->field, &form.txtFee);
    EXPECT_EQ(form.txtFee.Normalised("1,000"), "1000.00");
    form.txtFee.SetDecimals(0);
    EXPECT_EQ(form.txtFee.Normalised("1000"), "1000");
}

TEST(FormTest, OddServerValuesSurvive) {
    SampleForm form;
    form.LoadFrom({{"Cd", "AB"}, {"L", "?"}, {"Lb", "no such library"}});
    EXPECT_FALSE(form.chkLimit.IsOn());
    EXPECT_FALSE(form.IsChanged());
    EXPECT_EQ(form.cboLibrary.Draft(), "no such library");
    EXPECT_EQ(form.cboLibrary.DisplayText(), "no such library");

    // What is longer than its field may stay, and only that.
    form.LoadFrom({{"Cd", "LONGER"}, {"LP", "007"}, {"LKD", "H007"}});
    EXPECT_FALSE(form.FirstProblem());
    form.Tidy();
    EXPECT_FALSE(form.IsChanged());
    form.txtCode.SetDraft("LONGEST");
    EXPECT_EQ(form.FirstProblem()->field, &form.txtCode);
    form.txtLimit.SetDraft("0080");
    form.fpPeriod.SetParts("024", "H");
    form.Tidy();
    EXPECT_EQ(form.Put({PutValue(form.txtLimit), PutValue(form.fpPeriod)}, {}),
              (wire::Fields{{"LP", "80"}, {"LKD", "H24"}}));
}

} // namespace

} // namespace sysadmin
