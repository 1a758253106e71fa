// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include "base/result.h"
#include "model/store/object_model.h"

namespace quillo {

class SqliteDatabase;

/// The table that holds an entity's heavy attributes, apart from the rows that listings walk;
/// empty when the entity has none.
[[nodiscard]] QByteArray heavyTable(Entity entity);

/// Positions of an entity's attributes of one weight, in the order of the declaration.
[[nodiscard]] QList<int> attributesOf(Entity entity, AttributeLoad load);

/// The statements that make an empty store from the declared model.
[[nodiscard]] QList<QByteArray> schemaStatements();

/// The statements that empty an entity's tables page by page, which costs a fraction of deleting
/// row by row. They need foreign keys off, and secure_delete off to be quick: the freed pages then
/// keep what they held until the file is rebuilt, and a marker stays for it (hasUnclearedPages).
[[nodiscard]] QList<QByteArray> clearingStatements(Entity entity);

/// Whether free pages of the file still hold what was deleted.
[[nodiscard]] Result<bool> hasUnclearedPages(SqliteDatabase& database);

/// Builds the file anew from its rows, without free pages, and takes the marker away.
[[nodiscard]] Result<void> rebuildFile(SqliteDatabase& database);

/// Whether the file holds any table at all.
[[nodiscard]] Result<bool> hasAnyTable(SqliteDatabase& database);

/// Malformed when the tables are not those that a store of any version has. Reads no rows but one.
[[nodiscard]] Result<void> checkIsStore(SqliteDatabase& database);

/// Malformed when a table or column of the model is missing. Reads no rows but one.
[[nodiscard]] Result<void> checkSchema(SqliteDatabase& database);

}  // namespace quillo
