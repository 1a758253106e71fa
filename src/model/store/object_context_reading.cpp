// SPDX-License-Identifier: MIT
#include "model/store/object_context_p.h"
#include "model/store/store_query.h"

namespace quillo {
namespace {

std::vector<Value> valuesIn(const SqliteStatement& statement, int column,
                            const ObjectContext::Walk& wanted) {
    std::vector<Value> values;
    values.reserve(size_t(wanted.attributes.size()));
    for (const int position : wanted.attributes) {
        const AttributeType type = describe(wanted.entity).attributes[size_t(position)].type;
        values.push_back(statement.value(column++, type));
    }
    return values;
}

}  // namespace

Result<std::optional<qint64>> ObjectContext::walk(const Walk& piece, const RowVisitor& visitor) {
    const Private::Lease connection = d->lease();
    auto statement = prepared(connection.database, walkQuery(piece));
    std::optional<qint64> end;
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        end = statement->integer(0);
        visitor(statement->uuid(1), valuesIn(*statement, 2, piece));
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return end;
}

Result<void> ObjectContext::readValues(const FetchRequest& request, const QList<int>& attributes,
                                       const RowVisitor& visitor) {
    const Walk wanted{.entity = request.entity, .attributes = attributes};
    const Private::Lease connection = d->lease();
    auto statement = prepared(connection.database, valuesQuery(request, attributes));
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        visitor(statement->uuid(0), valuesIn(*statement, 1, wanted));
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return {};
}

}  // namespace quillo
