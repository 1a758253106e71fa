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
        case Condition::Operator::HasAnyBit:
            return " & ? <> 0";
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

bool isClip(const RelatedTo& related) {
    return related.id.entity == Entity::Clip;
}

// The members are walked and each is looked up; the other way round would walk every record. A
// clip's key alone would lead to its row, which is three times as slow for a large group.
QByteArray sourceText(const FetchRequest& request) {
    QByteArray table = describe(request.entity).name;
    if (!request.relatedTo.has_value()) {
        return table;
    }
    return QByteArray(describe(request.relatedTo->relationship).table) + " AS member CROSS JOIN " +
           table + (request.entity == Entity::Clip ? " INDEXED BY ClipById ON " : " ON ") + table +
           ".id = " + (isClip(*request.relatedTo) ? "member.other" : "member.clip");
}

// Only existing records are related, so their rows need not be looked up.
StoreQuery relatedCountQuery(const RelatedTo& related) {
    return {QByteArray("SELECT count(*) FROM ") + describe(related.relationship).table +
                (isClip(related) ? " WHERE clip = ?" : " WHERE other = ?"),
            {Value(related.id.key.toRfc4122())}};
}

void addConditions(const FetchRequest& request, StoreQuery& query) {
    QByteArray joint = " WHERE ";
    if (request.relatedTo.has_value()) {
        query.sql += joint + (isClip(*request.relatedTo) ? "member.clip = ?" : "member.other = ?");
        query.bindings.append(Value(request.relatedTo->id.key.toRfc4122()));
        joint = " AND ";
    }
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

QByteArray columnsOf(Entity entity, const QList<int>& attributes) {
    QByteArray columns = "id";
    for (const int position : attributes) {
        columns += QByteArray(", ") + attributeName(entity, position);
    }
    return columns;
}

StoreQuery select(const QByteArray& columns, const FetchRequest& request) {
    StoreQuery query{"SELECT " + columns + " FROM " + sourceText(request), {}};
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
    return valuesQuery(request, attributesOf(request.entity, AttributeLoad::Light));
}

StoreQuery valuesQuery(const FetchRequest& request, const QList<int>& attributes) {
    return select(columnsOf(request.entity, attributes), request);
}

StoreQuery walkQuery(const ObjectContext::Walk& piece) {
    return {"SELECT rowid, " + columnsOf(piece.entity, piece.attributes) + " FROM " +
                describe(piece.entity).name + " WHERE rowid > ? ORDER BY rowid LIMIT ?",
            {Value(piece.after), Value(qint64{piece.limit})}};
}

StoreQuery countQuery(const FetchRequest& request) {
    if (request.conditions.isEmpty() && request.ids.isEmpty() && !request.relatedTo) {
        const Value limit(request.limit > 0 ? qint64{request.limit} : INT64_MAX);
        return {"SELECT min(max(rows - ?, 0), ?) FROM RowCount WHERE entity = ?",
                {Value(std::max<qint64>(request.offset, 0)), limit, Value(qint64(request.entity))}};
    }
    const bool isWhole = request.limit <= 0 && request.offset <= 0;
    if (request.relatedTo && request.conditions.isEmpty() && request.ids.isEmpty() && isWhole) {
        return relatedCountQuery(*request.relatedTo);
    }
    StoreQuery query{"SELECT id FROM " + sourceText(request), {}};
    addConditions(request, query);
    addWindow(request, query);
    query.sql = "SELECT count(*) FROM (" + query.sql + ")";
    return query;
}

Result<SqliteStatement> prepared(SqliteDatabase& database, const StoreQuery& query) {
    auto statement = database.prepare(query.sql);
    for (int i = 0; statement && i < query.bindings.size(); ++i) {
        statement->bind(i + 1, query.bindings[i]);
    }
    return statement;
}

}  // namespace quillo
