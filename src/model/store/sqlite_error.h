// SPDX-License-Identifier: MIT
#pragma once

#include "base/error.h"

struct sqlite3;

namespace quillo {

/// Sorts a result code of SQLite (extended or not, https://sqlite.org/rescode.html) and the errno
/// behind it. Malformed means that the file is no store or a damaged one; every other kind says
/// that the file may be sound and must be left alone.
[[nodiscard]] ErrorKind errorKindFromSqlite(int resultCode, int systemError);

/// True for a failure that lies in the values of one row and not in the store.
[[nodiscard]] bool isFailureOfOneRow(int resultCode);

/// The connection's latest failure. SQLite's texts name tables and columns, never values.
[[nodiscard]] Error latestSqliteError(sqlite3* handle);

}  // namespace quillo
