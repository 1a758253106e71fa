// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <memory>
#include <mutex>

#include "model/store/object_context.h"
#include "model/store/object_store.h"

namespace quillo {

class RecordWriter;
struct AttributeValue;

class ObjectContext::Private final {
public:
    enum class Role { View, Background };

    struct RelationChange {
        ObjectId clip;
        Relationship relationship;
        ObjectId other;
        bool isRelated;
    };

    using ObjectPointer = std::shared_ptr<StoredObject>;

    Private(ObjectStore& objectStore, Role contextRole, SqliteDatabase* backgroundConnection)
        : store(objectStore), role(contextRole), background(backgroundConnection) {}

    /// The connection to use and, for the view, the right to use it.
    struct Lease {
        std::unique_lock<std::recursive_mutex> lock;
        SqliteDatabase& database;
    };
    [[nodiscard]] Lease lease();

    // Other contexts' saves.
    /// From any thread; true when the inbox was empty.
    bool post(const ChangeSet& changes);
    void mergeInbox();
    void merge(const ChangeSet& changes);
    void reload(const QList<ObjectId>& ids);
    void markDeleted(const ObjectId& id);

    // Reading.
    ObjectPointer held(const ObjectId& id) const;
    void readRow(const SqliteStatement& statement, StoredObject& object);
    Value loadHeavy(const StoredObject& object, int attribute);

    // Changing and saving.
    void noteChange(StoredObject& object);
    Result<ChangeSet> writeInTransaction(bool* discardedContent);
    Result<ChangeSet> removeInTransaction(const FetchRequest& request);
    Result<ChangeSet> removeEvery(Entity entity);
    Result<void> checkTransaction(const SqliteDatabase& database) const;
    Result<void> writeAll(RecordWriter& writer);
    Result<void> writeInserted(RecordWriter& writer);
    Result<void> writeUpdated(RecordWriter& writer);
    QList<AttributeValue> pendingValues(const StoredObject& object, bool isNew) const;
    void giveUpBadRecord();
    void settle();
    void announce(const ChangeSet& changes);

    ObjectContext* q = nullptr;
    ObjectStore& store;
    Role role;
    SqliteDatabase* background;

    QHash<ObjectId, std::weak_ptr<StoredObject>> objects;
    QList<ObjectPointer> inserted;
    QHash<ObjectId, ObjectPointer> updated;
    QHash<ObjectId, ObjectPointer> removed;
    QList<RelationChange> relations;

    QList<ObjectId> vanished;  ///< Found deleted by the save under way.
    ObjectPointer beingWritten;
    int transactionDepth = 0;
    bool isTransactionDoomed = false;  ///< A part of it failed that cannot be undone alone.
    QList<ChangeSet> unpublished;      ///< Saved in the transaction that is open.

    std::mutex inboxMutex;
    QList<ChangeSet> inbox;
};

}  // namespace quillo
