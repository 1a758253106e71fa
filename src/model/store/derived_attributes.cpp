// SPDX-License-Identifier: MIT
#include "model/store/derived_attributes.h"

#include <algorithm>
#include <vector>

#include "model/store/sqlite_database.h"

namespace quillo {
namespace {

constexpr qint64 kRowsAtOnce = 512;

const AttributeDescription& input(const Derivation& derivation, size_t index) {
    return describe(derivation.entity).attributes[size_t(derivation.inputs[index])];
}

const AttributeDescription& target(const Derivation& derivation) {
    return describe(derivation.entity).attributes[size_t(derivation.attribute)];
}

QByteArray ruleName(const Derivation& derivation) {
    return QByteArray(describe(derivation.entity).name) + '.' + target(derivation).name;
}

QByteArray inputColumns(const Derivation& derivation) {
    QByteArrayList names;
    for (size_t i = 0; i < derivation.inputs.size(); ++i) {
        names += input(derivation, i).name;
    }
    return names.join(", ");
}

std::vector<Value> readInputs(const Derivation& derivation, const SqliteStatement& row, int first) {
    std::vector<Value> inputs;
    inputs.reserve(derivation.inputs.size());
    for (size_t i = 0; i < derivation.inputs.size(); ++i) {
        inputs.push_back(row.value(first + int(i), input(derivation, i).type));
    }
    return inputs;
}

// Puts the values being written in the place of those they replace; whether there were any.
bool overlay(const Derivation& derivation, const QList<AttributeValue>& values,
             std::vector<Value>& inputs) {
    bool replaced = false;
    for (size_t i = 0; i < derivation.inputs.size(); ++i) {
        const auto found =
            std::ranges::find(values, derivation.inputs[i], &AttributeValue::attribute);
        if (found != values.end()) {
            inputs[i] = found->value;
            replaced = true;
        }
    }
    return replaced;
}

Result<qint64> storedRuleVersion(SqliteDatabase& database, const Derivation& derivation) {
    return database.queryInteger("SELECT ruleVersion FROM Derivation WHERE attribute = ?",
                                 {Value(QString::fromLatin1(ruleName(derivation)))});
}

struct ComputedRow {
    qint64 rowId;
    Value value;
};

// Only results are kept: a text of a batch is gone when the next one is read.
Result<std::vector<ComputedRow>> computeBatch(SqliteDatabase& database,
                                              const Derivation& derivation, qint64 after) {
    auto rows = database.prepare("SELECT rowid, " + inputColumns(derivation) + " FROM " +
                                 describe(derivation.entity).name +
                                 " WHERE rowid > ? ORDER BY rowid LIMIT ?");
    std::vector<ComputedRow> batch;
    Result<bool> row = false;
    if (rows) {
        rows->bind(1, Value(after));
        rows->bind(2, Value(kRowsAtOnce));
    }
    while (rows && (row = rows->step()) && *row) {
        batch.push_back({rows->integer(0), derivation.compute(readInputs(derivation, *rows, 1))});
    }
    if (!rows || !row) {
        return std::unexpected(rows ? row.error() : rows.error());
    }
    return batch;
}

Result<void> recompute(SqliteDatabase& database, const Derivation& derivation) {
    const QByteArray name = target(derivation).name;
    const QByteArray update = QByteArray("UPDATE ") + describe(derivation.entity).name + " SET " +
                              name + " = ?1 WHERE rowid = ?2 AND " + name + " IS NOT ?1";
    qint64 last = 0;
    while (true) {
        const auto batch = computeBatch(database, derivation, last);
        if (!batch || batch->empty()) {
            return batch ? Result<void>() : std::unexpected(batch.error());
        }
        for (const ComputedRow& row : *batch) {
            if (auto done = database.run(update, {row.value, Value(row.rowId)}); !done) {
                return std::unexpected(done.error());
            }
        }
        last = batch->back().rowId;
    }
}

QByteArray rememberVersion(const Derivation& derivation) {
    return "INSERT OR REPLACE INTO Derivation(attribute, ruleVersion) VALUES('" +
           ruleName(derivation) + "', " + QByteArray::number(derivation.ruleVersion) + ")";
}

}  // namespace

QList<AttributeValue> derivedForNew(Entity entity, const QList<AttributeValue>& values) {
    QList<AttributeValue> derived;
    for (const Derivation& derivation : derivations()) {
        if (derivation.entity != entity) {
            continue;
        }
        std::vector<Value> inputs;
        inputs.reserve(derivation.inputs.size());
        for (size_t i = 0; i < derivation.inputs.size(); ++i) {
            inputs.push_back(initialValue(input(derivation, i)));
        }
        overlay(derivation, values, inputs);
        derived.append({derivation.attribute, derivation.compute(inputs)});
    }
    return derived;
}

Result<QList<AttributeValue>> derivedForUpdate(SqliteDatabase& database, const ObjectId& id,
                                               const QList<AttributeValue>& values) {
    QList<AttributeValue> derived;
    for (const Derivation& derivation : derivations()) {
        std::vector<Value> inputs(derivation.inputs.size());
        if (derivation.entity != id.entity || !overlay(derivation, values, inputs)) {
            continue;
        }
        auto stored = database.prepare(QByteArray("SELECT ") + target(derivation).name + ", " +
                                       inputColumns(derivation) + " FROM " +
                                       describe(id.entity).name + " WHERE id = ?");
        if (!stored) {
            return std::unexpected(stored.error());
        }
        stored->bind(1, id.key);
        const auto row = stored->step();
        if (!row) {
            return std::unexpected(row.error());
        }
        if (!*row) {
            continue;
        }
        inputs = readInputs(derivation, *stored, 1);
        overlay(derivation, values, inputs);
        Value value = derivation.compute(inputs);
        if (value != stored->value(0, target(derivation).type)) {
            derived.append({derivation.attribute, std::move(value)});
        }
    }
    return derived;
}

Result<bool> isDerivedStale(SqliteDatabase& database) {
    for (const Derivation& derivation : derivations()) {
        const auto version = storedRuleVersion(database, derivation);
        if (!version || *version != derivation.ruleVersion) {
            return version ? Result<bool>(true) : std::unexpected(version.error());
        }
    }
    return false;
}

Result<void> refreshDerived(SqliteDatabase& database) {
    for (const Derivation& derivation : derivations()) {
        const auto version = storedRuleVersion(database, derivation);
        if (!version) {
            return std::unexpected(version.error());
        }
        if (*version == derivation.ruleVersion) {
            continue;
        }
        if (auto done = recompute(database, derivation); !done) {
            return done;
        }
        if (auto done = database.execute(rememberVersion(derivation)); !done) {
            return done;
        }
    }
    return {};
}

QList<QByteArray> derivationTable() {
    return {
        "CREATE TABLE Derivation(attribute TEXT PRIMARY KEY NOT NULL, "
        "ruleVersion INTEGER NOT NULL) STRICT, WITHOUT ROWID"};
}

QList<QByteArray> currentDerivations() {
    QList<QByteArray> statements;
    for (const Derivation& derivation : derivations()) {
        statements += rememberVersion(derivation);
    }
    return statements;
}

}  // namespace quillo
