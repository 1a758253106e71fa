// SPDX-License-Identifier: MIT
#include "model/store/store_migrations.h"

#include "model/filter_mask.h"
#include "model/store/derived_attributes.h"
#include "model/store/store_schema.h"
#include "store_fixture.h"

using namespace Qt::StringLiterals;
using namespace quillo;
using namespace quillo::testing;

namespace {

Result<void> addColumn(SqliteDatabase& database) {
    return database.execute("ALTER TABLE Clip ADD COLUMN extra TEXT");
}

Result<void> addTwiceAndFail(SqliteDatabase& database) {
    if (auto done = database.execute("ALTER TABLE Clip ADD COLUMN half TEXT"); !done) {
        return done;
    }
    return database.execute("ALTER TABLE Clip ADD COLUMN half TEXT");
}

class MigrationsTest : public StoreTest {
protected:
    void SetUp() override {
        writeFile("");
        database = std::move(*SqliteDatabase::open(filePath().toUtf8()));
        first = storeMigrations().front();
    }
    qint64 version() { return database->queryInteger("PRAGMA user_version").value(); }
    bool hasColumn(const char* name) {
        return database->prepare(QByteArray("SELECT ") + name + " FROM Clip").has_value();
    }

    std::unique_ptr<SqliteDatabase> database;
    MigrationStep first{};
};

TEST_F(MigrationsTest, AFreshFileIsAtTheNewestVersionAtOnceAndAgain) {
    const MigrationStep steps[] = {first, {2, addTwiceAndFail}};
    ASSERT_TRUE(migrate(*database, steps)) << "the second step is for old files only";
    EXPECT_EQ(version(), 2);
    EXPECT_TRUE(checkSchema(*database));
    ASSERT_TRUE(migrate(*database, steps));
    EXPECT_EQ(version(), 2);
}

TEST_F(MigrationsTest, AnOldFileTakesTheStepsAboveItsOwnAndKeepsItsRows) {
    ASSERT_TRUE(migrate(*database, std::span(&first, 1)));
    ASSERT_TRUE(
        database->execute("INSERT INTO Clip(id, fileSize, isPinned, type, filterMask) "
                          "VALUES(zeroblob(16), 0, 0, 0, 1)"));
    const MigrationStep steps[] = {first, {2, addColumn}};
    ASSERT_TRUE(migrate(*database, steps));
    EXPECT_EQ(version(), 2);
    EXPECT_TRUE(hasColumn("extra"));
    EXPECT_EQ(database->queryInteger("SELECT count(*) FROM Clip"), 1);
    EXPECT_EQ(database->queryInteger("SELECT rows FROM RowCount WHERE entity = 0"), 1);
}

TEST_F(MigrationsTest, AStoreOfTheFirstVersionGetsItsFilterMasks) {
    QFile schema(QStringLiteral(QUILLO_TEST_DATA "/store/schema_1.sql"));
    ASSERT_TRUE(schema.open(QIODevice::ReadOnly));
    ASSERT_TRUE(database->execute(schema.readAll() + "PRAGMA user_version = 1"));
    // More rows than are filled at once; some differ, and one has no text.
    ASSERT_TRUE(database->execute(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1500) "
        "INSERT INTO Clip(id, fileSize, isPinned, type, plaintext, fileName) SELECT "
        "randomblob(16), 0, i = 7, CASE WHEN i % 3 = 0 THEN 4 ELSE 0 END, "
        "CASE WHEN i % 3 = 1 THEN '#ff8800' WHEN i = 2 THEN NULL ELSE 'text' END, 'a.csv' FROM n"));
    ASSERT_TRUE(migrate(*database, storeMigrations()));
    EXPECT_TRUE(checkSchema(*database));
    const auto rows = [this](FilterType filter) {
        return database->queryInteger("SELECT count(*) FROM Clip WHERE filterMask = ?",
                                      {Value(qint64{filterBit(filter)})});
    };
    EXPECT_EQ(rows(FilterType::Text), 500);
    EXPECT_EQ(rows(FilterType::Color), 500);
    EXPECT_EQ(database->queryInteger(
                  "SELECT count(*) FROM Clip WHERE filterMask = ?",
                  {Value(qint64{filterBit(FilterType::AllFiles) | filterBit(FilterType::Csv)})}),
              500);
    const auto indexes = [](SqliteDatabase& store) {
        return store
            .queryInteger(
                "SELECT count(*) FROM pragma_index_list('Clip') AS i, pragma_index_info(i.name)")
            .value();
    };
    const auto fresh = SqliteDatabase::open("file:/migrated?vfs=memdb");
    ASSERT_TRUE(migrate(**fresh, storeMigrations()));
    EXPECT_EQ(indexes(*database), indexes(**fresh)) << "the same as in a new store";
    EXPECT_EQ(isDerivedStale(*database), false);
}

TEST_F(MigrationsTest, AnotherRuleFillsTheMasksAnewOnOpening) {
    database.reset();
    QFile::remove(filePath());
    open();
    addText(u"text"_s);
    close();
    for (const char* before :
         {"UPDATE Derivation SET ruleVersion = 99", "DELETE FROM Derivation"}) {
        {
            const auto store = SqliteDatabase::open(filePath().toUtf8());
            ASSERT_TRUE((*store)->execute("UPDATE Clip SET filterMask = 1024"));
            ASSERT_TRUE((*store)->execute(before));
        }
        open();
        EXPECT_EQ(controller->viewContext().fetch<Clip>({}).value().first()->filterMask(),
                  filterBit(FilterType::Text))
            << before;
        close();
        EXPECT_EQ(isDerivedStale(**SqliteDatabase::open(filePath().toUtf8())), false);
    }
}

TEST_F(MigrationsTest, AFailingStepIsUndoneAndTheStepsBeforeItStay) {
    ASSERT_TRUE(migrate(*database, std::span(&first, 1)));
    const MigrationStep steps[] = {first, {2, addColumn}, {3, addTwiceAndFail}};
    EXPECT_FALSE(migrate(*database, steps));
    EXPECT_EQ(version(), 2);
    EXPECT_TRUE(hasColumn("extra"));
    EXPECT_FALSE(hasColumn("half"));
}

TEST_F(MigrationsTest, FilesOfOtherMakingAreRefused) {
    struct Row {
        const char* name;
        QByteArray sql;
        ErrorKind kind;
    };
    const Row rows[] = {
        {"newer", "PRAGMA user_version = 7", ErrorKind::NewerVersion},
        {"tables without a version", "PRAGMA user_version = 0; CREATE TABLE t(x)",
         ErrorKind::Malformed},
        {"negative", "PRAGMA user_version = -3", ErrorKind::Malformed},
        {"a version without tables", "DROP TABLE t; PRAGMA user_version = 1", ErrorKind::Malformed},
    };
    for (const Row& row : rows) {
        ASSERT_TRUE(database->execute(row.sql)) << row.name;
        const auto done = migrate(*database, std::span(&first, 1));
        ASSERT_FALSE(done) << row.name;
        EXPECT_EQ(done.error().kind, row.kind) << row.name;
        EXPECT_FALSE(hasColumn("id")) << row.name;
    }
}

}  // namespace
