// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_reordering.h"

#include <algorithm>
#include <utility>

namespace quillo {
namespace {

struct Places {
    QList<QUuid> clips;
    qsizetype first = -1;
    qsizetype last = -1;
};

Places placesOf(const QList<QUuid>& list, const QSet<QUuid>& moved) {
    Places places;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (moved.contains(list[i])) {
            places.clips.append(list[i]);
            places.first = places.first < 0 ? i : places.first;
            places.last = i;
        }
    }
    return places;
}

}  // namespace

std::optional<ClipMove> moveToGap(const QList<QUuid>& list, const QSet<QUuid>& moved,
                                  qsizetype gap) {
    Places places = placesOf(list, moved);
    const bool isTogether = places.last - places.first + 1 == places.clips.size();
    const bool isWhereItIs = isTogether && gap >= places.first && gap <= places.last + 1;
    if (places.clips.isEmpty() || gap < 0 || gap > list.size() || isWhereItIs) {
        return std::nullopt;
    }
    const auto stays = std::find_if(list.begin() + gap, list.end(),
                                    [&](const QUuid& clip) { return !moved.contains(clip); });
    return ClipMove{std::move(places.clips), stays != list.end() ? *stays : QUuid()};
}

std::optional<ClipMove> moveBySteps(const QList<QUuid>& list, const QSet<QUuid>& moved,
                                    qsizetype steps) {
    const Places places = placesOf(list, moved);
    const qsizetype gap = (steps < 0 ? places.first : places.last + 1) + steps;
    return moveToGap(list, moved, std::clamp<qsizetype>(gap, 0, list.size()));
}

QList<QUuid> withClipsMoved(const QList<QUuid>& list, const ClipMove& move) {
    if (!move.before.isNull() && !list.contains(move.before)) {
        return list;
    }
    const QSet<QUuid> wanted(move.clips.begin(), move.clips.end());
    const QList<QUuid> clips = placesOf(list, wanted).clips;
    QList<QUuid> after;
    after.reserve(list.size());
    for (const QUuid& clip : list) {
        if (clip == move.before) {
            after += clips;
        }
        if (!wanted.contains(clip)) {
            after.append(clip);
        }
    }
    return move.before.isNull() ? after + clips : after;
}

}  // namespace quillo
