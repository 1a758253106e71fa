// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/result.h"
#include "model/store/object_model.h"

namespace quillo {

class ObjectContext;
class ObjectStore;

/// One condition of a fetch on one attribute.
struct Condition {
    /// HasAnyBit: an integer shares a bit with the value.
    enum class Operator { Equal, NotEqual, Less, Greater, HasAnyBit, IsAbsent, IsPresent };

    int attribute = 0;
    Operator op = Operator::Equal;
    Value value;
};

struct SortKey {
    int attribute = 0;
    Qt::SortOrder order = Qt::AscendingOrder;
};

/// The records at the other end of one record's relationship.
struct RelatedTo {
    ObjectId id;
    Relationship relationship = Relationship::ClipPinboards;
};

/// What to fetch: all conditions hold, sorted by the keys and then by the record's key, so that
/// the order is the same every time. limit 0 means all.
struct FetchRequest {
    Entity entity = Entity::Clip;
    QList<Condition> conditions;
    QList<ObjectId> ids;                 ///< When not empty, only these records.
    std::optional<RelatedTo> relatedTo;  ///< Only these; as the store holds them.
    QList<SortKey> sort;
    qsizetype limit = 0;
    qsizetype offset = 0;
};

/// What a save did, or what came from another context. Values are not in it.
struct ChangeSet {
    struct Update {
        ObjectId id;
        QList<int> attributes;       ///< Positions in the entity's description.
        bool relationships = false;  ///< Members of a relationship changed.
    };

    QList<ObjectId> inserted;
    QList<Update> updated;
    QList<ObjectId> deleted;
    bool everything = false;  ///< The store itself was exchanged: fetch anew.

    [[nodiscard]] bool isEmpty() const;
};

/// A record in a context: the typed classes (Clip, Pinboard, Tag) derive from it. Belongs to its
/// context's thread. A record whose row was deleted elsewhere keeps its last values and answers
/// isDeleted.
class StoredObject {
public:
    StoredObject(ObjectContext& context, ObjectId id);
    virtual ~StoredObject();
    StoredObject(const StoredObject&) = delete;
    StoredObject& operator=(const StoredObject&) = delete;

    [[nodiscard]] ObjectId objectId() const { return m_id; }
    /// The record's UUID, set once at creation.
    [[nodiscard]] QUuid id() const { return m_id.key; }
    /// Null once the context is gone.
    [[nodiscard]] ObjectContext* context() const { return m_context; }
    [[nodiscard]] bool isDeleted() const { return m_deleted; }

    /// Loads a heavy attribute on first use; an unreadable one is absent.
    [[nodiscard]] const Value& value(int attribute) const;
    /// A value of the wrong type and one of a derived attribute are refused with a line in the log.
    void setValue(int attribute, Value value);
    /// Whether a change of the attribute waits to be saved.
    [[nodiscard]] bool isChanged(int attribute) const { return m_changed[size_t(attribute)]; }

    /// Drops the heavy values that are loaded and unchanged.
    void dropHeavyValues();

private:
    friend class ObjectContext;

    [[nodiscard]] QList<int> changedAttributes() const;
    /// Takes a value that the store holds; a pending change stays and is undone to it.
    void takeStored(int attribute, Value value);
    void dropHeavy(int attribute);
    void forgetChanges();
    void undoChanges();

    ObjectContext* m_context;
    ObjectId m_id;
    mutable std::vector<Value> m_values;
    mutable std::vector<bool> m_loaded;
    std::vector<bool> m_changed;
    std::map<int, Value> m_stored;  ///< What changed attributes held; a heavy one may be missing.
    bool m_deleted = false;
};

/// A unit of work on the store: records fetched, changed, inserted and deleted here are written
/// by save() in one transaction. A context belongs to one thread: the view context to the main
/// thread, a background context to the store's queue for the length of one perform().
///
/// Where two contexts meet, a deletion wins and other changes merge attribute by attribute, the
/// later writer's value standing.
class ObjectContext final : public QObject {
    Q_OBJECT

public:
    ~ObjectContext() override;

    /// T is Clip, Pinboard or Tag; request.entity is set from it. The same record is the same
    /// object as long as somebody holds it. What is asked is the store: unsaved insertions are not
    /// found and unsaved values take no part in conditions and order; records removed here are
    /// left out.
    template <typename T>
    [[nodiscard]] Result<QList<std::shared_ptr<T>>> fetch(FetchRequest request) {
        request.entity = T::kEntity;
        auto rows = fetchObjects(request, &makeObject<T>);
        if (!rows) {
            return std::unexpected(rows.error());
        }
        QList<std::shared_ptr<T>> result;
        result.reserve(rows->size());
        for (const std::shared_ptr<StoredObject>& row : *rows) {
            result.append(std::static_pointer_cast<T>(row));
        }
        return result;
    }

    /// The record of that identity; none when there is none.
    template <typename T>
    [[nodiscard]] std::shared_ptr<T> object(const QUuid& key) {
        return std::static_pointer_cast<T>(fetchObject(ObjectId{T::kEntity, key}, &makeObject<T>));
    }

    [[nodiscard]] Result<QList<ObjectId>> fetchIds(const FetchRequest& request);
    [[nodiscard]] Result<qsizetype> count(const FetchRequest& request);

    /// Light attributes of one record, in the order asked for.
    using RowVisitor = std::function<void(const QUuid& key, std::span<const Value> values)>;
    /// A piece of a walk through all records of an entity, in the store's own order.
    struct Walk {
        Entity entity = Entity::Clip;
        QList<int> attributes;
        qint64 after = 0;  ///< Where the piece before ended.
        qsizetype limit = 0;
    };

    /// Shows stored values without making records: much cheaper where a whole history is read.
    /// Returns where the piece ended; none once there are no more records.
    [[nodiscard]] Result<std::optional<qint64>> walk(const Walk& piece, const RowVisitor& visitor);
    /// The same for the records of a request, in its order.
    [[nodiscard]] Result<void> readValues(const FetchRequest& request, const QList<int>& attributes,
                                          const RowVisitor& visitor);

    /// A new record with a fresh random UUID, written by the next save().
    template <typename T>
    [[nodiscard]] std::shared_ptr<T> insert() {
        return insert<T>(QUuid::createUuid());
    }

    /// The same with a key of the caller's, for a record that comes from another store. A key that
    /// is taken makes save() fail.
    template <typename T>
    [[nodiscard]] std::shared_ptr<T> insert(const QUuid& key) {
        return std::static_pointer_cast<T>(
            insertObject(std::make_shared<T>(*this, ObjectId{T::kEntity, key})));
    }

    void remove(StoredObject& object);

    /// Members of a relationship of a record, in no order. Unsaved changes included.
    [[nodiscard]] Result<QList<ObjectId>> related(const ObjectId& id, Relationship relationship);
    void relate(const ObjectId& clip, Relationship relationship, const ObjectId& other);
    void unrelate(const ObjectId& clip, Relationship relationship, const ObjectId& other);

    [[nodiscard]] bool hasChanges() const;
    /// Whether records of the entity or their relationships wait to be saved: a fetch of them does
    /// not show all that this context holds.
    [[nodiscard]] bool hasChangesOf(Entity entity) const;

    /// Writes everything in one transaction; on failure nothing is written and the changes stay
    /// pending (rollback() drops them). A record whose own values made it fail (too large, a key
    /// that is taken) is given up, so that it cannot block a later save. A record that was deleted
    /// elsewhere is dropped without failing. Publishes the change set to every other context.
    [[nodiscard]] Result<void> save();
    void rollback();

    /// Deletes every record of the request (its conditions, sort, limit and offset) in one
    /// transaction without loading it, and publishes the change. Pending changes of this context
    /// are not touched.
    [[nodiscard]] Result<QList<ObjectId>> batchDelete(const FetchRequest& request);

    /// Reads the records held in this context anew; pending changes stay.
    void refreshAllObjects();

    /// Runs the work in one immediate transaction: what it reads cannot change until it is done.
    /// save() inside it writes at once and is published when the transaction is committed. When
    /// the work or the commit fails, what it saved is undone and the held records are read anew.
    [[nodiscard]] Result<void> transaction(const std::function<Result<void>()>& work);

Q_SIGNALS:
    /// Other contexts' saves as they are merged here, and this context's own saves. Emitted on
    /// the context's thread. Meant for the view context's live lists.
    void changed(const ChangeSet& changes);

private:
    friend class ObjectStore;
    friend class StoredObject;

    class Private;
    using Maker = std::shared_ptr<StoredObject> (*)(ObjectContext& context, const ObjectId& id);

    explicit ObjectContext(std::unique_ptr<Private> d);

    template <typename T>
    static std::shared_ptr<StoredObject> makeObject(ObjectContext& context, const ObjectId& id) {
        return std::make_shared<T>(context, id);
    }

    Result<QList<std::shared_ptr<StoredObject>>> fetchObjects(const FetchRequest& request,
                                                              Maker maker);
    std::shared_ptr<StoredObject> fetchObject(const ObjectId& id, Maker maker);
    std::shared_ptr<StoredObject> insertObject(std::shared_ptr<StoredObject> object);

    std::unique_ptr<Private> d;
};

}  // namespace quillo
