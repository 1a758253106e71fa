// SPDX-License-Identifier: MIT
#include "model/store/store_query.h"

#include "model/store/store_schema.h"

namespace quillo {
namespace {

const char* attributeName(Entity entity, int position) {
    return describe(entity).attributes[size_t(position)].name;
}

const char* operatorText(Condition::Operator op) {
    switch (op) {
        case Condition::Operator::Equal:
            return " IS ?";
        case Condition::Operator::NotEqual:
            return " IS NOT ?";
        case Condition::Operator::Less:
            return " < ?";
        case Condition::Operator::Greater:
            return " > ?";
        case Condition::Operator::IsAbsent:
            return " IS NULL";
        case Condition::Operator::IsPresent:
            return " IS NOT NULL";
    }
    return " IS NULL";
}

bool takesValue(Condition::Operator op) {
    return op != Condition::Operator::IsAbsent && op != Condition::Operator::IsPresent;
}

// One statement serves a list of any length: the keys come in one blob, cut into pieces of 16.
constexpr auto kKeyList =
    "id IN (WITH RECURSIVE piece(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM piece "
    "WHERE i + 1 < ?) SELECT substr(?, i * 16 + 1, 16) FROM piece)";

bool isHeavy(Entity entity, int position) {
    return describe(entity).attributes[size_t(position)].load == AttributeLoad::Heavy;
}

QByteArray conditionText(Entity entity, const Condition& condition) {
    QByteArray column = attributeName(entity, condition.attribute);
    if (isHeavy(entity, condition.attribute)) {
        column = "(SELECT heavy." + column + " FROM " + heavyTable(entity) +
                 " AS heavy WHERE heavy.id = " + describe(entity).name + ".id)";
    }
    return column + operatorText(condition.op);
}

void addConditions(const FetchRequest& request, StoreQuery& query) {
    QByteArray joint = " WHERE ";
    for (const Condition& condition : request.conditions) {
        query.sql += joint + conditionText(request.entity, condition);
        if (takesValue(condition.op)) {
            query.bindings.append(condition.value);
        }
        joint = " AND ";
    }
    if (!request.ids.isEmpty()) {
        query.sql += joint + kKeyList;
        query.bindings.append(Value(qint64(request.ids.size())));
        query.bindings.append(Value(joinedKeys(request.ids)));
    }
}

void addOrder(const FetchRequest& request, StoreQuery& query) {
    query.sql += " ORDER BY ";
    for (const SortKey& key : request.sort) {
        query.sql += attributeName(request.entity, key.attribute);
        query.sql += key.order == Qt::DescendingOrder ? " DESC, " : ", ";
    }
    query.sql += "id";
}

void addWindow(const FetchRequest& request, StoreQuery& query) {
    if (request.limit <= 0 && request.offset <= 0) {
        return;
    }
    query.sql += " LIMIT ? OFFSET ?";
    query.bindings.append(Value(request.limit > 0 ? qint64{request.limit} : qint64{-1}));
    query.bindings.append(Value(std::max<qint64>(request.offset, 0)));
}

StoreQuery select(const QByteArray& columns, const FetchRequest& request) {
    StoreQuery query{"SELECT " + columns + " FROM " + describe(request.entity).name, {}};
    addConditions(request, query);
    addOrder(request, query);
    addWindow(request, query);
    return query;
}

}  // namespace

QByteArray joinedKeys(const QList<ObjectId>& ids) {
    QByteArray keys;
    keys.reserve(ids.size() * 16);
    for (const ObjectId& id : ids) {
        keys += id.key.toRfc4122();
    }
    return keys;
}

StoreQuery idsQuery(const FetchRequest& request) {
    return select("id", request);
}

StoreQuery rowsQuery(const FetchRequest& request) {
    QByteArray columns = "id";
    for (const int position : attributesOf(request.entity, AttributeLoad::Light)) {
        columns += QByteArray(", ") + attributeName(request.entity, position);
    }
    return select(columns, request);
}

StoreQuery countQuery(const FetchRequest& request) {
    if (request.conditions.isEmpty() && request.ids.isEmpty()) {
        const Value limit(request.limit > 0 ? qint64{request.limit} : INT64_MAX);
        return {"SELECT min(max(rows - ?, 0), ?) FROM RowCount WHERE entity = ?",
                {Value(std::max<qint64>(request.offset, 0)), limit, Value(qint64(request.entity))}};
    }
    StoreQuery query{QByteArray("SELECT id FROM ") + describe(request.entity).name, {}};
    addConditions(request, query);
    addWindow(request, query);
    query.sql = "SELECT count(*) FROM (" + query.sql + ")";
    return query;
}

}  // namespace quillo
