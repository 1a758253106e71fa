// SPDX-License-Identifier: MIT
#include "model/store/record_writer.h"

#include <algorithm>

#include "model/store/derived_attributes.h"
#include "model/store/sqlite_database.h"
#include "model/store/store_query.h"
#include "model/store/store_schema.h"

using namespace std::chrono_literals;

namespace quillo {
namespace {

constexpr qint64 kPruneEvery = 256;
constexpr auto kTombstoneLife = std::chrono::days(90);
constexpr qint64 kTombstonesKept = 10'000;

const AttributeDescription& description(const ObjectId& id, const AttributeValue& value) {
    return describe(id.entity).attributes[size_t(value.attribute)];
}

bool isHeavy(const ObjectId& id, const AttributeValue& value) {
    return description(id, value).load == AttributeLoad::Heavy;
}

bool isContent(const ObjectId& id, const AttributeValue& value) {
    const AttributeType type = description(id, value).type;
    return type == AttributeType::Text || type == AttributeType::Bytes;
}

Value key(const ObjectId& id) {
    return Value(id.key.toRfc4122());
}

QByteArray attributeNames(const ObjectId& id, const QList<AttributeValue>& values) {
    QByteArrayList names;
    for (const AttributeValue& value : values) {
        names += description(id, value).name;
    }
    return names.join(',');
}

}  // namespace

RecordWriter::RecordWriter(SqliteDatabase& database, Timestamp now)
    : m_database(database), m_now(now) {}

// The change log names what was written and not what follows from it.
Result<void> RecordWriter::insert(const ObjectId& id, const QList<AttributeValue>& given) {
    const auto values = withDerived(id, given, derivedForNew(id.entity, given));
    QByteArray columns = "id";
    QByteArray places = "?";
    QList<Value> bindings = {key(id)};
    for (const AttributeValue& value : values) {
        if (!isHeavy(id, value)) {
            columns += QByteArray(", ") + description(id, value).name;
            places += ", ?";
            bindings += value.value;
        }
    }
    const QByteArray sql = QByteArray("INSERT INTO ") + describe(id.entity).name + "(" + columns +
                           ") VALUES(" + places + ")";
    if (auto done = run(sql, bindings); !done) {
        return done;
    }
    if (auto done = writeHeavy(id, values); !done) {
        return done;
    }
    m_changes.inserted += id;
    return log(id, Change::Inserted, attributeNames(id, given));
}

Result<bool> RecordWriter::update(const ObjectId& id, const QList<AttributeValue>& given) {
    const auto derived = derivedForUpdate(m_database, id, given);
    if (!derived) {
        return std::unexpected(derived.error());
    }
    const auto values = withDerived(id, given, *derived);
    const auto count = updateLight(id, values);
    if (!count || *count == 0) {
        return count ? Result<bool>(false) : std::unexpected(count.error());
    }
    if (auto done = writeHeavy(id, values); !done) {
        return std::unexpected(done.error());
    }
    ChangeSet::Update& update = updateOf(id);
    for (const AttributeValue& value : values) {
        update.attributes += value.attribute;
        m_discardedContent = m_discardedContent || isContent(id, value);
    }
    if (auto done = log(id, Change::Updated, attributeNames(id, given)); !done) {
        return std::unexpected(done.error());
    }
    return true;
}

QList<AttributeValue> RecordWriter::withDerived(const ObjectId& id,
                                                const QList<AttributeValue>& values,
                                                const QList<AttributeValue>& derived) {
    for (const AttributeValue& value : derived) {
        m_derived.append({id, value});
    }
    return values + derived;
}

ChangeSet::Update& RecordWriter::updateOf(const ObjectId& id) {
    const auto known = m_updatePositions.constFind(id);
    if (known != m_updatePositions.cend()) {
        return m_changes.updated[*known];
    }
    m_updatePositions.insert(id, m_changes.updated.size());
    return m_changes.updated.emplaceBack(ChangeSet::Update{id, {}, false});
}

// The count of records found, also when only heavy attributes change.
Result<qint64> RecordWriter::updateLight(const ObjectId& id, const QList<AttributeValue>& values) {
    QByteArrayList columns;
    QList<Value> bindings;
    for (const AttributeValue& value : values) {
        if (!isHeavy(id, value)) {
            columns += description(id, value).name + QByteArray(" = ?");
            bindings += value.value;
        }
    }
    const QByteArray table = describe(id.entity).name;
    if (columns.isEmpty()) {
        return m_database.queryInteger("SELECT count(*) FROM " + table + " WHERE id = ?",
                                       {key(id)});
    }
    bindings += key(id);
    return m_database.run("UPDATE " + table + " SET " + columns.join(", ") + " WHERE id = ?",
                          bindings);
}

Result<void> RecordWriter::writeHeavy(const ObjectId& id, const QList<AttributeValue>& values) {
    for (const AttributeValue& value : values) {
        if (!isHeavy(id, value)) {
            continue;
        }
        const QByteArray name = description(id, value).name;
        const QByteArray sql = "INSERT INTO " + heavyTable(id.entity) + "(id, " + name +
                               ") VALUES(?, ?) ON CONFLICT(id) DO UPDATE SET " + name +
                               " = excluded." + name;
        if (auto done = run(sql, {key(id), value.value}); !done) {
            return done;
        }
    }
    return {};
}

Result<void> RecordWriter::setRelated(const ObjectId& clip, Relationship relationship,
                                      const ObjectId& other, bool isRelated) {
    const RelationshipDescription& relation = describe(relationship);
    const QByteArray table = relation.table;
    const QByteArray sql =
        isRelated
            ? "INSERT OR IGNORE INTO " + table + "(clip, other) SELECT Clip.id, o.id FROM Clip, " +
                  describe(relation.other).name + " AS o WHERE Clip.id = ? AND o.id = ?"
            : "DELETE FROM " + table + " WHERE clip = ? AND other = ?";
    const auto count = m_database.run(sql, {key(clip), key(other)});
    if (!count) {
        return std::unexpected(count.error());
    }
    if (*count == 0) {
        return {};
    }
    if (auto done = noteRelation(clip, relation.nameAtClip); !done) {
        return done;
    }
    return noteRelation(other, "clips");
}

Result<void> RecordWriter::noteRelation(const ObjectId& id, const QByteArray& name) {
    updateOf(id).relationships = true;
    return log(id, Change::Updated, name);
}

Result<void> RecordWriter::log(const ObjectId& id, Change change, const QByteArray& attributes) {
    ++m_logged;
    return run("INSERT INTO ChangeLog(entity, id, change, attributes) VALUES(?, ?, ?, ?)",
               {Value(qint64(id.entity)), key(id), Value(qint64(change)),
                Value(QString::fromLatin1(attributes))});
}

Result<void> RecordWriter::prune() {
    const auto last = m_database.queryInteger("SELECT max(number) FROM ChangeLog");
    if (!last) {
        return std::unexpected(last.error());
    }
    // A file from elsewhere may hold numbers that this program never gives.
    const qint64 newest = std::max<qint64>(0, *last);
    if (newest / kPruneEvery == (newest - m_logged) / kPruneEvery) {
        return {};
    }
    if (auto done = run("DELETE FROM ChangeLog WHERE number <= ?", {Value(newest - kLogRowsKept)});
        !done) {
        return done;
    }
    return run(
        "DELETE FROM Tombstone WHERE deletedAt < max(?, coalesce((SELECT deletedAt FROM "
        "Tombstone ORDER BY deletedAt DESC LIMIT 1 OFFSET ?), 0))",
        {Value(m_now - kTombstoneLife), Value(kTombstonesKept - 1)});
}

Result<void> RecordWriter::run(const QByteArray& sql, const QList<Value>& bindings) {
    const auto count = m_database.run(sql, bindings);
    if (!count) {
        return std::unexpected(count.error());
    }
    return {};
}

}  // namespace quillo
