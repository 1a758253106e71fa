// SPDX-License-Identifier: MIT
#include "model/store/record_writer.h"

#include "model/store/sqlite_database.h"
#include "model/store/store_query.h"
#include "model/store/store_schema.h"

using namespace std::chrono_literals;

namespace quillo {
namespace {

constexpr qint64 kLogRowsKept = 10'000;
constexpr qint64 kPruneEvery = 256;
constexpr qint64 kManyRows = 1'000;
constexpr qint64 kRowsAtOnce = 256;
constexpr auto kTombstoneLife = std::chrono::days(90);

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

Result<void> RecordWriter::insert(const ObjectId& id, const QList<AttributeValue>& values) {
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
    return log(id, Change::Inserted, attributeNames(id, values));
}

Result<bool> RecordWriter::update(const ObjectId& id, const QList<AttributeValue>& values) {
    const auto count = updateLight(id, values);
    if (!count || *count == 0) {
        return count ? Result<bool>(false) : std::unexpected(count.error());
    }
    if (auto done = writeHeavy(id, values); !done) {
        return std::unexpected(done.error());
    }
    ChangeSet::Update update{id, {}, false};
    for (const AttributeValue& value : values) {
        update.attributes += value.attribute;
        m_discardedContent = m_discardedContent || isContent(id, value);
    }
    m_changes.updated += update;
    if (auto done = log(id, Change::Updated, attributeNames(id, values)); !done) {
        return std::unexpected(done.error());
    }
    return true;
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

Result<void> RecordWriter::remove(const ObjectId& id) {
    return removeAll(
        id.entity,
        {QByteArray("SELECT id FROM ") + describe(id.entity).name + " WHERE id = ?", {key(id)}});
}

// The keys go through a temporary table, which is kept in memory, so that a whole history is
// deleted by a handful of statements.
Result<void> RecordWriter::removeAll(Entity entity, const StoreQuery& keys) {
    const auto count = gatherDoomed(entity, keys);
    if (!count || *count == 0) {
        return count ? Result<void>() : std::unexpected(count.error());
    }
    m_logged += *count;
    m_discardedContent = true;
    const Value kind(qint64{std::to_underlying(entity)});
    if (auto done = noteRelationEnds(entity); !done) {
        return done;
    }
    if (auto done = run("INSERT INTO ChangeLog(entity, id, change, attributes) SELECT ?, id, ?, '' "
                        "FROM temp.Doomed",
                        {kind, Value(qint64(Change::Deleted))});
        !done) {
        return done;
    }
    if (auto done = run("INSERT OR REPLACE INTO Tombstone(id, entity, deletedAt) SELECT id, ?, ? "
                        "FROM temp.Doomed",
                        {kind, Value(m_now)});
        !done) {
        return done;
    }
    return deleteDoomed(entity, *count);
}

// In the order of their rows, so that neighbours go together; how many there are.
Result<qint64> RecordWriter::gatherDoomed(Entity entity, const StoreQuery& keys) {
    if (auto done = m_database.execute(
            "CREATE TEMP TABLE IF NOT EXISTS Doomed(number INTEGER PRIMARY KEY, id BLOB NOT NULL); "
            "DELETE FROM temp.Doomed");
        !done) {
        return std::unexpected(done.error());
    }
    const QByteArray table = describe(entity).name;
    if (auto done = run("INSERT INTO temp.Doomed(id) SELECT id FROM " + table + " WHERE id IN (" +
                            keys.sql + ") ORDER BY " + table + ".rowid",
                        keys.bindings);
        !done) {
        return std::unexpected(done.error());
    }
    auto statement = m_database.prepare("SELECT id FROM temp.Doomed ORDER BY number");
    Result<bool> row = false;
    qint64 count = 0;
    while (statement && (row = statement->step()) && *row) {
        m_changes.deleted += ObjectId{entity, statement->uuid(0)};
        ++count;
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return count;
}

// A statement keeps the old pages until its end, so one statement does not delete a whole history.
// Many rows lie on many pages: they get a larger cache for the time.
Result<void> RecordWriter::deleteDoomed(Entity entity, qint64 count) {
    const bool isMany = count > kManyRows;
    if (isMany) {
        (void)m_database.execute("PRAGMA cache_size = -32768");
    }
    const QByteArray sql = QByteArray("DELETE FROM ") + describe(entity).name +
                           " WHERE id IN (SELECT id FROM temp.Doomed WHERE number BETWEEN ? AND ?)";
    Result<void> done;
    for (qint64 first = 1; done && first <= count; first += kRowsAtOnce) {
        done = run(sql, {Value(first), Value(first + kRowsAtOnce - 1)});
    }
    if (isMany) {
        (void)m_database.execute("PRAGMA cache_size = -2000; PRAGMA shrink_memory");
    }
    return done;
}

// The other ends of a deleted record's relations have changed too.
Result<void> RecordWriter::noteRelationEnds(Entity deleted) {
    for (const RelationshipDescription& relationship : relationshipModel()) {
        const bool isClip = deleted == Entity::Clip;
        if (!isClip && deleted != relationship.other) {
            continue;
        }
        const QByteArray sql = QByteArray("SELECT DISTINCT ") + (isClip ? "other" : "clip") +
                               " FROM " + relationship.table + " WHERE " +
                               (isClip ? "clip" : "other") + " IN (SELECT id FROM temp.Doomed)";
        QList<ObjectId> ends;
        {
            auto statement = m_database.prepare(sql);
            Result<bool> row = false;
            while (statement && (row = statement->step()) && *row) {
                ends += ObjectId{isClip ? relationship.other : Entity::Clip, statement->uuid(0)};
            }
            if (!statement || !row) {
                return std::unexpected(statement ? row.error() : statement.error());
            }
        }
        for (const ObjectId& end : ends) {
            if (auto done = noteRelation(end, isClip ? "clips" : relationship.nameAtClip); !done) {
                return done;
            }
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
    const auto known = std::ranges::find(m_changes.updated, id, &ChangeSet::Update::id);
    if (known != m_changes.updated.end()) {
        known->relationships = true;
    } else {
        m_changes.updated += ChangeSet::Update{id, {}, true};
    }
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
    if (*last / kPruneEvery == (*last - m_logged) / kPruneEvery) {
        return {};
    }
    if (auto done = run("DELETE FROM ChangeLog WHERE number <= ?", {Value(*last - kLogRowsKept)});
        !done) {
        return done;
    }
    return run("DELETE FROM Tombstone WHERE deletedAt < ?", {Value(m_now - kTombstoneLife)});
}

Result<void> RecordWriter::run(const QByteArray& sql, const QList<Value>& bindings) {
    const auto count = m_database.run(sql, bindings);
    if (!count) {
        return std::unexpected(count.error());
    }
    return {};
}

}  // namespace quillo
