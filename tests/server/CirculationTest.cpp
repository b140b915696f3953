#include "Engines.h"

#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// A field that a request carries, with two values that it takes.
struct Tag {
    QString name;
    QString one;
    QString other;
};

QList<Tag> Flags(const QString& names) {
    QList<Tag> tags;
    for (const QString& name : names.split(' '))
        tags.append({name, "Y", "N"});
    return tags;
}

QList<Tag> Numbers(const QString& names) {
    QList<Tag> tags;
    for (const QString& name : names.split(' '))
        tags.append({name, QString::number(7 + tags.size()), "9999"});
    return tags;
}

QList<Tag> Amounts(const QString& names) {
    QList<Tag> tags;
    for (const QString& name : names.split(' '))
        tags.append({name, QString::number(1250 + tags.size()) + ".50", ""});
    return tags;
}

const QList<Tag>& GroupTags() {
    static const QList<Tag> tags =
        Flags("CCL AFDFOL CCF I IMF ExtRecDueDate RR HR OR LIR_ROD LIR_RRF LIR_RPF LIR_LIF TLH_HSR TLHC "
              "TLHO") +
        Amounts("LF") + Numbers("EP UI");
    return tags;
}

const QList<Tag>& LocationTags() {
    static const QList<Tag> tags = QList<Tag>{{"CL", "Y", "Y"}, {"ST", "H", "M"}, {"DP", "A", "Y"}} +
                                   Flags("CF CD OS HP RP DRP PP PL AS") + Numbers("S IT H R");
    return tags;
}

const QList<Tag>& PatronTags() {
    static const QList<Tag> tags =
        Flags("1C 1E 1X 1G 1I 1K 1M 1O 1Q 1S 12 1U 1V 11 14 15 16 17 18 19 20 21 23 25 27 MHR HBL") +
        Amounts("1D 1F") + Numbers("1H 1J 1L 1N 1P 1R 1T 13 22 24 26 HRL");
    return tags;
}

const QList<Tag>& ItemTags() {
    static const QList<Tag> tags = Flags("I5 OHM ORM CHM CRM OHLS ORLS CHLS CRLS OHLL ORLL CHLL CRLL") +
                                   Amounts("I4") + Numbers("I6 I7");
    return tags;
}

const QList<Tag>& MatrixTags() {
    static const QList<Tag> tags =
        QList<Tag>{{"LP", "1.5", "2"}, {"LnI", "H", "D"}, {"FI", "M", "D"}, {"RI", "M", "D"},
                   {"RFI", "H", "D"},  {"WI", "H", "M"},  {"HSI", "M", "H"}} +
        Flags("CR Hl Rc CSl UBREQ RF MIBA BO NO") + Amounts("FR MF RFR MRF") +
        Numbers("G MR RPr RRP MRL RGP MIB WP CI ML FO LI OC ON RNC RN HS");
    return tags;
}

wire::Fields Values(const QList<Tag>& tags, bool one) {
    wire::Fields fields;
    for (const Tag& tag : tags)
        fields.append({tag.name, one ? tag.one : tag.other});
    return fields;
}

class CirculationTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server.emplace(TestServer::Options{.address = Address()});
        m_cluster = Value("SELECT id FROM clusters WHERE code='MAIN'");
        const auto groupOf = [&](const char* name) {
            return Value("SELECT id FROM circulation_policy_groups WHERE name=?", {name});
        };
        m_names = {
            {"MAIN", m_cluster},
            {"PROF", Value("SELECT id FROM clusters WHERE code='PROF'")},
            {"Music", groupOf("Music Library")},
            {"Law", groupOf("Law Library")},
            {"Maps", groupOf("Map Center")},
            {"faculty", PatronGroup("MAIN", "faculty")},
            {"staff", PatronGroup("MAIN", "staff")},
            {"lawyer", PatronGroup("PROF", "faculty")},
            {"map", ItemType("m-map")},
            {"text", ItemType("m-text")},
            {"hour", ItemType("2-hour-reserve")},
            {"desk", Value("SELECT id FROM locations WHERE code='MAIN-ATCIRCDESK'")},
        };
    }
    QString Value(const QString& sql, const QVariantList& values = {}) {
        return m_server->Value(sql, values);
    }
    QString PatronGroup(const QString& cluster, const QString& code) {
        return Value("SELECT p.id FROM patron_groups p JOIN clusters c ON c.id=p.cluster_id WHERE c.code=? "
                     "AND p.code=?",
                     {cluster, code});
    }
    QString ItemType(const QString& code) { return Value("SELECT id FROM item_types WHERE code=?", {code}); }
    /// "TAG=VALUE TAG=@name": what stands behind the @ is a name.
    wire::Fields Parsed(const QString& text) const {
        wire::Fields fields;
        for (const QString& part : text.split(' ', Qt::SkipEmptyParts)) {
            QString value = part.section('=', 1);
            if (value.startsWith('@'))
                value = m_names.value(value.mid(1), value);
            fields.append({part.section('=', 0, 0), value});
        }
        return fields;
    }
    wire::Reply Send(const QString& name, const QString& text, const wire::Fields& more = {}) {
        return m_server->Send(name, Parsed(text) + more);
    }
    /// Lines of "REQUEST FIELDS -> STATUS"; one after the other.
    void Expect(const QString& table) {
        for (const QString& line : table.split('\n', Qt::SkipEmptyParts)) {
            const QStringList parts = line.trimmed().split(" -> ");
            if (parts.size() != 2)
                continue;
            EXPECT_EQ(Send(parts[0].section(' ', 0, 0), parts[0].section(' ', 1)).status, parts[1].toInt())
                << line.toStdString();
        }
    }
    /// The values of the tags in the record that begins with `tag` = `value`.
    static wire::Fields RecordOf(const wire::Fields& reply, const QString& tag, const QString& value,
                                 const QList<Tag>& tags) {
        wire::Fields fields;
        for (const Tag& one : tags)
            fields.append({one.name, InRecord(reply, tag, value, one.name)});
        return fields;
    }
    /// A new group of the first cluster.
    QString AddGroup(const QString& name) {
        const wire::Reply added = Send("AddCrcGp", "CID=@MAIN Nm=" + name);
        EXPECT_EQ(added.status, status::Ok);
        return wire::FirstValue(added.fields, "IdPolLoc");
    }
    QString AddCalendar(const QString& name, const QString& dates) {
        const wire::Reply added = Send("AddCal", "CID=@MAIN Nm=" + name + ' ' + dates);
        EXPECT_EQ(added.status, status::Ok) << name.toStdString();
        return wire::FirstValue(added.fields, "ID");
    }

    std::optional<TestServer> m_server;
    QString m_cluster;
    QHash<QString, QString> m_names;
};
INSTANTIATE_ON_ENGINES(CirculationTest);

TEST_P(CirculationTest, EachValueIsKeptUnderItsOwnTag) {
    const wire::Fields available = Send("CircAvail", "CID=@MAIN").fields;
    EXPECT_EQ(ValuesOf(available, "1").size(), 21);
    EXPECT_EQ(ValuesOf(available, "I1").size(), 57);
    m_names["place"] = wire::FirstValue(available, "AI");
    ASSERT_NE(m_names["place"], "");
    m_names["g"] = AddGroup("New");
    m_names["posting"] = Value("SELECT MAX(id) FROM posting_types");

    for (const bool one : {true, false}) {
        const QString state = one ? "1" : "2";
        EXPECT_EQ(Send("UpdCrcGp", "CID=@MAIN Nm=Newer POS_LIF=@posting ID=@g NNm=Y",
                       Values(GroupTags(), one) + Parsed("1B=" + state + " 1=@faculty") +
                           Values(PatronTags(), one) + Parsed("I3=" + state + " I1=@text") +
                           Values(ItemTags(), one))
                      .status,
                  status::Ok);
        EXPECT_EQ(Send("UpdCrcGpLoc", "CID=@MAIN LS=" + state + " ID=@g SI=@place",
                       Values(LocationTags(), one) + Parsed("OD=N DI=@map DL=@desk SP="))
                      .status,
                  status::Ok);
        const QString entry = Value("SELECT id FROM circulation_matrix WHERE group_id=?", {m_names["g"]});
        m_names["entry"] = entry;
        EXPECT_EQ(
            one ? Send("AddMat", "CID=@MAIN ID=@g MS= MP=@faculty MII=@map", Values(MatrixTags(), one)).status
                : Send("UpdMat", "CID=@MAIN ID=@g MI=@entry MP=@faculty MII=@map", Values(MatrixTags(), one))
                      .status,
            status::Ok);
        m_server->Restart();
        const wire::Fields group = Send("GetCrcGp", "ID=@g CID=@MAIN OI=SYSADMIN").fields;
        EXPECT_EQ(RecordOf(group, "Nm", "Newer", GroupTags()), Values(GroupTags(), one));
        EXPECT_EQ(wire::FirstValue(group, "POS_LIF"), m_names["posting"]);
        EXPECT_EQ(RecordOf(group, "I1", m_names["text"], ItemTags()), Values(ItemTags(), one));
        EXPECT_EQ(RecordOf(group, "SI", m_names["place"], LocationTags()), Values(LocationTags(), one));
        EXPECT_EQ(InRecord(group, "SI", m_names["place"], "DL"), m_names["desk"]);
        const wire::Fields patrons = Send("GetCrcPatronGp", "ID=@g CID=@MAIN OI=SYSADMIN").fields;
        EXPECT_EQ(RecordOf(patrons, "1", m_names["faculty"], PatronTags()), Values(PatronTags(), one));
        EXPECT_EQ(InRecord(patrons, "1", m_names["staff"], "1H"), "0") << "defaults where nothing is stored";
        m_names["entry"] = Value("SELECT id FROM circulation_matrix WHERE group_id=?", {m_names["g"]});
        const wire::Fields rule = Send("GetMat", "ID=@g MI=@entry").fields;
        EXPECT_EQ(RecordOf(rule, "CR", one ? "Y" : "N", MatrixTags()), Values(MatrixTags(), one));
    }
    EXPECT_EQ(Send("LstMatPatronItem", "ID=@g CID=@MAIN").fields, (wire::Fields{{"MI", m_names["entry"]},
                                                                                {"MPN", "Faculty Member"},
                                                                                {"MIN", "map"},
                                                                                {"MP", m_names["faculty"]},
                                                                                {"MII", m_names["map"]}}));
    EXPECT_EQ(InRecord(Send("LstMatSettings", "CID=@MAIN ID=@g").fields, "II", m_names["text"], "I5"), "N");
    EXPECT_EQ(Send("DelCrcGp", "ID=@g").status, status::Ok);
    EXPECT_EQ(Value("SELECT COUNT(*) FROM circulation_matrix WHERE group_id=?", {m_names["g"]}), "0");
    EXPECT_TRUE(ValuesOf(Send("CircAvail", "CID=@MAIN").fields, "AI").contains(m_names["place"]));
}

TEST_P(CirculationTest, GroupsRefuse) {
    m_names["g"] = AddGroup("New");
    m_names["mine"] = wire::FirstValue(Send("CircAvail", "CID=@MAIN").fields, "AI");
    m_names["1"] = AddCalendar("One", "StDt=20300101 EDt=20300131");
    m_names["2"] = AddCalendar("Two", "StDt=20300131 EDt=20300228");
    m_names["3"] = AddCalendar("Three", "StDt=20300201 EDt=");
    m_names["4"] = AddCalendar("Four", "StDt=20350101 EDt=20351231");
    m_names["theirs"] = Value("SELECT id FROM calendars WHERE cluster_id=? ORDER BY id", {m_names["PROF"]});
    Expect(R"(
        AddCrcGp CID=@MAIN Nm=NEW -> 7
        AddCrcGp CID=@PROF Nm=New -> 0
        AddCrcGp CID=@MAIN Nm= -> 3
        AddCrcGp CID=99 Nm=X -> 3
        UpdCrcGp CID=@PROF ID=@g Nm=X -> 5
        GetCrcGp CID=@PROF ID=@g -> 5
        GetCrcPatronGp CID=@PROF ID=@g -> 5
        DelCrcGp CID=@PROF ID=@g -> 5
        UpdCrcGp CID=@MAIN ID=@g EP=10000 -> 3
        UpdCrcGp CID=@MAIN ID=@g LF=-1 -> 3
        UpdCrcGp CID=@MAIN ID=@g LF=1,250.00 -> 3
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=1 SCI=@1 -> 0
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=1 SCI=@2 -> 133
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=4 SCI=@1 CS=1 SCI=@3 -> 0
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=1 SCI=@4 -> 133
        UpdCrcGp CID=@MAIN ID=@g A= CS=3 SCI=@3 S= CS=1 SCI=@4 -> 0
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=1 SCI=@theirs -> 5
        UpdCrcGp CID=@MAIN ID=@g A= S= CS=7 SCI=@1 -> 3
        UpdCrcGp CID=@MAIN ID=@g 1B=1 1=@lawyer -> 5
        UpdCrcGp CID=@MAIN ID=@g 1B=1 1=@faculty 22=10000 -> 3
        UpdCrcGp CID=@MAIN ID=@g 1B=4 1=@lawyer -> 0
        UpdCrcGp CID=@MAIN ID=@g I3=1 I1=@text I4=x -> 3
        UpdCal CID=@MAIN ID=@1 EDt=20350101 -> 56
        UpdCal CID=@MAIN ID=@1 EDt=20341231 -> 0
        DelCal ID=@1 -> 93
        DelCal ID=@3 -> 0
        UpdCrcGpLoc CID=@MAIN ID=@g LS=1 SI=@desk CL=Y -> 134
        UpdCrcGpLoc CID=@MAIN ID=@g LS=1 SI=99999 CL=Y -> 5
        UpdCrcGpLoc CID=@PROF ID=@g LS=1 SI=@mine -> 5
        UpdCrcGpLoc CID=@MAIN ID=@g LS=1 SI=@mine OD=Y CL=N -> 3
        UpdCrcGpLoc CID=@MAIN ID=@g LS=1 SI=@mine ST=W -> 3
        UpdCrcGpLoc CID=@MAIN ID=@g LS=1 SI=@mine OD=N CL=Y -> 0
        DelLoc ID=@mine -> 25
        GetCrcLocAlrts ALRTLOCID=99999 -> 5
        UpdCrcLocAlrts CID=@PROF CLEANLOCID=@mine -> 5
        DelPatGp ID=@lawyer -> 103
        DelCluster CID=@PROF -> 13
    )");
    m_server->GetDatabase().Run("DELETE FROM usage WHERE table_name='item_types'");
    EXPECT_EQ(Send("DelItmTp", "ID=@map").status, 14);
    m_server->SignOnAs("VIEWER");
    Expect(R"(
        GetCrcGp CID=@MAIN ID=@g -> 0
        GetCrMsc X= -> 0
        AddCrcGp CID=@MAIN Nm=Y -> 12
        UpdCrcGpLoc CID=@MAIN ID=@g -> 12
        UpdCrcLocAlrts CLEANLOCID=@mine -> 12
        AddMat CID=@MAIN ID=@g -> 12
        CopyMat CID=@MAIN ID=@g -> 12
        UpdMulMat CID=@MAIN ID=@g -> 12
        UpdMultCal CID=@MAIN -> 12
        DelMultCal CID=@MAIN -> 12
    )");
}

TEST_P(CirculationTest, OneOpacDeskOfACluster) {
    m_names["g"] = AddGroup("New");
    m_names["new"] = wire::FirstValue(Send("CircAvail", "CID=@MAIN").fields, "AI");
    const QString marked = "SELECT p.location_id FROM circulation_policy_locations p JOIN "
                           "circulation_policy_groups g ON g.id=p.group_id WHERE g.cluster_id=? AND "
                           "p.is_opac_desk='Y'";
    m_names["main"] =
        Value("SELECT group_id FROM circulation_policy_locations WHERE location_id=?", {m_names["desk"]});
    ASSERT_EQ(Value(marked, {m_cluster}), m_names["desk"]);
    Expect(R"(
        DelCrcGp ID=@main -> 80
        UpdCrcGpLoc CID=@MAIN LS=3 ID=@main SI=@desk -> 51
        UpdCrcGpLoc CID=@MAIN LS=1 ID=@g SI=@new CL=Y OD=Y -> 0
        UpdCrcGpLoc CID=@MAIN LS=3 ID=@main SI=@desk -> 0
        UpdCrcGpLoc CID=@MAIN LS=2 ID=@g SI=@new CL=N -> 3
        UpdCrcGpLoc CID=@MAIN LS=2 ID=@g SI=@new CL=Y OD=Y LS=1 ID=@g SI=@desk CL=Y OD=Y -> 3
        UpdCrcGpLoc CID=@MAIN LS=3 ID=@g SI=@new LS=1 ID=@g SI=@desk CL=Y OD=Y -> 0
        DelCrcGp ID=@g -> 80
    )");
    EXPECT_EQ(Value(marked, {m_cluster}), m_names["desk"]);
    EXPECT_EQ(
        Value("SELECT group_id FROM circulation_policy_locations WHERE location_id=?", {m_names["desk"]}),
        m_names["g"]);

    m_names["a"] = Value("SELECT MIN(id) FROM patron_alerts");
    m_names["b"] = Value("SELECT MAX(id) FROM patron_alerts");
    EXPECT_EQ(ValuesOf(Send("GetCrcAlrt", "").fields, "ALRTID").size(), 5);
    EXPECT_EQ(wire::FirstValue(Send("GetAutoRetrieveSys", "").fields, "AutoRetrieveSys"), "N");
    const QString both = "ALRTLOCID=@desk ALRTID=@a ALRTDISP=2 ALRTUSENAME=Y ALRTUSEBARCODE=N "
                         "ALRTUSEPHONE=Y ALRTLOCID=@desk ALRTID=@b ALRTDISP=1 ALRTUSENAME=N "
                         "ALRTUSEBARCODE=Y ALRTUSEPHONE=N";
    const auto alerts = [&] { return Send("GetCrcLocAlrts", "ALRTLOCID=@desk").fields; };
    EXPECT_EQ(Send("UpdCrcLocAlrts", "CID=@MAIN CLEANLOCID=@desk ALRTAVL=N ALRTFF=Y " + both).status, 0);
    wire::Fields expected = Parsed("ALRTAVL=N ALRTFF=Y " + both);
    expected.removeIf([](const wire::Field& field) { return field.tag == u"ALRTLOCID"; });
    EXPECT_EQ(alerts(), expected);
    EXPECT_EQ(Send("UpdCrcLocAlrts", "CLEANLOCID=@desk ALRTAVL=Y ALRTFF=N ALRTLOCID=@desk ALRTID=@a "
                                     "ALRTDISP=3")
                  .status,
              3);
    EXPECT_EQ(alerts(), expected) << "all or nothing";
    EXPECT_EQ(Send("UpdCrcLocAlrts", "CLEANLOCID=@desk ALRTAVL=Y ALRTFF=N").status, 0);
    EXPECT_EQ(alerts(), Parsed("ALRTAVL=Y ALRTFF=N"));
}

TEST_P(CirculationTest, MatrixEntriesAreAllOrNothing) {
    m_names["g"] = AddGroup("New");
    const QString pairs = "CID=@MAIN ID=@g MS= MP=@faculty MII=@map MS= MP=@staff MII=@map ";
    EXPECT_EQ(Send("UpdCrcGp", "CID=@MAIN ID=@g I3=1 I1=@hour I5=Y").status, 0);
    Expect("AddMat " + pairs + "LP=14 LnI=D G=2 -> 0\n" + R"(
        AddMat CID=@MAIN ID=@g MS= MP=@staff MII=@text MS= MP=@staff MII=@map LP=3 -> 132
        CopyMat CID=@MAIN ID=@g MS= MP=@staff MII=@map LP=3 -> 132
        CopyMat CID=@MAIN ID=@g MS= MP=@staff MII=@text MS= MP=@staff MII=@map LP=21 OV=Y -> 0
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@text MS= MP=@faculty MII=@text -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@hour MS= MP=@faculty MII=@text -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@lawyer MII=@text -> 5
        AddMat CID=@MAIN ID=@g MS= MP=@faculty -> 3
        AddMat CID=@MAIN ID=@g LP=3 -> 3
        AddMat CID=@PROF ID=@g MS= MP=@faculty MII=@text -> 5
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@text LnI=H -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@text LnI=H RI=T FI=M RFI=H -> 0
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@hour LnI=H RI=T FI=H RFI=H -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@faculty MII=@hour LnI=I RI=D FI=M RFI=H -> 0
        AddMat CID=@MAIN ID=@g MS= MP=@staff MII=@hour LnI=T RI=H -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@staff MII=@hour LP=-1 -> 3
        AddMat CID=@MAIN ID=@g MS= MP=@staff MII=@hour MIB=10000 -> 3
    )");
    const wire::Fields list = Send("LstMatPatronItem", "ID=@g CID=@MAIN").fields;
    const auto entry = [&](const QString& patron, const QString& item) {
        return Value("SELECT id FROM circulation_matrix WHERE group_id=? AND patron_group_id=? AND "
                     "item_type_id=?",
                     {m_names["g"], m_names[patron], m_names[item]});
    };
    EXPECT_EQ(ValuesOf(list, "MI").size(), 5);
    m_names["fm"] = entry("faculty", "map");
    m_names["sm"] = entry("staff", "map");
    m_names["ft"] = entry("faculty", "text");
    const auto of = [&](const QString& name, const QString& tag) {
        return wire::FirstValue(Send("GetMat", "ID=@g MI=@" + name).fields, tag);
    };
    EXPECT_EQ(of("sm", "LP") + ' ' + of("sm", "G"), "21 0") << "overwritten as a whole";
    EXPECT_EQ(of("fm", "LP") + ' ' + of("fm", "G"), "14 2");
    const QString two = "UpdMulMat CID=@MAIN ID=@g MI=@fm MP=@faculty MII=@map MI=@sm MP=@staff MII=@map ";
    Expect(two + "MI=@ft MP=@faculty MII=@text LP=5 LnI=D -> 3\n" + two +
           "MI=@ft MP=@faculty MII=@text LP=5 LnI=D RI=D FI=D RFI=D -> 0\n" + two +
           "MI=@ft MP=@staff MII=@text LP=6 -> 5\n" + two + "LP=7 MR=3 RPr=7 -> 0\n" + R"(
        UpdMat CID=@MAIN ID=@g MI=@fm MP=@staff MII=@map LP=9 -> 5
        UpdMat CID=@MAIN ID=@g MI=@fm MP=@faculty MII=@map LnI=M -> 3
        UpdMat CID=@MAIN ID=@Maps MI=@fm MP=@faculty MII=@map LP=9 -> 5
        GetMat ID=@Maps MI=@fm -> 5
        DelMat ID=@Maps MI=@fm -> 5
    )");
    EXPECT_EQ(of("fm", "LP") + of("sm", "MR") + of("ft", "LP") + of("ft", "LnI"), "735D");

    // What other clients' records stand on stays.
    m_server->GetDatabase().Run(
        "INSERT INTO usage (table_name, kind, record_id, used) VALUES ('circulation_matrix', "
        "'circulation transactions', ?, 1)",
        {m_names["fm"].toLongLong()});
    Expect("DelMat MI=@fm ID=@g -> 92\nDelCrcGp ID=@g -> 79\nDelMat MI=@sm ID=@g -> 0\n"
           "DelMat MI=@sm ID=@g -> 5");
}

TEST_P(CirculationTest, CalendarsInOrder) {
    const QString days =
        "SnOpn=N MnOpn=Y MnOTm=08:00 MnCTm=17:00 MnDTm=09:00 MnETm=16:00 TuOpn=Y TuOTm=22:00 "
        "TuCTm=02:00 TuDTm=01:00 TuETm=23:00 WdOpn=Y WdOTm=02:00 WdCTm=02:00 WdDTm= WdETm= "
        "ThOpn=Y ThOTm=08:01 ThCTm=12:02 ThDTm=08:02 ThETm=12:01 FrOpn=N StOpn=Y "
        "StOTm=09:00 StCTm=13:00 StDTm=10:00 StETm=11:00 ";
    const QString dates = "StDt=20300101 EDt=20301231 FDDt=20300601 ";
    const QString lists = "ExDt=20300102 ExOpn=N ExOTm= ExCTm= ExDTm= ExETm= ExDt=20300501 ExOpn=Y "
                          "ExOTm=10:00 ExCTm=01:00 ExDTm=11:00 ExETm=00:30 ETrm=20300401 LDay=14 "
                          "ETrm=20300801 LDay=0";
    m_names["c"] = AddCalendar("C", dates + days + "ExRq=1 " + lists);
    m_server->Restart();
    const auto get = [&](const QString& name) { return Send("GetCal", "CID=@MAIN ID=@" + name).fields; };
    wire::Fields stored = get("c");
    for (const wire::Field& field : Parsed("Nm=C " + dates + days))
        EXPECT_TRUE(stored.contains(field)) << field.tag.toStdString();
    EXPECT_EQ(stored.mid(stored.size() - 16), Parsed(lists));
    // Each on its own against the calendar as it is.
    const QList<QPair<QString, int>> cases{
        {"TuDTm=03:00", 3},
        {"TuETm=21:59", 3},
        {"TuDTm=02:00", 0},
        {"MnDTm=07:59", 3},
        {"MnDTm=17:01", 3},
        {"MnOTm=", 3},
        {"MnOTm=8:00", 3},
        {"MnCTm=24:00", 3},
        {"SnOpnTm=08:00", 3},
        {"SnOpn=Y SnOpnTm=08:00 SnClsTm=10:00", 0},
        {"SnOpn=N SnOpnTm= SnClsTm=", 0},
        {"WdOTm=01:59", 3},
        {"StDt=20310101", 3},
        {"StDt=", 3},
        {"StDt=20300103", 0},
        {"FDDt=20310101", 123},
        {"FDDt=", 0},
        {"ETrm=20310101 LDay=1", 123},
        {"ETrm=20300202 LDay=x", 3},
        {"ETrm=20300202 ETrm=20300202", 3},
        {"ExRq= ExDt=20291231 ExOpn=N", 123},
        {"ExRq= ExDt=20300230 ExOpn=N", 3},
        {"ExRq= ExDt=20300203 ExOpn=Y", 3},
        {"ExRq= ExDt=20300203 ExOpn=N ExOTm=08:00", 3},
    };
    // An earlier begin makes the exception of January one outside: it goes first.
    EXPECT_EQ(Send("UpdCal", "CID=@MAIN ID=@c ExRq= ETrm=20300401 LDay=14").status, 0);
    for (const auto& [fields, expected] : cases)
        EXPECT_EQ(Send("UpdCal", "CID=@MAIN ID=@c " + fields).status, expected) << fields.toStdString();
    Expect(R"(
        AddCal CID=@MAIN Nm=c StDt=20300101 -> 7
        GetCal CID=@PROF ID=@c -> 5
        UpdCal CID=@PROF ID=@c -> 5
        DelMultCal ID=@c ID=99999 -> 5
    )");
}

TEST_P(CirculationTest, SeveralCalendarsAtOnce) {
    m_names["a"] =
        AddCalendar("A", "StDt=20300101 EDt=20301231 ExRq= ExDt=20300501 ExOpn=N ETrm=20300601 LDay=7");
    m_names["b"] = AddCalendar("B", "StDt=20300301 EDt=20301231");
    m_names["late"] = AddCalendar("Late", "StDt=20300801 EDt=20301231");
    m_names["g"] = AddGroup("New");
    EXPECT_EQ(Send("UpdCrcGp", "CID=@MAIN ID=@g S= CS=1 SCI=@late").status, 0);
    const wire::Reply changed =
        Send("UpdMultCal", "CID=@MAIN ID=@a ID=@b ID=@late StDt= EDt=20311231 FDDt= ExRq= ExDt=20300501 "
                           "ExOpn=Y ExOTm=08:00 ExCTm=12:00 ExDt=20300502 ExOpn=N ETrm=20300601 LDay=3");
    EXPECT_EQ(changed.status, 0);
    EXPECT_EQ(
        changed.fields,
        (wire::Fields{{"Nm", "Late"},
                      {"Err", "This calendar cannot be saved.  A date is outside the calendar's coverage "
                              "dates."}}));
    const wire::Fields a = Send("GetCal", "ID=@a").fields;
    EXPECT_EQ(ValuesOf(a, "ExDt"), (QStringList{"20300501", "20300502"}));
    EXPECT_EQ(ValuesOf(a, "ExOpn"), (QStringList{"Y", "N"}));
    EXPECT_EQ(ValuesOf(a, "LDay"), QStringList{"3"});
    EXPECT_EQ(wire::FirstValue(a, "StDt") + wire::FirstValue(a, "EDt"), "2030010120311231");
    EXPECT_EQ(wire::FirstValue(Send("GetCal", "ID=@late").fields, "EDt"), "20301231");
    const wire::Reply removed = Send("DelMultCal", "CID=@MAIN ID=@a ID=@late ID=@b");
    EXPECT_EQ(removed.status, 0);
    EXPECT_EQ(removed.fields,
              (wire::Fields{{"Nm", "Late"},
                            {"Err", "This calendar cannot be deleted while it is assigned to a "
                                    "Circ Policy Group."}}));
    EXPECT_FALSE(ValuesOf(Send("LstCal", "CID=@MAIN").fields, "Nm").contains("A"));
}

} // namespace
} // namespace sysadmin::testing
