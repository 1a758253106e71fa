// SPDX-License-Identifier: MIT
// The members of a group and their order.
#include <QHash>
#include <QSet>
#include <algorithm>

#include "model/clip.h"
#include "model/pinboard.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

using Clips = QList<std::shared_ptr<Clip>>;

FetchRequest membersOf(const ObjectId& group) {
    FetchRequest request;
    request.relatedTo = RelatedTo{group, Relationship::ClipPinboards};
    request.sort = {{std::to_underlying(ClipAttribute::CreatedAt), Qt::DescendingOrder}};
    return request;
}

// The store's own order: by date, the undated last, and by key where dates are equal.
bool isShownBefore(const std::shared_ptr<Clip>& a, const std::shared_ptr<Clip>& b) {
    const auto first = a->createdAt();
    const auto second = b->createdAt();
    return first != second ? first > second : a->id().toRfc4122() < b->id().toRfc4122();
}

Result<Clips> load(ObjectContext& context, const QList<ObjectId>& ids) {
    if (ids.isEmpty()) {
        return Clips();
    }
    FetchRequest request;
    request.ids = ids;
    return context.fetch<Clip>(request);
}

// What waits to be saved is known to records only.
Result<Clips> unsavedMembers(ObjectContext& context, const ObjectId& group) {
    const auto ids = context.related(group, Relationship::ClipPinboards);
    if (!ids) {
        return std::unexpected(ids.error());
    }
    auto clips = load(context, *ids);
    if (!clips) {
        return clips;
    }
    QSet<ObjectId> missing(ids->cbegin(), ids->cend());
    for (const auto& clip : std::as_const(*clips)) {
        missing.remove(clip->objectId());
    }
    for (const ObjectId& id : std::as_const(missing)) {
        if (auto inserted = context.object<Clip>(id.key)) {
            clips->append(std::move(inserted));
        }
    }
    std::ranges::sort(*clips, isShownBefore);
    return clips;
}

template <typename Items, typename KeyOf>
Result<QList<QUuid>> keysOf(const Result<Items>& items, KeyOf keyOf) {
    if (!items) {
        return std::unexpected(items.error());
    }
    QList<QUuid> keys;
    keys.reserve(items->size());
    std::ranges::transform(*items, std::back_inserter(keys), keyOf);
    return keys;
}

QUuid keyOfClip(const std::shared_ptr<Clip>& clip) {
    return clip->id();
}

}  // namespace

Result<ObjectContext*> Pinboard::livingContext() const {
    if (context() == nullptr) {
        return failure(ErrorKind::NotFound, u"The group's store is closed."_s);
    }
    return context();
}

Result<QList<QUuid>> Pinboard::clipIds() const {
    const auto living = livingContext();
    if (!living) {
        return std::unexpected(living.error());
    }
    if ((*living)->hasChangesOf(Entity::Clip)) {
        return keysOf(unsavedMembers(**living, objectId()), keyOfClip);
    }
    return keysOf((*living)->fetchIds(membersOf(objectId())),
                  [](const ObjectId& id) { return id.key; });
}

Result<QList<QUuid>> Pinboard::orderedClipIds() const {
    auto members = clipIds();
    if (members) {
        *members = quillo::orderedClipIds(clipOrderEntries(), *members);
    }
    return members;
}

Result<Clips> Pinboard::clipsArray() const {
    const auto living = livingContext();
    if (!living) {
        return std::unexpected(living.error());
    }
    return (*living)->hasChangesOf(Entity::Clip) ? unsavedMembers(**living, objectId())
                                                 : (*living)->fetch<Clip>(membersOf(objectId()));
}

Result<Clips> Pinboard::orderedClips() const {
    const auto clips = clipsArray();
    if (!clips) {
        return clips;
    }
    QHash<QUuid, std::shared_ptr<Clip>> byId;
    for (const std::shared_ptr<Clip>& clip : *clips) {
        byId.insert(clip->id(), clip);
    }
    const auto newestFirst = keysOf(clips, keyOfClip);
    const auto order = quillo::orderedClipIds(clipOrderEntries(), *newestFirst);
    Clips ordered;
    for (const QUuid& id : order) {
        ordered.append(byId.value(id));
    }
    return ordered;
}

bool Pinboard::isPinned(const QUuid& clip) const {
    return quillo::isPinned(clipOrderEntries(), clip);
}

void Pinboard::togglePin(const QUuid& clip) {
    setClipOrderEntries(withPinToggled(clipOrderEntries(), clip));
}

Result<void> Pinboard::normalizeOrder() {
    const auto members = clipIds();
    if (!members) {
        return std::unexpected(members.error());
    }
    setClipOrderEntries(normalizedOrder(clipOrderEntries(), *members));
    return {};
}

Result<void> Pinboard::move(qsizetype from, qsizetype to) {
    const auto members = clipIds();
    if (!members) {
        return std::unexpected(members.error());
    }
    setClipOrderEntries(withEntryMoved(normalizedOrder(clipOrderEntries(), *members), from, to));
    return {};
}

Result<void> Pinboard::moveVisible(const QList<QUuid>& visible, OrderMove move) {
    const auto shown = orderedClipIds();
    if (!shown) {
        return std::unexpected(shown.error());
    }
    if (const auto whole = moveInOrder(*shown, visible, move)) {
        setClipOrderEntries(
            withEntryMoved(orderAsShown(clipOrderEntries(), *shown), whole->from, whole->to));
    }
    return {};
}

}  // namespace quillo
