// SPDX-License-Identifier: MIT
#include "model/store/object_context.h"

#include <algorithm>

#include "base/logging.h"
#include "model/store/object_context_p.h"
#include "model/store/record_writer.h"
#include "model/store/store_query.h"
#include "model/store/store_schema.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcContext, "ObjectContext")

}  // namespace

bool ChangeSet::isEmpty() const {
    return inserted.isEmpty() && updated.isEmpty() && deleted.isEmpty() && !everything;
}

ObjectContext::ObjectContext(std::unique_ptr<Private> priv) : d(std::move(priv)) {
    d->q = this;
}

ObjectContext::~ObjectContext() {
    for (const std::weak_ptr<StoredObject>& object : std::as_const(d->objects)) {
        if (const auto alive = object.lock()) {
            alive->m_context = nullptr;
        }
    }
}

// --- Reading.

ObjectContext::Private::Lease ObjectContext::Private::lease() {
    if (role == Role::Background) {
        return {{}, *background};
    }
    std::unique_lock lock(store.m_viewGate);
    return {std::move(lock), *store.m_connections.view};
}

ObjectContext::Private::ObjectPointer ObjectContext::Private::held(const ObjectId& id) const {
    return objects.value(id).lock();
}

void ObjectContext::Private::readRow(const SqliteStatement& statement, StoredObject& object) {
    const auto attributes = describe(object.m_id.entity).attributes;
    int column = 1;
    for (size_t i = 0; i < attributes.size(); ++i) {
        if (attributes[i].load == AttributeLoad::Light) {
            object.takeStored(int(i), statement.value(column++, attributes[i].type));
        }
    }
}

Value ObjectContext::Private::loadHeavy(const StoredObject& object, int attribute) {
    const ObjectId id = object.objectId();
    if (inserted.contains(held(id))) {
        return {};
    }
    const AttributeDescription& description = describe(id.entity).attributes[size_t(attribute)];
    const Lease connection = lease();
    auto statement =
        prepared(connection.database, {QByteArray("SELECT ") + description.name + " FROM " +
                                           heavyTable(id.entity) + " WHERE id = ?",
                                       {Value(id.key.toRfc4122())}});
    const Result<bool> row = statement ? statement->step() : std::unexpected(statement.error());
    if (!row) {
        qCCritical(lcContext, "Cannot read %s: %s", description.name,
                   qUtf8Printable(row.error().text));
        return {};
    }
    return *row ? statement->value(0, description.type) : Value();
}

Result<QList<std::shared_ptr<StoredObject>>> ObjectContext::fetchObjects(
    const FetchRequest& request, Maker maker) {
    if (d->role == Private::Role::Background) {
        d->mergeInbox();
    }
    const Private::Lease connection = d->lease();
    auto statement = prepared(connection.database, rowsQuery(request));
    QList<std::shared_ptr<StoredObject>> rows;
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        const ObjectId id{request.entity, statement->uuid(0)};
        if (d->removed.contains(id)) {
            continue;
        }
        auto object = d->held(id);
        if (object == nullptr) {
            object = maker(*this, id);
            d->objects.insert(id, object);
        }
        d->readRow(*statement, *object);
        rows.append(std::move(object));
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return rows;
}

std::shared_ptr<StoredObject> ObjectContext::fetchObject(const ObjectId& id, Maker maker) {
    if (id.key.isNull()) {
        return nullptr;
    }
    if (auto object = d->held(id)) {
        return object->isDeleted() ? nullptr : object;
    }
    FetchRequest request;
    request.entity = id.entity;
    request.ids = {id};
    const auto rows = fetchObjects(request, maker);
    if (!rows) {
        qCCritical(lcContext, "Cannot fetch a record: %s", qUtf8Printable(rows.error().text));
        return nullptr;
    }
    return rows->isEmpty() ? nullptr : rows->first();
}

Result<QList<ObjectId>> ObjectContext::fetchIds(const FetchRequest& request) {
    const Private::Lease connection = d->lease();
    auto statement = prepared(connection.database, idsQuery(request));
    QList<ObjectId> ids;
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        const ObjectId id{request.entity, statement->uuid(0)};
        if (!d->removed.contains(id)) {
            ids.append(id);
        }
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    return ids;
}

Result<qsizetype> ObjectContext::count(const FetchRequest& request) {
    const StoreQuery query = countQuery(request);
    const Private::Lease connection = d->lease();
    const auto rows = connection.database.queryInteger(query.sql, query.bindings);
    if (!rows) {
        return std::unexpected(rows.error());
    }
    return qsizetype(*rows);
}

Result<QList<ObjectId>> ObjectContext::related(const ObjectId& id, Relationship relationship) {
    const RelationshipDescription& relation = describe(relationship);
    const bool isClip = id.entity == Entity::Clip;
    const Entity wanted = isClip ? relation.other : Entity::Clip;
    const Private::Lease connection = d->lease();
    auto statement = prepared(
        connection.database, {QByteArray("SELECT ") + (isClip ? "other" : "clip") + " FROM " +
                                  relation.table + " WHERE " + (isClip ? "clip" : "other") + " = ?",
                              {Value(id.key.toRfc4122())}});
    QSet<ObjectId> members;
    Result<bool> row = false;
    while (statement && (row = statement->step()) && *row) {
        members.insert({wanted, statement->uuid(0)});
    }
    if (!statement || !row) {
        return std::unexpected(statement ? row.error() : statement.error());
    }
    for (const Private::RelationChange& change : std::as_const(d->relations)) {
        if (change.relationship != relationship || (isClip ? change.clip : change.other) != id) {
            continue;
        }
        const ObjectId& member = isClip ? change.other : change.clip;
        change.isRelated ? (void)members.insert(member) : (void)members.remove(member);
    }
    members.removeIf([this](const ObjectId& member) { return d->removed.contains(member); });
    return members.values();
}

// --- Changing.

std::shared_ptr<StoredObject> ObjectContext::insertObject(std::shared_ptr<StoredObject> object) {
    d->objects.insert(object->m_id, object);
    d->inserted.append(object);
    return object;
}

void ObjectContext::Private::noteChange(StoredObject& object) {
    const ObjectPointer pointer = held(object.m_id);
    if (pointer != nullptr && !inserted.contains(pointer)) {
        updated.insert(object.m_id, pointer);
    }
}

void ObjectContext::remove(StoredObject& object) {
    if (object.m_context != this || object.m_deleted) {
        return;
    }
    object.m_deleted = true;
    const auto pointer = d->held(object.m_id);
    if (d->inserted.removeOne(pointer)) {
        return;
    }
    d->updated.remove(object.m_id);
    d->removed.insert(object.m_id, pointer);
}

void ObjectContext::relate(const ObjectId& clip, Relationship relationship, const ObjectId& other) {
    d->relations.append({clip, relationship, other, true});
}

void ObjectContext::unrelate(const ObjectId& clip, Relationship relationship,
                             const ObjectId& other) {
    d->relations.append({clip, relationship, other, false});
}

bool ObjectContext::hasChanges() const {
    return !d->inserted.isEmpty() || !d->updated.isEmpty() || !d->removed.isEmpty() ||
           !d->relations.isEmpty();
}

bool ObjectContext::hasChangesOf(Entity entity) const {
    const auto concerns = [entity](const Private::RelationChange& change) {
        return change.clip.entity == entity || change.other.entity == entity;
    };
    const auto isOfEntity = [entity](const auto& object) {
        return object->objectId().entity == entity;
    };
    return std::ranges::any_of(d->inserted, isOfEntity) ||
           std::ranges::any_of(d->updated, isOfEntity) ||
           std::ranges::any_of(d->removed, isOfEntity) ||
           std::ranges::any_of(d->relations, concerns);
}

void ObjectContext::rollback() {
    for (const auto& object : std::as_const(d->inserted)) {
        object->m_deleted = true;
    }
    for (const auto& object : std::as_const(d->updated)) {
        object->undoChanges();
    }
    for (const auto& object : std::as_const(d->removed)) {
        object->m_deleted = false;
        object->undoChanges();
    }
    d->inserted.clear();
    d->updated.clear();
    d->removed.clear();
    d->relations.clear();
}

}  // namespace quillo
