// SPDX-License-Identifier: MIT
#include "model/late_save.h"

#include <QHash>
#include <utility>

#include "base/logging.h"
#include "model/clip_history.h"
#include "model/pinboard.h"
#include "model/tag.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcController, "PersistenceController")

/// Under which id the store holds what memory held.
using Moved = QHash<ObjectId, ObjectId>;

bool isFailureOfTheStore(const Error& error) {
    return error.kind == ErrorKind::Busy || error.kind == ErrorKind::DiskFull ||
           error.kind == ErrorKind::NotPermitted || error.kind == ErrorKind::Malformed;
}

template <typename T>
Result<void> copyRecord(const T& from, ObjectContext& store) {
    const auto copy = store.insert<T>(from.id());
    for (size_t i = 0; i < describe(T::kEntity).attributes.size(); ++i) {
        if (!isDerived(T::kEntity, int(i))) {
            copy->setValue(int(i), from.value(int(i)));
        }
    }
    auto saved = store.save();
    if (!saved) {
        store.rollback();
    }
    return saved;
}

Result<ObjectId> moveClip(const Clip& clip, ObjectContext& store) {
    ObjectId target = clip.objectId();
    auto done = store.transaction([&]() -> Result<void> {
        if (store.object<Clip>(clip.id()) != nullptr) {
            return {};
        }
        const FixedClock clock(clip.createdAt().value_or(Timestamp{}));  // When it was captured.
        const auto digest = clip.contentHash();
        const auto known =
            digest.has_value() ? bumpDuplicate(store, *digest, clock) : std::shared_ptr<Clip>();
        if (known != nullptr) {
            target = known->objectId();
            return {};
        }
        return copyRecord(clip, store);
    });
    if (!done) {
        return std::unexpected(done.error());
    }
    return target;
}

Result<void> moveClips(ObjectContext& memory, ObjectContext& store, Moved& moved) {
    FetchRequest oldestFirst;
    oldestFirst.sort = {{std::to_underlying(ClipAttribute::CreatedAt), Qt::AscendingOrder}};
    const auto clips = memory.fetch<Clip>(oldestFirst);
    if (!clips) {
        return std::unexpected(clips.error());
    }
    for (const std::shared_ptr<Clip>& clip : *clips) {
        const auto target = moveClip(*clip, store);
        clip->dropHeavyValues();
        if (target) {
            moved.insert(clip->objectId(), *target);
        } else if (isFailureOfTheStore(target.error())) {
            return std::unexpected(target.error());
        } else {
            qCCritical(lcController, "A clip held in memory cannot be saved: %s",
                       qUtf8Printable(target.error().text));
        }
    }
    return {};
}

template <typename T>
Result<void> moveOwners(ObjectContext& memory, ObjectContext& store, Relationship relationship,
                        const Moved& moved) {
    const auto owners = memory.fetch<T>({});
    if (!owners) {
        return std::unexpected(owners.error());
    }
    for (const std::shared_ptr<T>& owner : *owners) {
        if (store.object<T>(owner->id()) == nullptr) {
            if (auto copied = copyRecord(*owner, store); !copied) {
                return copied;
            }
        }
        const auto members = memory.related(owner->objectId(), relationship);
        if (!members) {
            return std::unexpected(members.error());
        }
        for (const ObjectId& member : *members) {
            store.relate(moved.value(member, member), relationship, owner->objectId());
        }
    }
    return store.save();
}

}  // namespace

Result<void> saveLate(ObjectContext& memory, ObjectContext& store, qint64 historyLimit) {
    Moved moved;
    if (auto done = moveClips(memory, store, moved); !done) {
        return done;
    }
    if (auto done = moveOwners<Pinboard>(memory, store, Relationship::ClipPinboards, moved);
        !done) {
        return done;
    }
    if (auto done = moveOwners<Tag>(memory, store, Relationship::ClipTags, moved); !done) {
        return done;
    }
    // Its failure is logged where it happens; the clips are saved all the same.
    (void)enforceHistoryLimit(store, historyLimit);
    return {};
}

}  // namespace quillo
