// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "model/store/record_writer.h"

namespace quillo {

class SqliteDatabase;

/// The attributes of a record that the model derives from others (derivations() of object_model),
/// computed inside the transaction that writes the record.

/// What a new record with these values derives.
[[nodiscard]] QList<AttributeValue> derivedForNew(Entity entity,
                                                  const QList<AttributeValue>& values);

/// What an update makes different: computed from the values being written and, for the others,
/// from what the store holds at this moment, so that two contexts' changes meet. Reads nothing
/// unless a value that something is derived from is among them; empty for a record that is gone.
[[nodiscard]] Result<QList<AttributeValue>> derivedForUpdate(SqliteDatabase& database,
                                                             const ObjectId& id,
                                                             const QList<AttributeValue>& values);

/// Computes every derived attribute whose rule has another version than the store was computed
/// with, in the open transaction; a few hundred rows at a time. At once when none has.
[[nodiscard]] Result<void> refreshDerived(SqliteDatabase& database);

/// Whether refreshDerived has anything to do; one small query.
[[nodiscard]] Result<bool> isDerivedStale(SqliteDatabase& database);

/// Makes the table of rule versions; "current" says that the store holds no older values.
[[nodiscard]] QList<QByteArray> derivationTable();
[[nodiscard]] QList<QByteArray> currentDerivations();

}  // namespace quillo
