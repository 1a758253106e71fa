// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include "model/store/object_context.h"
#include "model/store/sqlite_database.h"

namespace quillo {

/// A statement with what is bound to its positions.
struct StoreQuery {
    QByteArray sql;
    QList<Value> bindings;
};

/// The keys of the records of a request, in its order.
[[nodiscard]] StoreQuery idsQuery(const FetchRequest& request);

/// The same with the light attributes after the key, in the order of the declaration.
[[nodiscard]] StoreQuery rowsQuery(const FetchRequest& request);

/// The keys and these light attributes of the records of a request, in its order.
[[nodiscard]] StoreQuery valuesQuery(const FetchRequest& request, const QList<int>& attributes);

/// The place in the table, the key and the light attributes of the records of a piece.
[[nodiscard]] StoreQuery walkQuery(const ObjectContext::Walk& piece);

/// How many records a request gives; at once for a request of everything.
[[nodiscard]] StoreQuery countQuery(const FetchRequest& request);

/// The statement with its values bound.
[[nodiscard]] Result<SqliteStatement> prepared(SqliteDatabase& database, const StoreQuery& query);

/// Keys one after another in one blob, for idsQuery's kind of statement.
[[nodiscard]] QByteArray joinedKeys(const QList<ObjectId>& ids);

}  // namespace quillo
