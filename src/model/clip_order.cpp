// SPDX-License-Identifier: MIT
#include "model/clip_order.h"

#include <QHash>
#include <QSet>
#include <algorithm>

namespace quillo {
namespace {

QSet<QUuid> setOf(const QList<QUuid>& ids) {
    return {ids.cbegin(), ids.cend()};
}

// One past the last pinned entry; 0 when none is pinned.
qsizetype endOfPinned(const ClipOrderEntries& order) {
    const auto last = std::find_if(order.crbegin(), order.crend(),
                                   [](const ClipOrderEntry& entry) { return entry.isPinned; });
    return order.crend() - last;
}

// Takes each clip of the order out of `members` as it is met, so that it is met once.
ClipOrderEntries takeEntries(const ClipOrderEntries& order, QSet<QUuid>& members) {
    ClipOrderEntries taken;
    taken.reserve(members.size());
    for (const ClipOrderEntry& entry : order) {
        if (members.remove(entry.clipId)) {
            taken.append(entry);
        }
    }
    return taken;
}

}  // namespace

QList<QUuid> orderedClipIds(const ClipOrderEntries& order, const QList<QUuid>& newestFirst) {
    QSet<QUuid> remaining = setOf(newestFirst);
    const ClipOrderEntries placed = takeEntries(order, remaining);
    const qsizetype gap = std::min(endOfPinned(order), placed.size());
    QList<QUuid> shown;
    shown.reserve(newestFirst.size());
    const auto appendPlaced = [&](qsizetype first, qsizetype last) {
        for (qsizetype i = first; i < last; ++i) {
            shown.append(placed[i].clipId);
        }
    };
    appendPlaced(0, gap);
    std::ranges::copy_if(newestFirst, std::back_inserter(shown),
                         [&](const QUuid& id) { return remaining.contains(id); });
    appendPlaced(gap, placed.size());
    return shown;
}

bool isPinned(const ClipOrderEntries& order, const QUuid& clip) {
    const auto entry = std::ranges::find(order, clip, &ClipOrderEntry::clipId);
    return entry != order.end() && entry->isPinned;
}

ClipOrderEntries withPinToggled(ClipOrderEntries order, const QUuid& clip) {
    const auto entry = std::ranges::find(order, clip, &ClipOrderEntry::clipId);
    if (entry != order.end()) {
        entry->isPinned = !entry->isPinned;
    } else {
        order.append({clip, true});
    }
    return order;
}

ClipOrderEntries normalizedOrder(const ClipOrderEntries& order, const QList<QUuid>& newestFirst) {
    QSet<QUuid> remaining = setOf(newestFirst);
    ClipOrderEntries normalized = takeEntries(order, remaining);
    for (const QUuid& id : newestFirst) {
        if (remaining.contains(id)) {
            normalized.append({id, false});
        }
    }
    return normalized;
}

ClipOrderEntries orderAsShown(const ClipOrderEntries& order, const QList<QUuid>& shown) {
    QHash<QUuid, bool> pins;
    pins.reserve(order.size());
    for (const ClipOrderEntry& entry : order) {
        if (!pins.contains(entry.clipId)) {
            pins.insert(entry.clipId, entry.isPinned);
        }
    }
    ClipOrderEntries settled;
    settled.reserve(shown.size());
    for (const QUuid& id : shown) {
        settled.append({id, pins.value(id, false)});
    }
    return settled;
}

ClipOrderEntries withEntryMoved(ClipOrderEntries order, qsizetype from, qsizetype to) {
    const qsizetype count = order.size();
    if (from >= 0 && from < count && to >= 0 && to <= count) {
        order.move(from, std::min(to, count - 1));
    }
    return order;
}

std::optional<OrderMove> moveInOrder(const QList<QUuid>& order, const QList<QUuid>& visible,
                                     OrderMove move) {
    const qsizetype count = visible.size();
    const qsizetype target = std::min(move.to, count - 1);
    if (move.from < 0 || move.from >= count || move.to < 0 || move.to > count ||
        target == move.from) {
        return std::nullopt;
    }
    const bool isTowardsEnd = target > move.from;
    const qsizetype from = order.indexOf(visible[move.from]);
    // The clip that stands where the moved one goes is its neighbour on the far side.
    const qsizetype neighbor = order.indexOf(visible[target]);
    if (from < 0 || neighbor < 0) {
        return std::nullopt;
    }
    const qsizetype neighborWithout = neighbor > from ? neighbor - 1 : neighbor;
    return OrderMove{from, isTowardsEnd ? neighborWithout + 1 : neighborWithout};
}

}  // namespace quillo
