// SPDX-License-Identifier: MIT
#include "library/list/clip_row_cache.h"

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcRows, "ClipList")

}  // namespace

QList<std::shared_ptr<Clip>> clipsToShow(ObjectContext& context, const QList<QUuid>& ids) {
    FetchRequest request;
    for (const QUuid& id : ids) {
        request.ids.append({Entity::Clip, id});
    }
    const auto clips = context.fetch<Clip>(request);
    if (!clips) {
        qCCritical(lcRows, "Error fetching clips: %ls", qUtf16Printable(clips.error().text));
    }
    return clips.value_or(QList<std::shared_ptr<Clip>>());
}

}  // namespace quillo
