#include "server/Engines.h"
#include "support/TestServer.h"
#include "wire/Status.h"

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// An address as the addresses dialog sends it.
wire::Fields AddressOf(const QString& action, const QString& id, const QString& contact,
                       const wire::Fields& phones = {}) {
    return wire::Fields{{"AdrRq", action}, {"AdrID", id}, {"AdrNm", contact}, {"EMl", "a@example.org"},
                        {"Adr1", "Annex"}, {"Adr2", ""},  {"Adr3", ""},       {"Adr4", ""},
                        {"Adr5", ""},      {"City", "X"}, {"St", ""},         {"Zip", "1"},
                        {"Cty", ""},       {"SAN", ""},   {"Ship", "Y"},      {"Bill", "N"},
                        {"Strt", "N"},     {"Cmp", "N"},  {"CDsk", "N"},      {"Other", "Y"}} +
           phones;
}

wire::Fields Phone(const QString& number, const QString& type, const QString& action,
                   const QString& address) {
    return {{"PhNm", number}, {"PhTp", type}, {"PhRq", action}, {"PhAID", address}};
}

class LocationsTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server.emplace(TestServer::Options{.address = Address()});
        const wire::Reply added = Send("AddLoc", {{"Cd", "ATTIC"}, {"Nm", "Attic"}});
        m_id = wire::FirstValue(added.fields, "ID");
        EXPECT_EQ(added.fields, (wire::Fields{{"ID", m_id}, {"Cd", "ATTIC"}}));
    }
    wire::Reply Send(const QString& name, const wire::Fields& fields = {}) {
        return m_server->Send(name, fields);
    }
    qint16 StatusOf(const QString& name, const wire::Fields& fields = {}) {
        return Send(name, fields).status;
    }
    /// Saves addresses of the new location, as the dialog does.
    qint16 SaveAddress(const wire::Fields& address) {
        return StatusOf("UpdLoc",
                        address + wire::Fields{{"Cd", "ATTIC"}, {"Nm", "Attic"}, {"ID", m_id}, {"NCd", "N"}});
    }
    wire::Fields Record() { return Send("GetLoc", {{"ID", m_id}}).fields; }
    QString IdOf(const QString& code) {
        return m_server->Value("SELECT id FROM locations WHERE code=?", {code});
    }

    std::optional<TestServer> m_server;
    QString m_id;
};

TEST_P(LocationsTest, ListCarriesLibrariesAndPhoneTypes) {
    const wire::Fields list = Send("LstLoc").fields;
    EXPECT_EQ(ValuesOf(list, "ID").size(), 634);
    EXPECT_EQ(InRecord(list, "Cd", "ART-ATCIRCDESK", "LN"), "Art & Architecture Library");
    EXPECT_EQ(ValuesOf(list, "PDsc"), (QStringList{"Primary", "Mobile", "Fax", "Other"}));
    EXPECT_EQ(ValuesOf(list, "PTps").size(), 4);
}

TEST_P(LocationsTest, RecordNamesItsPolicyGroups) {
    const wire::Fields desk = Send("GetLoc", {{"ID", IdOf("LAW-ATCIRCDESK")}}).fields;
    EXPECT_EQ(wire::FirstValue(desk, "CtGrp"), "Law Cataloging");
    EXPECT_EQ(wire::FirstValue(desk, "ASGrp"), "Law Acquisitions");
    EXPECT_EQ(wire::FirstValue(desk, "CrGrp"), "Law Library");
    const wire::Fields alone = Record();
    for (const char* tag : {"CtGrp", "ASGrp", "CrGrp"})
        EXPECT_EQ(wire::FirstValue(alone, tag), "") << tag;
}

TEST_P(LocationsTest, UpdateMovesToAnotherLibrary) {
    const QString music = m_server->Value("SELECT id FROM owning_libraries WHERE name='Music Library'");
    EXPECT_EQ(StatusOf("UpdLoc", {{"Cd", "ATTIC"},
                                  {"Nm", "attic"},
                                  {"Spn", "At"},
                                  {"Dsp", "Upstairs"},
                                  {"OPAC", "Y"},
                                  {"Lb", music},
                                  {"ID", m_id},
                                  {"NCd", "False"},
                                  {"NNm", "Y"}}),
              status::Ok);
    m_server->Restart();
    m_server->SignOnAs("SYSADMIN");
    EXPECT_EQ(Record().mid(0, 6), (wire::Fields{{"Cd", "ATTIC"},
                                                {"Nm", "attic"},
                                                {"Spn", "At"},
                                                {"Dsp", "Upstairs"},
                                                {"OPAC", "Y"},
                                                {"Lb", music}}));
    EXPECT_EQ(StatusOf("UpdLoc", {{"Cd", "art-atcircdesk"}, {"Nm", "X"}, {"ID", m_id}}),
              status::DuplicateCode);
    EXPECT_EQ(StatusOf("UpdLoc", {{"Cd", ""}, {"Nm", "X"}, {"ID", m_id}}), status::ColumnError);
    EXPECT_EQ(StatusOf("UpdLoc", {{"Cd", "A"}, {"Nm", "X"}, {"ID", "99999"}}), status::NotFound);
    EXPECT_EQ(StatusOf("AddLoc", {{"Cd", "B"}, {"Nm", "X"}, {"Lb", "99999"}}), status::ColumnError);
}

TEST_P(LocationsTest, AddressesAndPhonesAreKeptWithTheLocation) {
    EXPECT_EQ(
        SaveAddress(AddressOf("1", "", "Desk", Phone("100", "1", "1", "") + Phone("101", "3", "1", ""))),
        status::Ok);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "Dock", Phone("102", "", "1", ""))), status::Ok);
    m_server->Restart();
    m_server->SignOnAs("SYSADMIN");
    wire::Fields record = Record();
    const QStringList ids = ValuesOf(record, "AdrID");
    ASSERT_EQ(ids.size(), 2);
    EXPECT_EQ(ValuesOf(record, "AdrNm"), (QStringList{"Desk", "Dock"}));
    EXPECT_EQ(ValuesOf(record, "Other"), (QStringList{"Y", "Y"}));
    EXPECT_EQ(ValuesOf(record, "PhAID"), (QStringList{ids[0], ids[0], ids[1]}));
    EXPECT_EQ(ValuesOf(record, "PhNm"), (QStringList{"100", "101", "102"}));
    EXPECT_EQ(ValuesOf(record, "PhTp"), (QStringList{"1", "3", ""}));
    const QStringList phoneIds = ValuesOf(record, "PhID");

    // One phone is changed, one removed, one added; the other address is not touched.
    EXPECT_EQ(SaveAddress(AddressOf("2", ids[0], "Front desk",
                                    Phone("200", "2", "2", ids[0]) + Phone("101", "3", "3", ids[0]) +
                                        Phone("300", "4", "1", ids[0]))),
              status::Ok);
    record = Record();
    EXPECT_EQ(ValuesOf(record, "AdrNm"), (QStringList{"Front desk", "Dock"}));
    EXPECT_EQ(ValuesOf(record, "PhNm"), (QStringList{"200", "300", "102"}));
    EXPECT_EQ(ValuesOf(record, "PhID")[2], phoneIds[2]);

    // A save of the location alone leaves the addresses as they are.
    EXPECT_EQ(StatusOf("UpdLoc", {{"Cd", "ATTIC"}, {"Nm", "Loft"}, {"ID", m_id}}), status::Ok);
    EXPECT_EQ(ValuesOf(Record(), "PhNm").size(), 3);

    EXPECT_EQ(SaveAddress(AddressOf("3", ids[0], "", Phone("200", "2", "3", ids[0]))), status::Ok);
    EXPECT_EQ(ValuesOf(Record(), "AdrID"), QStringList{ids[1]});
    EXPECT_EQ(ValuesOf(Record(), "PhNm"), QStringList{"102"});
    EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), status::Ok);
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM location_addresses WHERE location_id=" + m_id), "0");
}

TEST_P(LocationsTest, AddressesThatAreNotInOrderChangeNothing) {
    const QString foreign =
        m_server->Value("SELECT id FROM location_addresses WHERE contact='Art Loan Desk'");
    EXPECT_EQ(SaveAddress(AddressOf("2", foreign, "Taken over")), status::NotFound);
    EXPECT_EQ(SaveAddress(AddressOf("3", foreign, "")), status::NotFound);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "Desk", Phone("1", "1", "1", foreign))), status::ColumnError);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "Desk", Phone(" ", "1", "1", ""))), status::ColumnError);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "Desk", Phone("1", "77", "1", ""))), status::ColumnError);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "Desk", Phone("1", "1", "9", ""))), status::ColumnError);
    EXPECT_EQ(SaveAddress(AddressOf("9", "", "Desk")), status::ColumnError);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", QString(101, 'x'))), status::ColumnError);
    EXPECT_TRUE(ValuesOf(Record(), "AdrID").isEmpty());
    EXPECT_EQ(ValuesOf(Send("GetLoc", {{"ID", IdOf("ART-ATCIRCDESK")}}).fields, "AdrNm"),
              QStringList{"Art Loan Desk"});

    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(SaveAddress(AddressOf("1", "", QString::number(i))), status::Ok);
    EXPECT_EQ(SaveAddress(AddressOf("1", "", "one too many")), status::ColumnError);
}

TEST_P(LocationsTest, EveryUseRefusesTheRemoval) {
    const QHash<QString, int> kinds{{"holdings records", 20},
                                    {"items", 21},
                                    {"line items", 22},
                                    {"line item copies", 26},
                                    {"account locations", 27},
                                    {"purchase orders", 28},
                                    {"ledger locations", 29},
                                    {"invoices", 30},
                                    {"holds and recalls", 31},
                                    {"fine and fee transactions", 32},
                                    {"fines and fees", 33},
                                    {"exceptions", 34},
                                    {"serial claims", 35},
                                    {"marked issues", 36},
                                    {"marked line items", 37},
                                    {"issues received", 38},
                                    {"reserve lists", 39},
                                    {"renewals", 40},
                                    {"archived renewals", 41},
                                    {"circulation transactions", 42},
                                    {"archived circulation transactions", 43},
                                    {"circulation transaction exceptions", 44},
                                    {"media rooms", 45},
                                    {"scheduled media rooms", 46},
                                    {"archived scheduled media rooms", 47},
                                    {"media policy locations", 48},
                                    {"media security locations", 49},
                                    {"routing list members", 50},
                                    {"call slip rules", 52}};
    Database& database = m_server->GetDatabase();
    for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
        database.Run("INSERT INTO usage (table_name, kind, record_id, used) VALUES ('locations', ?, ?, 1)",
                     {kind.key(), m_id.toLongLong()});
        EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), *kind) << kind.key().toStdString();
        database.Run("DELETE FROM usage WHERE record_id=? AND table_name='locations'", {m_id.toLongLong()});
    }
    const QList<QPair<QString, int>> groups{{"acquisitions", 23}, {"cataloging", 24}, {"circulation", 25}};
    for (const auto& [group, refused] : groups) {
        database.Run("INSERT INTO " + group +
                         "_policy_locations (group_id, location_id) SELECT MIN(id), ? FROM " + group +
                         "_policy_groups",
                     {m_id.toLongLong()});
        EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), refused) << group.toStdString();
        database.Run("DELETE FROM " + group + "_policy_locations WHERE location_id=?", {m_id.toLongLong()});
    }
    database.Run("INSERT INTO data_change_profiles_locations (profile_id, location_id) "
                 "SELECT MIN(id), ? FROM data_change_profiles",
                 {m_id.toLongLong()});
    EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), 111);
    database.Run("DELETE FROM data_change_profiles_locations WHERE location_id=?", {m_id.toLongLong()});
    EXPECT_EQ(StatusOf("DelLoc", {{"ID", IdOf("MAIN-ATCIRCDESK")}}), 51) << "the public catalogue's desk";
    EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), status::Ok);
    EXPECT_EQ(StatusOf("DelLoc", {{"ID", m_id}}), status::NotFound);
}

TEST_P(LocationsTest, RightsDecide) {
    m_server->SignOnAs("VIEWER");
    EXPECT_EQ(StatusOf("GetLoc", {{"ID", m_id}}), status::Ok);
    for (const char* name : {"AddLoc", "UpdLoc", "DelLoc"})
        EXPECT_EQ(StatusOf(name, {{"ID", m_id}, {"Cd", "X"}, {"Nm", "X"}}), status::NotAuthorised) << name;
    m_server->SignOnAs("CIRC");
    EXPECT_EQ(StatusOf("LstLoc"), status::Ok) << "other screens choose from it";
    EXPECT_EQ(StatusOf("GetLoc", {{"ID", m_id}}), status::NotAuthorised);
    EXPECT_EQ(StatusOf("GetDAdr"), status::NotAuthorised);
}

TEST_P(LocationsTest, DefaultAddressIsAddedOnce) {
    EXPECT_EQ(wire::FirstValue(Send("GetDAdr").fields, "LNm"), "University Libraries");
    EXPECT_EQ(StatusOf("AddDAdr", {{"LNm", "Another"}}), status::DuplicateRecord);
    m_server->GetDatabase().Run("DELETE FROM default_address");
    EXPECT_EQ(Send("GetDAdr").fields, wire::Fields{});
    EXPECT_EQ(StatusOf("UpdDAdr", {{"LNm", "Nobody"}}), status::NotFound);
    EXPECT_EQ(StatusOf("AddDAdr", {{"LNm", "First"}, {"CCm", "Desk"}, {"City", "Y"}}), status::Ok);
    EXPECT_EQ(StatusOf("UpdDAdr", {{"LNm", "Second"}, {"City", "Z"}}), status::Ok);
    m_server->Restart();
    m_server->SignOnAs("SYSADMIN");
    const wire::Fields record = Send("GetDAdr").fields;
    EXPECT_EQ(record.mid(0, 2), (wire::Fields{{"LNm", "Second"}, {"CCm", "Desk"}}));
    EXPECT_EQ(wire::FirstValue(record, "City"), "Z");
}

INSTANTIATE_ON_ENGINES(LocationsTest);

} // namespace
} // namespace sysadmin::testing
