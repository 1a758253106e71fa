// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "base/result.h"

namespace quillo {

class SqliteDatabase;

/// One step from the version before to `version`.
struct MigrationStep {
    int version;
    Result<void> (*run)(SqliteDatabase& database);
};

/// The steps of this program, ascending from 1. The first makes the schema of the declared model
/// and serves new files only: a new file is at the newest version at once.
[[nodiscard]] std::span<const MigrationStep> storeMigrations();

/// Brings the store to the version of the last step, each step in a transaction of its own with
/// the version (PRAGMA user_version) it reaches. NewerVersion for a store above the last step and
/// Malformed for tables without a version; both leave the file as it was.
[[nodiscard]] Result<void> migrate(SqliteDatabase& database, std::span<const MigrationStep> steps);

/// The check at migrate's start alone.
[[nodiscard]] Result<int> readableVersion(SqliteDatabase& database, int newestVersion);

}  // namespace quillo
