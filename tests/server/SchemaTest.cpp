#include "Engines.h"

#include "server/Library.h"
#include "server/store/Catalogue.h"
#include "server/store/Database.h"
#include "server/store/Records.h"
#include "server/store/Schema.h"
#include "support/TestServer.h"

#include <QFile>
#include <QTemporaryDir>

namespace sysadmin::testing {
namespace {

using namespace server;

class SchemaTest : public EngineTest {
protected:
    SchemaTest()
        : EngineTest(Beginning::Nothing) {}
    StoreAddress Place() const { return Address().value_or(StoreAddress::InDirectory(m_directory.path())); }
    QTemporaryDir m_directory;
};
INSTANTIATE_ON_ENGINES(SchemaTest);

TEST_P(SchemaTest, OlderLibrariesGetWhatIsNew) {
    Schema schema{.tables = {{.name = "shelves", .columns = {{.name = "name"}}}}, .migrations = {}};
    Database database(Place());
    EXPECT_EQ(BringToSchema(database, schema), "");
    for (const char* name : {"North", "South", " NORTH "})
        database.Run("INSERT INTO shelves (name) VALUES (?)", {name});

    // Columns, a table that refers to this one and is referred to by it, a unique text, and a migration.
    int runs = 0;
    schema.tables[0].columns << Column{.name = "kind", .fallback = "it's open"}
                             << Column{.name = "height", .type = ColumnType::Whole, .fallback = "7"}
                             << Column{.name = "room_id", .type = ColumnType::Reference, .target = "rooms"};
    schema.tables[0].uniqueTexts << UniqueText{"name"};
    schema.tables << Table{
        .name = "rooms",
        .columns = {{.name = "best_shelf_id", .type = ColumnType::Reference, .target = "shelves"}}};
    schema.migrations << Migration{
        2, [&](Database& migrated) {
            ++runs;
            migrated.Run("UPDATE shelves SET name=? WHERE name=?", {"Far South", "South"});
        }};
    EXPECT_EQ(BringToSchema(database, schema), "");
    EXPECT_EQ(BringToSchema(database, schema), "");
    EXPECT_EQ(runs, 1);
    const QVariantList south =
        *database.FirstRow("SELECT name, kind, height, room_id FROM shelves WHERE id=2");
    EXPECT_EQ(south.mid(0, 3), (QVariantList{"Far South", "it's open", 7}));
    EXPECT_TRUE(south[3].isNull());
    Tables tables{{"shelves", schema.tables[0]}, {"rooms", schema.tables[1]}};
    Records records(database, tables);
    EXPECT_TRUE(records.IsTaken("shelves", {"name"}, "north", {}, 0));
    // Two of the same from the time when that was allowed do not hold up the rest.
    EXPECT_TRUE(records.Update("shelves", 3, {{"name", "West"}}));
    EXPECT_EQ(records.IdOfText("shelves", "name", "WEST"), 3);
    EXPECT_THROW(records.Insert("shelves", {{"name", "west"}}), StoreError);
    EXPECT_THROW(records.Insert("shelves", {{"name", "East"}, {"room_id", 99}}), StoreError);

    // A program that knows less refuses to touch it.
    schema.migrations.clear();
    EXPECT_TRUE(BringToSchema(database, schema).contains("later version"));
}

TEST_P(SchemaTest, WhatIsThereIsComparedAndNotWhatWasSaid) {
    Schema schema{.tables = {{.name = "rooms", .columns = {{.name = "name"}}},
                             {.name = "shelves",
                              .columns = {{.name = "name"},
                                          {.name = "height", .type = ColumnType::Whole},
                                          {.name = "room_id",
                                           .type = ColumnType::Reference,
                                           .target = "rooms",
                                           .onRemoval = OnRemoval::RemoveToo}},
                              .uniqueSets = {{"name"}}},
                             {.name = "books",
                              .columns = {{.name = "shelf_id",
                                           .type = ColumnType::Reference,
                                           .target = "shelves",
                                           .onRemoval = OnRemoval::RemoveToo}}}}};
    Database database(Place());
    EXPECT_EQ(BringToSchema(database, schema), "");
    database.Run("INSERT INTO rooms (name) VALUES ('Hall')");
    for (const char* name : {"A", "B", "C"})
        database.Run("INSERT INTO shelves (name, room_id) VALUES (?, 1)", {name});
    database.Run("DELETE FROM shelves WHERE name='C'");
    database.Run("INSERT INTO books (shelf_id) VALUES (1)");
    // A rule by hand, which the schema does not know, and a column of a program that was tried and given up.
    database.Run("DROP INDEX shelves_name_ix");
    database.Run("ALTER TABLE shelves ADD COLUMN tried TEXT DEFAULT 'kept'");

    // Another default, another removal rule, and two names that may be the same.
    Table& shelves = schema.tables[1];
    shelves.columns[0].fallback = "It's new";
    shelves.columns[1].fallback = "-7";
    shelves.columns[2].onRemoval = OnRemoval::Clear;
    shelves.uniqueSets = {{"name", "room_id"}};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(BringToSchema(database, schema), "");
        const StoredTable is = ReadCatalogue(database)["shelves"];
        const StoredTable wanted = StoredForm(shelves);
        for (const QString& column : wanted.order)
            EXPECT_TRUE(is.columns[column] == wanted.columns[column]) << column.toStdString();
        EXPECT_TRUE(is.indexes == wanted.indexes);
    }
    EXPECT_EQ(database.FirstColumn("SELECT shelf_id FROM books"), QVariantList{1})
        << "rewriting removes nothing";
    EXPECT_EQ(database.FirstValue("SELECT tried FROM shelves WHERE id=2"), "kept");
    const qint64 fourth = database.RunInsert("INSERT INTO shelves (room_id) VALUES (?)", {1});
    EXPECT_EQ(fourth, 4) << "the id of a row that is gone is not given again";
    EXPECT_EQ(*database.FirstRow("SELECT name, height FROM shelves WHERE id=?", {fourth}),
              (QVariantList{"It's new", -7}));
    database.Run("DELETE FROM rooms WHERE name='Hall'");
    EXPECT_EQ(database.FirstColumn("SELECT room_id FROM shelves WHERE id=1"), QVariantList{QVariant()});
    EXPECT_THROW(database.Run("UPDATE shelves SET room_id=99 WHERE id=1"), StoreError)
        << "references hold again";
}

TEST_P(SchemaTest, ANewLibraryNeedsNoMigrations) {
    int runs = 0;
    Database database(Place());
    EXPECT_EQ(BringToSchema(database, {.tables = {}, .migrations = {{2, [&](Database&) { ++runs; }}}}), "");
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(ReadSetting(database, "schema_version"), "2");
}

TEST_P(SchemaTest, AFailedTransactionLeavesNothing) {
    Database database(Place());
    BringToSchema(database,
                  {.tables = {{.name = "shelves", .columns = {{.name = "name"}}}}, .migrations = {}});
    EXPECT_THROW(RunInTransaction(database,
                                  [&] {
                                      database.Run("INSERT INTO shelves (name) VALUES ('a')");
                                      database.Run("INSERT INTO nothing (name) VALUES ('b')");
                                  }),
                 StoreError);
    EXPECT_FALSE(RunInTransaction(database, Transaction::Mode::Write, [&] {
        database.Run("INSERT INTO shelves (name) VALUES ('c')");
        return false;
    }));
    EXPECT_EQ(database.FirstValue("SELECT COUNT(*) FROM shelves").toInt(), 0);
}

TEST_P(SchemaTest, QueriesMayRunInsideOfQueries) {
    Database database(Place());
    BringToSchema(database, {.tables = {{.name = "shelves", .columns = {{.name = "name"}}}}});
    for (const char* name : {"a", "b", "c"})
        database.Run("INSERT INTO shelves (name) VALUES (?)", {name});
    const QString sql = "SELECT id, name FROM shelves WHERE id>=? ORDER BY id";
    QStringList seen;
    database.Each(sql, {1}, [&](const ResultRow& outer) {
        database.Each(sql, {outer.value(0)}, [&](const ResultRow& inner) {
            seen << outer.value(1).toString() + inner.value(1).toString() +
                        database.FirstRow(sql, {inner.value(0)})->last().toString();
        });
    });
    EXPECT_EQ(seen.join(' '), "aaa abb acc bbb bcc ccc");
}

TEST(LibraryTest, WhatCannotBeOpenedIsSaidInOneLine) {
    QTemporaryDir directory;
    const auto open = [](const StoreAddress& address, LibraryOptions::WhenMissing whenMissing) {
        QString error;
        const auto library = Library::Open(
            {.address = address, .whenMissing = whenMissing, .hashCost = HashCost::Least()}, &error);
        EXPECT_EQ(library == nullptr, !error.isEmpty());
        EXPECT_FALSE(error.contains('\n'));
        return error;
    };
    const StoreAddress place = StoreAddress::InDirectory(directory.filePath("new/library"));
    EXPECT_TRUE(open(place, LibraryOptions::WhenMissing::Refuse).contains("no library"));
    EXPECT_FALSE(QFile::exists(directory.filePath("new")));
    EXPECT_EQ(open(place, LibraryOptions::WhenMissing::MakeSample), "");
    {
        Database database(place);
        WriteSetting(database, "schema_version", "9999");
    }
    EXPECT_TRUE(open(place, LibraryOptions::WhenMissing::Refuse).contains("later version"));

    QFile file(place.file);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(8192);
    file.write(QByteArray(20'000, char(0x5a)));
    file.close();
    EXPECT_TRUE(open(place, LibraryOptions::WhenMissing::Refuse).contains("damaged"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray(5000, 'x'));
    file.close();
    EXPECT_TRUE(open(place, LibraryOptions::WhenMissing::MakeSample).contains("damaged"));
    // A file in the place of the directory.
    EXPECT_FALSE(
        open(StoreAddress::InDirectory(place.file), LibraryOptions::WhenMissing::MakeSample).isEmpty());
    StoreAddress nowhere;
    nowhere.engine = StoreAddress::Engine::PostgreSql;
    nowhere.host = "127.0.0.1";
    nowhere.port = 1;
    nowhere.database = "x";
    nowhere.password = "secret";
    const QString error = open(nowhere, LibraryOptions::WhenMissing::MakeSample);
    EXPECT_TRUE(error.contains("127.0.0.1"));
    EXPECT_FALSE(error.contains("secret"));
}

TEST(LibraryTest, ANewLibraryHasOneAdministratorWhoMustChangeThePassword) {
    QTemporaryDir directory;
    LibraryOptions options;
    options.address = StoreAddress::InDirectory(directory.path());
    options.whenMissing = LibraryOptions::WhenMissing::MakeEmpty;
    options.hashCost = HashCost::Least();
    QString error;
    const auto library = Library::Open(options, &error);
    ASSERT_TRUE(library);
    EXPECT_FALSE(library->IsSample());
    TestClient client(library, "192.0.2.1");
    ASSERT_EQ(client.SignOn("SYSADMIN", library->FirstPassword()), status::Ok);
    EXPECT_EQ(client.Send("LstVenTp").status, status::NotAuthorised);
    EXPECT_EQ(
        client
            .Ask("ChgOwnPwd", {{"OPW", client.Seal(library->FirstPassword(), wire::PasswordPurpose::Confirm)},
                               {"PW", client.Seal("My-own-1")}})
            ->status,
        status::Ok);
    EXPECT_EQ(client.Send("LstVenTp").status, status::Ok);
    EXPECT_EQ(client.Send("AddVenTp", {{"Cd", "A"}, {"Nm", "B"}}).status, status::Ok);
    // The search indexes of the system are there from the start, and no others.
    EXPECT_EQ(client.Send("GetCSDef", {{"Cd", "TITL"}}).status, status::Ok);
    EXPECT_EQ(client.Send("GetKSrch", {{"Cd", "GKEY"}}).status, status::Ok);
    EXPECT_EQ(client.Send("GetKSrch", {{"Cd", "SKEY"}}).status, status::NotFound);
    const auto again = Library::Open(options, &error);
    EXPECT_EQ(again->FirstPassword(), "");
    EXPECT_EQ(again->GetSealingKeys().publicKey, library->GetSealingKeys().publicKey);
}

} // namespace
} // namespace sysadmin::testing
