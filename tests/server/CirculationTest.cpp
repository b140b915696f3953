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

} // namespace
} // namespace sysadmin::testing
