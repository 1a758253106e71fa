// SPDX-License-Identifier: MIT
// How records are deleted: some by their keys, or every one of an entity.
#include "model/store/record_writer.h"
#include "model/store/sqlite_database.h"
#include "model/store/store_query.h"
#include "model/store/store_schema.h"

namespace quillo {
namespace {

constexpr qint64 kManyRows = 1'000;
constexpr qint64 kRowsAtOnce = 256;

}  // namespace

Result<void> RecordWriter::remove(const ObjectId& id) {
    return removeAll(id.entity,
                     {QByteArray("SELECT id FROM ") + describe(id.entity).name + " WHERE id = ?",
                      {Value(id.key.toRfc4122())}});
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
    if (auto done = noteRelationEnds(entity, "SELECT id FROM temp.Doomed"); !done) {
        return done;
    }
    if (auto done = run("INSERT INTO ChangeLog(entity, id, change, attributes) SELECT ?, id, ?, '' "
                        "FROM temp.Doomed",
                        {kind, Value(qint64(Change::Deleted))});
        !done) {
        return done;
    }
    if (auto done = noteTombstones(entity, "temp.Doomed"); !done) {
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
Result<void> RecordWriter::noteRelationEnds(Entity deleted, const QByteArray& keys) {
    for (const RelationshipDescription& relationship : relationshipModel()) {
        const bool isClip = deleted == Entity::Clip;
        if (!isClip && deleted != relationship.other) {
            continue;
        }
        const QByteArray sql = QByteArray("SELECT DISTINCT ") + (isClip ? "other" : "clip") +
                               " FROM " + relationship.table + " WHERE " +
                               (isClip ? "clip" : "other") + " IN (" + keys + ')';
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

Result<void> RecordWriter::noteTombstones(Entity entity, const QByteArray& keys) {
    return run("INSERT OR REPLACE INTO Tombstone(id, entity, deletedAt) SELECT id, ?, ? FROM " +
                   keys + " ORDER BY id",
               {Value(qint64{std::to_underlying(entity)}), Value(m_now)});
}

Result<void> RecordWriter::removeEvery(Entity entity) {
    if (auto done = gatherEvery(entity); !done || m_changes.deleted.isEmpty()) {
        return done;
    }
    m_discardedContent = true;
    const QByteArray table = describe(entity).name;
    if (auto done = noteRelationEnds(entity, "SELECT id FROM " + table); !done) {
        return done;
    }
    if (auto done = logEveryDeletion(entity); !done) {
        return done;
    }
    if (auto done = noteTombstones(entity, table); !done) {
        return done;
    }
    for (const QByteArray& statement : clearingStatements(entity)) {
        if (auto done = m_database.execute(statement); !done) {
            return done;
        }
    }
    return {};
}

Result<void> RecordWriter::gatherEvery(Entity entity) {
    auto statement =
        m_database.prepare(QByteArray("SELECT id FROM ") + describe(entity).name + " ORDER BY id");
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        m_changes.deleted += ObjectId{entity, statement->uuid(0)};
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return {};
}

// Each takes a number, but only the lines that pruning would leave are written. What happened to
// the records before is nobody's business any more.
Result<void> RecordWriter::logEveryDeletion(Entity entity) {
    const auto last = m_database.queryInteger("SELECT max(number) FROM ChangeLog");
    if (!last) {
        return std::unexpected(last.error());
    }
    if (auto done = run("DELETE FROM ChangeLog WHERE entity = ?",
                        {Value(qint64{std::to_underlying(entity)})});
        !done) {
        return done;
    }
    const qsizetype count = m_changes.deleted.size();
    m_logged += count;
    for (qsizetype i = std::max(qsizetype{0}, count - kLogRowsKept); i < count; ++i) {
        const ObjectId& id = m_changes.deleted[i];
        if (auto done = run("INSERT INTO ChangeLog(number, entity, id, change, attributes) "
                            "VALUES(?, ?, ?, ?, '')",
                            {Value(*last + i + 1), Value(qint64{std::to_underlying(id.entity)}),
                             Value(id.key.toRfc4122()), Value(qint64(Change::Deleted))});
            !done) {
            return done;
        }
    }
    return {};
}

}  // namespace quillo
