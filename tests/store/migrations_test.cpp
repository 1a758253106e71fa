// SPDX-License-Identifier: MIT
#include "model/store/store_migrations.h"

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

TEST_F(MigrationsTest, TheStepsOfTheProgramAscendFromOne) {
    int expected = 1;
    for (const MigrationStep& step : storeMigrations()) {
        EXPECT_EQ(step.version, expected++);
    }
}

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
        database->execute("INSERT INTO Clip(id, fileSize, isPinned, type) "
                          "VALUES(zeroblob(16), 0, 0, 0)"));
    const MigrationStep steps[] = {first, {2, addColumn}};
    ASSERT_TRUE(migrate(*database, steps));
    EXPECT_EQ(version(), 2);
    EXPECT_TRUE(hasColumn("extra"));
    EXPECT_EQ(database->queryInteger("SELECT count(*) FROM Clip"), 1);
    EXPECT_EQ(database->queryInteger("SELECT rows FROM RowCount WHERE entity = 0"), 1);
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
