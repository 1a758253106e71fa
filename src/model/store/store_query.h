// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include "model/store/object_context.h"

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

/// How many records a request gives; at once for a request of everything.
[[nodiscard]] StoreQuery countQuery(const FetchRequest& request);

/// Keys one after another in one blob, for idsQuery's kind of statement.
[[nodiscard]] QByteArray joinedKeys(const QList<ObjectId>& ids);

}  // namespace quillo
