// SPDX-License-Identifier: MIT
#include "model/clip_history.h"

#include <utility>

#include "base/logging.h"

namespace quillo {
namespace {

// The watcher's own category: these lines belong to the story of a capture.
QUILLO_LOG_CATEGORY(lcWatcher, "PasteboardWatcher")

constexpr int position(ClipAttribute attribute) {
    return std::to_underlying(attribute);
}

Result<std::shared_ptr<Clip>> clipWithHash(ObjectContext& context, const QByteArray& digest) {
    FetchRequest request;
    request.conditions = {
        {position(ClipAttribute::ContentHash), Condition::Operator::Equal, Value(digest)}};
    request.limit = 1;
    auto found = context.fetch<Clip>(request);
    if (!found) {
        return std::unexpected(found.error());
    }
    return found->isEmpty() ? nullptr : found->first();
}

Result<std::shared_ptr<Clip>> bump(ObjectContext& context, const QByteArray& digest,
                                   const Clock& clock) {
    auto found = clipWithHash(context, digest);
    if (!found || *found == nullptr) {
        return found;
    }
    (*found)->setModifiedAt(clock.now());
    (*found)->setCreatedAt(clock.now());
    if (auto saved = context.save(); !saved) {
        context.rollback();
        return std::unexpected(saved.error());
    }
    return found;
}

Result<qsizetype> deleteBeyond(ObjectContext& context, qint64 limit) {
    const auto total = context.count({});
    if (!total) {
        return std::unexpected(total.error());
    }
    const qint64 excess = *total - limit;
    if (excess <= 0) {
        return 0;
    }
    qCInfo(lcWatcher, "Enforcing history limit: deleting %ld old clips (limit: %ld, total: %ld)",
           long(excess), long(limit), long(*total));
    FetchRequest oldest;
    oldest.sort = {{position(ClipAttribute::CreatedAt), Qt::AscendingOrder}};
    oldest.limit = qsizetype(excess);
    const auto deleted = context.batchDelete(oldest);
    if (!deleted) {
        return std::unexpected(deleted.error());
    }
    return deleted->size();
}

}  // namespace

std::shared_ptr<Clip> bumpDuplicate(ObjectContext& context, const QByteArray& digest,
                                    const Clock& clock) {
    const auto bumped = bump(context, digest, clock);
    if (!bumped) {
        qCCritical(lcWatcher, "Error checking for duplicates: %s",
                   qUtf8Printable(bumped.error().text));
        return nullptr;
    }
    return *bumped;
}

Result<StoreOutcome> insertOrBump(ObjectContext& context, const QByteArray& digest,
                                  const Clock& clock, const std::function<void(Clip&)>& fill) {
    StoreOutcome outcome = StoreOutcome::Bumped;
    const auto done = context.transaction([&]() -> Result<void> {
        if (bumpDuplicate(context, digest, clock) != nullptr) {
            return {};
        }
        outcome = StoreOutcome::Inserted;
        const auto clip = Clip::create(context, clock.now());
        clip->setContentHash(digest);
        fill(*clip);
        return context.save();
    });
    if (!done) {
        context.rollback();
        return std::unexpected(done.error());
    }
    if (outcome == StoreOutcome::Bumped) {
        qCInfo(lcWatcher, "Duplicate found, bumped to front");
    }
    return outcome;
}

Result<qsizetype> enforceHistoryLimit(ObjectContext& context, qint64 limit) {
    if (limit < 1) {
        return 0;
    }
    Result<qsizetype> deleted = 0;
    const auto done = context.transaction([&]() -> Result<void> {
        deleted = deleteBeyond(context, limit);
        return deleted ? Result<void>() : std::unexpected(deleted.error());
    });
    if (!done) {
        qCCritical(lcWatcher, "Error enforcing history limit: %s",
                   qUtf8Printable(done.error().text));
        return std::unexpected(done.error());
    }
    return deleted;
}

}  // namespace quillo
