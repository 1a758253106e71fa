// SPDX-License-Identifier: MIT
// How a context writes its changes and takes in those of others.
#include "base/logging.h"
#include "model/store/object_context_p.h"
#include "model/store/record_writer.h"
#include "model/store/store_query.h"
#include "model/store/store_transaction.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcContext, "ObjectContext")

bool asksForEverything(const FetchRequest& request) {
    return request.conditions.isEmpty() && request.ids.isEmpty() && request.limit == 0 &&
           request.offset == 0;
}

/// How tables are emptied as a whole; both settings only take effect outside a transaction.
class ClearingMode final {
public:
    explicit ClearingMode(SqliteDatabase& database) : m_database(database) { set("OFF"); }
    ~ClearingMode() { set("ON"); }
    ClearingMode(const ClearingMode&) = delete;
    ClearingMode& operator=(const ClearingMode&) = delete;

private:
    // Neither touches the file, so neither can fail.
    void set(const QByteArray& value) {
        (void)m_database.execute("PRAGMA foreign_keys = " + value +
                                 "; PRAGMA secure_delete = " + value);
    }

    SqliteDatabase& m_database;
};

}  // namespace

// --- Saving.

Result<void> ObjectContext::save() {
    if (d->role == Private::Role::Background) {
        d->mergeInbox();
    }
    if (!hasChanges()) {
        return {};
    }
    bool discardedContent = false;
    const auto changes = d->writeInTransaction(&discardedContent);
    if (!changes) {
        return std::unexpected(changes.error());
    }
    d->settle();
    if (discardedContent) {
        d->store.contentWasDiscarded();
    }
    d->announce(*changes);
    return {};
}

Result<ChangeSet> ObjectContext::Private::writeInTransaction(bool* discardedContent) {
    const Lease connection = lease();
    StoreTransaction transaction(connection.database);
    vanished.clear();
    if (auto sound = checkTransaction(connection.database); !sound) {
        return std::unexpected(sound.error());
    }
    if (auto begun = transaction.begin(); !begun) {
        return std::unexpected(begun.error());
    }
    RecordWriter writer(connection.database, store.m_clock.now());
    if (auto done = writeAll(writer); !done) {
        if (connection.database.latestFailureIsOfOneRow()) {
            giveUpBadRecord();
        }
        return std::unexpected(done.error());
    }
    if (auto done = transaction.commit(); !done) {
        return std::unexpected(done.error());
    }
    for (const DerivedValue& derived : writer.derived()) {
        if (const ObjectPointer object = held(derived.id)) {
            object->takeStored(derived.value.attribute, derived.value.value);
        }
    }
    *discardedContent = writer.discardedContent();
    return writer.changes();
}

// A failing disk can make SQLite undo the whole transaction by itself; what is written afterwards
// would be committed alone.
Result<void> ObjectContext::Private::checkTransaction(const SqliteDatabase& database) const {
    if (transactionDepth > 0 && !database.inTransaction()) {
        return failure(ErrorKind::Failed, u"The transaction was undone by an earlier failure."_s);
    }
    return {};
}

Result<void> ObjectContext::Private::writeAll(RecordWriter& writer) {
    beingWritten.reset();
    for (auto it = removed.cbegin(); it != removed.cend(); ++it) {
        if (auto done = writer.remove(it.key()); !done) {
            return done;
        }
    }
    if (auto done = writeInserted(writer); !done) {
        return done;
    }
    if (auto done = writeUpdated(writer); !done) {
        return done;
    }
    beingWritten.reset();
    for (const RelationChange& change : std::as_const(relations)) {
        if (auto done =
                writer.setRelated(change.clip, change.relationship, change.other, change.isRelated);
            !done) {
            return done;
        }
    }
    return writer.prune();
}

Result<void> ObjectContext::Private::writeInserted(RecordWriter& writer) {
    for (const ObjectPointer& object : std::as_const(inserted)) {
        beingWritten = object;
        if (auto done = writer.insert(object->m_id, pendingValues(*object, true)); !done) {
            return done;
        }
    }
    return {};
}

Result<void> ObjectContext::Private::writeUpdated(RecordWriter& writer) {
    for (const ObjectPointer& object : std::as_const(updated)) {
        beingWritten = object;
        const auto found = writer.update(object->m_id, pendingValues(*object, false));
        if (!found) {
            return std::unexpected(found.error());
        }
        if (!*found) {
            vanished.append(object->m_id);
        }
    }
    return {};
}

// A new record is written with the values that it was given and the required ones; what is derived
// from them is the writer's.
QList<AttributeValue> ObjectContext::Private::pendingValues(const StoredObject& object,
                                                            bool isNew) const {
    QList<AttributeValue> values;
    for (size_t i = 0; i < object.m_values.size(); ++i) {
        const bool isPresent = !std::holds_alternative<std::monostate>(object.m_values[i]);
        if (!isDerived(object.m_id.entity, int(i)) &&
            (isNew ? isPresent : bool(object.m_changed[i]))) {
            values.append({int(i), object.m_values[i]});
        }
    }
    return values;
}

void ObjectContext::Private::giveUpBadRecord() {
    if (beingWritten == nullptr) {
        return;
    }
    qCCritical(lcContext, "A record that cannot be stored is given up");
    if (inserted.removeOne(beingWritten)) {
        beingWritten->m_deleted = true;
    } else {
        beingWritten->undoChanges();
        updated.remove(beingWritten->m_id);
    }
    beingWritten.reset();
}

void ObjectContext::Private::settle() {
    for (const ObjectPointer& object : std::as_const(inserted)) {
        object->forgetChanges();
    }
    for (const ObjectPointer& object : std::as_const(updated)) {
        object->forgetChanges();
    }
    inserted.clear();
    updated.clear();
    removed.clear();
    relations.clear();
    for (const ObjectId& id : std::as_const(vanished)) {
        markDeleted(id);
    }
    vanished.clear();
}

void ObjectContext::Private::announce(const ChangeSet& changes) {
    if (transactionDepth > 0) {
        unpublished.append(changes);
        return;
    }
    if (!changes.isEmpty()) {
        store.publish(q, changes);
        Q_EMIT q->changed(changes);
    }
}

Result<void> ObjectContext::transaction(const std::function<Result<void>()>& work) {
    const Private::Lease connection = d->lease();
    Result<void> done;
    {
        StoreTransaction transaction(connection.database);
        if (auto begun = transaction.begin(); !begun) {
            return begun;
        }
        ++d->transactionDepth;
        done = work();
        if (done && d->isTransactionDoomed) {
            done = failure(ErrorKind::Failed, u"A deletion in the transaction failed."_s);
        }
        if (done) {
            done = transaction.commit();
        }
        --d->transactionDepth;
    }
    if (d->transactionDepth > 0) {
        return done;
    }
    d->isTransactionDoomed = false;
    const QList<ChangeSet> saved = std::exchange(d->unpublished, {});
    if (!done) {
        refreshAllObjects();
        return done;
    }
    for (const ChangeSet& changes : saved) {
        d->announce(changes);
    }
    return done;
}

Result<QList<ObjectId>> ObjectContext::batchDelete(const FetchRequest& request) {
    const bool isEverything = d->transactionDepth == 0 && asksForEverything(request);
    const auto changes =
        isEverything ? d->removeEvery(request.entity) : d->removeInTransaction(request);
    if (!changes) {
        return std::unexpected(changes.error());
    }
    for (const ObjectId& id : changes->deleted) {
        d->markDeleted(id);
    }
    if (!changes->deleted.isEmpty()) {
        isEverything ? d->store.everythingWasDiscarded() : d->store.contentWasDiscarded();
    }
    d->announce(*changes);
    return changes->deleted;
}

// In one transaction whose cost hardly grows with the number of records. What the freed pages hold
// is cleared by the tidying that follows, after a crash by that of the next start.
Result<ChangeSet> ObjectContext::Private::removeEvery(Entity entity) {
    const Lease connection = lease();
    const ClearingMode mode(connection.database);
    StoreTransaction transaction(connection.database);
    if (auto begun = transaction.begin(); !begun) {
        return std::unexpected(begun.error());
    }
    RecordWriter writer(connection.database, store.m_clock.now());
    auto done = writer.removeEvery(entity);
    if (done) {
        done = writer.prune();
    }
    if (done) {
        done = transaction.commit();
    }
    if (!done) {
        return std::unexpected(done.error());
    }
    return writer.changes();
}

// Inside a transaction there is no savepoint: it would hold the pages of a whole history.
Result<ChangeSet> ObjectContext::Private::removeInTransaction(const FetchRequest& request) {
    const Lease connection = lease();
    RecordWriter writer(connection.database, store.m_clock.now());
    const auto work = [&]() -> Result<void> {
        if (auto done = writer.removeAll(request.entity, idsQuery(request)); !done) {
            return done;
        }
        return writer.prune();
    };
    Result<void> done;
    if (transactionDepth > 0) {
        done = checkTransaction(connection.database);
        if (done) {
            done = work();
        }
        isTransactionDoomed = isTransactionDoomed || !done;
    } else {
        StoreTransaction transaction(connection.database);
        done = transaction.begin();
        if (done) {
            done = work();
        }
        if (done) {
            done = transaction.commit();
        }
    }
    if (!done) {
        return std::unexpected(done.error());
    }
    return writer.changes();
}

// --- Merging.

bool ObjectContext::Private::post(const ChangeSet& changes) {
    const std::lock_guard lock(inboxMutex);
    inbox.append(changes);
    return inbox.size() == 1;
}

void ObjectContext::Private::mergeInbox() {
    QList<ChangeSet> arrived;
    {
        const std::lock_guard lock(inboxMutex);
        arrived.swap(inbox);
    }
    for (const ChangeSet& changes : std::as_const(arrived)) {
        merge(changes);
        Q_EMIT q->changed(changes);
    }
}

void ObjectContext::Private::merge(const ChangeSet& changes) {
    if (changes.everything) {
        q->refreshAllObjects();
        return;
    }
    for (const ObjectId& id : changes.deleted) {
        markDeleted(id);
    }
    QList<ObjectId> stale;
    for (const ChangeSet::Update& update : changes.updated) {
        const ObjectPointer object = held(update.id);
        if (object == nullptr || update.attributes.isEmpty()) {
            continue;
        }
        for (const int attribute : update.attributes) {
            object->dropHeavy(attribute);
        }
        stale.append(update.id);
    }
    reload(stale);
}

void ObjectContext::Private::markDeleted(const ObjectId& id) {
    const ObjectPointer object = held(id);
    if (object != nullptr) {
        object->m_deleted = true;
        object->forgetChanges();
    }
    updated.remove(id);
    removed.remove(id);
}

// Reads the light attributes anew; a record that is not there any more is marked deleted.
void ObjectContext::Private::reload(const QList<ObjectId>& ids) {
    for (const EntityDescription& entity : objectModel()) {
        FetchRequest request;
        request.entity = entity.entity;
        std::ranges::copy_if(ids, std::back_inserter(request.ids),
                             [&](const ObjectId& id) { return id.entity == entity.entity; });
        if (request.ids.isEmpty()) {
            continue;
        }
        // What comes back are the held objects, so nothing is made here.
        const auto rows = q->fetchObjects(request, &ObjectContext::makeObject<StoredObject>);
        if (!rows) {
            qCCritical(lcContext, "Cannot read changed records: %s",
                       qUtf8Printable(rows.error().text));
            continue;
        }
        QSet<ObjectId> missing(request.ids.cbegin(), request.ids.cend());
        for (const ObjectPointer& object : *rows) {
            missing.remove(object->m_id);
        }
        for (const ObjectId& id : missing) {
            if (!removed.contains(id)) {
                markDeleted(id);
            }
        }
    }
}

void ObjectContext::refreshAllObjects() {
    QList<std::shared_ptr<StoredObject>> alive;
    QList<ObjectId> ids;
    for (const std::weak_ptr<StoredObject>& pointer : std::as_const(d->objects)) {
        const auto object = pointer.lock();
        if (object == nullptr || object->m_deleted || d->inserted.contains(object)) {
            continue;
        }
        object->dropHeavyValues();
        ids.append(object->m_id);
        alive.append(object);
    }
    d->reload(ids);
}

}  // namespace quillo
