#include "framework/ImportFile.h"
#include "framework/ManyFields.h"
#include "framework/forms/Rules.h"

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

QList<QStringList> Records(const ImportFile& file) {
    QList<QStringList> records{file.headings};
    for (const wire::CsvRecord& record : file.records)
        records.append(record.fields);
    return records;
}

TEST(ImportFile, ReadsWhatSpreadsheetProgramsWrite) {
    const QList<QStringList> wanted{{"code", "name"}, {"A", "Zo\u00EB, \"x\";\t"}, {"B", "two\nlines"}};
    const QString name = "\"Zo\u00EB, \"\"x\"\";\t\"";
    for (const QString& separator : {QString(","), QString(";"), QString("\t")})
        for (const QString& end : {QString("\r\n"), QString("\n")}) {
            const QString text = QStringList{"code" + separator + "name", "A" + separator + name,
                                             "B" + separator + "\"two\nlines\"", ""}
                                     .join(end);
            const QByteArray mark = "\xEF\xBB\xBF";
            EXPECT_EQ(Records(ReadImportFile(text.toUtf8())), wanted) << text.toStdString();
            EXPECT_EQ(Records(ReadImportFile(mark + text.toUtf8())), wanted) << text.toStdString();
            QByteArray wide = QByteArray("\xFF\xFE");
            for (const QChar c : text)
                wide.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
            EXPECT_EQ(Records(ReadImportFile(wide)), wanted) << text.toStdString();
        }
    // A comma in a heading does not make the file one of commas.
    EXPECT_EQ(Records(ReadImportFile("\"Name, first\";Code;Note\nx;y;z")),
              (QList<QStringList>{{"Name, first", "Code", "Note"}, {"x", "y", "z"}}));
}

TEST(ImportFile, SaysWhereARecordBeginsAndWhatIsWrongWithAFile) {
    const ImportFile file = ReadImportFile("a,b\n\n1,\"x\ny\"\n ,\n2,z");
    ASSERT_EQ(file.records.size(), 2);
    EXPECT_EQ(file.records[0].line, 3);
    EXPECT_EQ(file.records[1].line, 6);
    EXPECT_EQ(ReadImportFile("a,b\n1,\"2").problem, "Line 2: a quotation mark is opened and not closed.");
    EXPECT_EQ(ReadImportFile("a,b\n\xE9,1").problem, "The file is not text in UTF-8.");
    for (const char* empty : {"", "\n\n", "a,b", "a,b\r\n,\r\n"})
        EXPECT_EQ(ReadImportFile(empty).problem, "The file has no lines below its headings.") << empty;
}

TEST(ImportFile, ColumnsFindTheirFields) {
    const QList<ImportTarget> targets{{"Location Code", {"Location Code", "LocCd"}, nullptr, 0},
                                      {"Monday: Open", {"Open (MO)", "MO"}, nullptr, -1},
                                      {"Tuesday: Open", {"Open (TO)", "TO"}, nullptr, -1}};
    EXPECT_EQ(MatchColumns({" location  code:", "Open (TO)", "mo", "Open", ""}, targets),
              (QList<int>{0, 2, 1, -1, -1}));
    EXPECT_EQ(MatchColumns({"LocCd", "Location Code"}, targets), (QList<int>{0, -1}));
}

struct ImportedRuleForm : Form {
    TextField txtCode{*this, {.name = "txtCode", .tag = "Cd", .caption = "&Code:", .required = true}};
    NumberField txtLimit{*this,
                         {.name = "txtLimit",
                          .tag = "Lm",
                          .caption = "Limit:",
                          .enabledBy = "chkLimit",
                          .least = 1,
                          .most = 99}};
    FlagField chkLimit{*this, {.name = "chkLimit", .tag = "L", .caption = "Limited"}};
    ChoiceField cboKind{*this, {.name = "cboKind", .tag = "K", .caption = "Kind:"}};
    LetterField optRank{
        *this,
        {.name = "optRank", .tag = "R", .caption = "Rank:", .options = {{"F", "&First"}, {"S", "&Second"}}}};
    IntervalField txtTime{*this,
                          {.name = "txtTime",
                           .tag = "T",
                           .caption = "Time:",
                           .options = {{"D", "Days"}, {"W", "Weeks"}, {"M", "Month"}}}};
    DateField fpEnd{*this, {.name = "fpEnd", .tag = "E", .caption = "End:", .format = "MM/dd/yyyy"}};
    TimeField txtFrom{*this, {.name = "txtFrom", .tag = "Fr", .caption = "From:"}};
    MoneyField txtFee{*this, {.name = "txtFee", .tag = "Fe", .caption = "Fee:"}};
    MultiLineField txtNote{*this, {.name = "txtNote", .tag = "N", .caption = "Note:"}};

    ImportedRuleForm() {
        cboKind.SetItems(
            {{"", "(none)"}, {"17", "Open Shelves"}, {"18", "12"}, {"x7", "Twin"}, {"x8", "Twin"}});
        txtLimit.EnableBy(chkLimit);
        When([this] { return optRank.Draft() == u"S"; }).Set(txtNote, "second");
    }
};

TEST(ManyFields, TextsAreEnteredAsAnOperatorWouldEnterThem) {
    struct Entry {
        const char* field;
        const char* text;
        const char* draft;
        const char* problem = "";
    };
    for (const Entry& entry : std::initializer_list<Entry>{
             {"chkLimit", "yes", "Y"},
             {"chkLimit", "0", "N"},
             {"chkLimit", "", "N"},
             {"chkLimit", "maybe", "N", "\"Limited\" must be Yes or No."},
             {"cboKind", " open shelves ", "17"},
             {"cboKind", "12", "18"}, // its text, and not a number of a record
             {"cboKind", "17", "", "\"Kind\" has no entry \"17\"."},
             {"cboKind", "(none)", ""},
             {"cboKind", "X7", "x7"},
             {"cboKind", "twin", "", "\"Kind\" has several entries \"twin\"."},
             {"cboKind", "Closed", "", "\"Kind\" has no entry \"Closed\"."},
             {"optRank", "second", "S"},
             {"optRank", "F", "F"},
             {"optRank", "Third", "", "\"Rank\" has no entry \"Third\"."},
             {"txtTime", "3 weeks", "3W"},
             {"txtTime", "1 month", "1M"},
             {"txtTime", "12 d", "12D"},
             {"txtTime", "3W", "3W"},
             {"txtTime", "3", "", "\"Time\" must be a number and a unit (days, weeks, month)."},
             {"txtTime", "weeks", "", "\"Time\" must be a number and a unit (days, weeks, month)."},
             {"fpEnd", "2026-11-21", "11/21/2026"},
             {"fpEnd", "11/21/2026", "11/21/2026"},
             {"txtFrom", "8:30 pm", "20:30"},
             {"txtNote", "two\r\nlines", "two\nlines"},
             {"txtCode", " AB ", "AB"},
             {"txtCode", "two\nlines", "", "\"Code\" takes one line."},
         }) {
        ImportedRuleForm form;
        form.Clear();
        auto& field = static_cast<ValueField&>(*form.Find(entry.field));
        EXPECT_EQ(EnterText(field, entry.text), entry.problem) << entry.field << ' ' << entry.text;
        EXPECT_EQ(field.Draft(), entry.draft) << entry.field << ' ' << entry.text;
    }
}

TEST(ManyFields, WhatAFieldSaysChangesNothing) {
    ImportedRuleForm form;
    const QHash<QString, QString> stored{
        {"txtCode", " kept  blanks "}, {"cboKind", "x8"}, {"txtTime", "0D"},    {"fpEnd", "11/21/2026"},
        {"txtFee", "1234.50"},         {"chkLimit", "?"}, {"txtFrom", "20:30"}, {"txtNote", "a\nb"}};
    for (auto each = stored.begin(); each != stored.end(); ++each)
        static_cast<ValueField*>(form.Find(each.key()))->SetStored(each.value());
    for (Field* field : form.Fields()) {
        EXPECT_EQ(EnterText(static_cast<ValueField&>(*field), FileText(*field)), "")
            << field->Name().toStdString();
        EXPECT_FALSE(field->IsChanged()) << field->Name().toStdString();
    }
}

TEST(ManyFields, WhatOthersDependOnIsEnteredFirst) {
    ImportedRuleForm form;
    EXPECT_EQ(EnterDrafts({{&form.txtLimit, "007"}, {&form.chkLimit, "Y"}}), "");
    EXPECT_EQ(form.txtLimit.Draft(), "7");
    form.Clear();
    EXPECT_EQ(EnterDrafts({{&form.txtLimit, "7"}}), "\"Limit\" cannot be used in this record.");
    EXPECT_EQ(EnterDrafts({{&form.txtLimit, ""}}), ""); // it is so already
    EXPECT_EQ(EnterDrafts({{&form.cboKind, "99"}}), "\"Kind\" does not have this entry here.");
    // One value brings another along; what was wanted else is said.
    EXPECT_EQ(EnterDrafts({{&form.optRank, "S"}}), "");
    EXPECT_EQ(form.txtNote.Draft(), "second");
    form.Clear();
    EXPECT_EQ(EnterDrafts({{&form.txtNote, "mine"}, {&form.optRank, "S"}}),
              "\"Note\" does not go together with another value.");
}

TEST(ManyFields, TheFormOfSeveralHasItsOwnFieldsInTheSamePlaces) {
    ImportedRuleForm form;
    CommonForm common({&form.chkLimit, &form.txtLimit, &form.cboKind, &form.txtNote});
    EXPECT_EQ(common.For(form.txtCode), nullptr);
    EXPECT_TRUE(common.For(form.txtLimit)->IsUsable()); // no rule of the form
    EXPECT_EQ(static_cast<ChoiceField*>(common.For(form.cboKind))->Items(), form.cboKind.Items());
    const Layout layout = common.LayoutFrom(
        Below({form.txtCode, Beside({form.chkLimit, form.txtLimit}),
               Tabs("tab", {Page("&One", {Frame("fra", "Kinds", {form.cboKind, form.txtFee})}),
                            Page("Two", {form.fpEnd, Note("nothing is left of it")})})}));
    ASSERT_EQ(layout.children.size(), 4); // both of a line, the frame of the only page, what stood nowhere
    EXPECT_EQ(layout.children[0].field, common.For(form.chkLimit));
    EXPECT_EQ(layout.children[1].field, common.For(form.txtLimit));
    EXPECT_EQ(layout.children[2].text, "Kinds");
    ASSERT_EQ(layout.children[2].children.size(), 1);
    EXPECT_EQ(layout.children[3].field, common.For(form.txtNote));
}

TEST(ManyFields, CaptionsThatRepeatSayWhereTheyStand) {
    struct WeekForm : Form {
        TextField txtMonday{*this, {.name = "txtMonday", .tag = "Mo", .caption = "Open:"}};
        TextField txtTuesday{*this, {.name = "txtTuesday", .tag = "Tu", .caption = "&Open:"}};
        TextField txtSunday{*this, {.name = "txtSunday", .tag = "Su", .caption = "Open:"}};
        TextField txtNote{*this, {.name = "txtNote", .tag = "Nt", .caption = "Note:"}};
    } form;
    const QList<const Field*> fields(form.Fields().begin(), form.Fields().end());
    const Layout layout = Below({Frame("a", "&Monday", {form.txtMonday}),
                                 Frame("b", "Other", {form.txtTuesday, form.txtSunday, form.txtNote})});
    EXPECT_EQ(FieldTitles(fields, layout),
              (QStringList{"Monday: Open", "Other: Open (Tu)", "Other: Open (Su)", "Note"}));
    EXPECT_EQ(FileCaptions(fields), (QStringList{"Open (Mo)", "Open (Tu)", "Open (Su)", "Note"}));
}

} // namespace
} // namespace sysadmin
