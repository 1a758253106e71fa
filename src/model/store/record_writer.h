// SPDX-License-Identifier: MIT
#pragma once

#include "base/clock.h"
#include "model/store/object_context.h"

namespace quillo {

class SqliteDatabase;
struct StoreQuery;

struct AttributeValue {
    int attribute = 0;
    Value value;
};

/// What was computed for a record that was written.
struct DerivedValue {
    ObjectId id;
    AttributeValue value;
};

/// Writes records into the open transaction of a connection, with what they derive, their
/// lines in the change log and their tombstones, and gathers the change set. The log holds names,
/// never contents.
class RecordWriter final {
public:
    RecordWriter(SqliteDatabase& database, Timestamp now);

    [[nodiscard]] Result<void> insert(const ObjectId& id, const QList<AttributeValue>& values);
    /// False when the record is gone: nothing is written then.
    [[nodiscard]] Result<bool> update(const ObjectId& id, const QList<AttributeValue>& values);
    [[nodiscard]] Result<void> remove(const ObjectId& id);
    /// Deletes the records whose keys the query gives.
    [[nodiscard]] Result<void> removeAll(Entity entity, const StoreQuery& keys);
    /// Deletes every record of an entity at a cost that hardly grows with their number. Foreign
    /// keys must be off; see clearingStatements for what stays to be done.
    [[nodiscard]] Result<void> removeEvery(Entity entity);
    /// Nothing happens when one of the two is gone or the relation is as wanted.
    [[nodiscard]] Result<void> setRelated(const ObjectId& clip, Relationship relationship,
                                          const ObjectId& other, bool isRelated);
    /// Cuts the log and the tombstones once in a while; call last in the transaction.
    [[nodiscard]] Result<void> prune();

    [[nodiscard]] const ChangeSet& changes() const { return m_changes; }
    [[nodiscard]] const QList<DerivedValue>& derived() const { return m_derived; }
    /// Whether text or bytes that the store held before are no longer in it.
    [[nodiscard]] bool discardedContent() const { return m_discardedContent; }

private:
    enum class Change { Inserted, Updated, Deleted };
    static constexpr qint64 kLogRowsKept = 10'000;

    Result<void> run(const QByteArray& sql, const QList<Value>& bindings);
    Result<void> log(const ObjectId& id, Change change, const QByteArray& attributes);
    QList<AttributeValue> withDerived(const ObjectId& id, const QList<AttributeValue>& values,
                                      const QList<AttributeValue>& derived);
    ChangeSet::Update& updateOf(const ObjectId& id);
    Result<qint64> updateLight(const ObjectId& id, const QList<AttributeValue>& values);
    Result<void> writeHeavy(const ObjectId& id, const QList<AttributeValue>& values);
    Result<qint64> gatherDoomed(Entity entity, const StoreQuery& keys);
    Result<void> deleteDoomed(Entity entity, qint64 count);
    Result<void> gatherEvery(Entity entity);
    Result<void> logEveryDeletion(Entity entity);
    Result<void> noteTombstones(Entity entity, const QByteArray& keys);
    Result<void> noteRelationEnds(Entity deleted, const QByteArray& keys);
    Result<void> noteRelation(const ObjectId& id, const QByteArray& name);

    SqliteDatabase& m_database;
    Timestamp m_now;
    ChangeSet m_changes;
    QHash<ObjectId, qsizetype> m_updatePositions;  ///< Where each record is in m_changes.updated.
    QList<DerivedValue> m_derived;
    qint64 m_logged = 0;
    bool m_discardedContent = false;
};

}  // namespace quillo
