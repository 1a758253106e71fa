// SPDX-License-Identifier: MIT
#include "model/store/store_migrations.h"

#include "model/store/derived_attributes.h"
#include "model/store/sqlite_database.h"
#include "model/store/store_schema.h"
#include "model/store/store_transaction.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

Result<void> createSchema(SqliteDatabase& database) {
    for (const QByteArray& statement : schemaStatements()) {
        if (auto done = database.execute(statement); !done) {
            return done;
        }
    }
    return {};
}

// The indexes are made once the column is filled.
Result<void> addFilterMask(SqliteDatabase& database) {
    if (auto done =
            database.execute("DROP INDEX IF EXISTS ClipByCreatedAt; "
                             "ALTER TABLE Clip ADD COLUMN filterMask INTEGER NOT NULL DEFAULT 0; "
                             "CREATE TABLE Derivation(attribute TEXT PRIMARY KEY NOT NULL, "
                             "ruleVersion INTEGER NOT NULL) STRICT, WITHOUT ROWID");
        !done) {
        return done;
    }
    if (auto done = refreshDerived(database); !done) {
        return done;
    }
    return database.execute(
        "CREATE INDEX ClipByCreatedAt ON Clip(createdAt DESC, id, filterMask); "
        "CREATE INDEX ClipByPinned ON Clip(isPinned DESC, createdAt DESC, id, filterMask); "
        "CREATE INDEX ClipById ON Clip(id, createdAt, filterMask)");
}

constexpr MigrationStep kSteps[] = {{1, createSchema}, {2, addFilterMask}};

Result<void> runStep(SqliteDatabase& database, const MigrationStep& step, int reachedVersion) {
    StoreTransaction transaction(database);
    if (auto begun = transaction.begin(); !begun) {
        return begun;
    }
    if (auto done = step.run(database); !done) {
        return done;
    }
    const QByteArray version = "PRAGMA user_version = " + QByteArray::number(reachedVersion);
    if (auto done = database.execute(version); !done) {
        return done;
    }
    return transaction.commit();
}

}  // namespace

std::span<const MigrationStep> storeMigrations() {
    return kSteps;
}

Result<int> readableVersion(SqliteDatabase& database, int newestVersion) {
    const auto version = database.queryInteger("PRAGMA user_version");
    if (!version) {
        return std::unexpected(version.error());
    }
    if (*version > newestVersion) {
        return failure(
            ErrorKind::NewerVersion,
            u"The store is of version %1; this program knows versions up to %2."_s.arg(*version)
                .arg(newestVersion));
    }
    const auto filled = hasAnyTable(database);
    if (!filled) {
        return std::unexpected(filled.error());
    }
    if (*version < 0 || (*version == 0) == *filled) {
        return failure(ErrorKind::Malformed, u"The file is a database of another kind."_s);
    }
    return int(*version);
}

Result<void> migrate(SqliteDatabase& database, std::span<const MigrationStep> steps) {
    const int newest = steps.back().version;
    const auto version = readableVersion(database, newest);
    if (!version) {
        return std::unexpected(version.error());
    }
    if (*version == 0) {
        return runStep(database, steps.front(), newest);
    }
    for (const MigrationStep& step : steps) {
        if (step.version <= *version) {
            continue;
        }
        if (auto done = runStep(database, step, step.version); !done) {
            return done;
        }
    }
    return {};
}

}  // namespace quillo
