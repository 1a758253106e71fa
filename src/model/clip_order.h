// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QUuid>
#include <optional>

namespace quillo {

/// One place in a group's own order: a clip, and whether it is pinned in this group.
struct ClipOrderEntry {
    QUuid clipId;
    bool isPinned = false;

    friend bool operator==(const ClipOrderEntry&, const ClipOrderEntry&) = default;
};

using ClipOrderEntries = QList<ClipOrderEntry>;

/// The stored form: a JSON array (RFC 8259) without white space of objects with "clipID", the UUID
/// in 36 upper-case characters, and "isPinned". Well under a millisecond for 10,000 entries.
[[nodiscard]] QByteArray encodeClipOrder(const ClipOrderEntries& order);

/// Reads that form, keys in any order and digits in any case; unknown keys are passed over. An
/// entry that lacks one of the two keys or has another type of value makes the list empty, as
/// everything else does that is no such document.
[[nodiscard]] ClipOrderEntries decodeClipOrder(const QByteArray& document);

// What the order says. Where a clip has several entries the first one counts. `newestFirst` are a
// group's members; everything is linear in the two lists.

/// The members as they are shown: those with an entry in the order's order, the others as a block
/// after the last pinned entry. Without any entry, newest first.
[[nodiscard]] QList<QUuid> orderedClipIds(const ClipOrderEntries& order,
                                          const QList<QUuid>& newestFirst);

[[nodiscard]] bool isPinned(const ClipOrderEntries& order, const QUuid& clip);

/// The clip's pin flipped in its place; one without an entry gets a pinned one at the end.
[[nodiscard]] ClipOrderEntries withPinToggled(ClipOrderEntries order, const QUuid& clip);

/// One entry for each member and none for others; what lacked one follows at the end, newest
/// first.
[[nodiscard]] ClipOrderEntries normalizedOrder(const ClipOrderEntries& order,
                                               const QList<QUuid>& newestFirst);

/// One entry for each clip of `shown`, in that order, with the pins that the order knows.
[[nodiscard]] ClipOrderEntries orderAsShown(const ClipOrderEntries& order,
                                            const QList<QUuid>& shown);

/// Moves the entry at `from`; `to` counts in the list without it and is clamped to its end.
/// Positions outside the list change nothing.
[[nodiscard]] ClipOrderEntries withEntryMoved(ClipOrderEntries order, qsizetype from, qsizetype to);

/// A move as withEntryMoved takes it.
struct OrderMove {
    qsizetype from = 0;
    qsizetype to = 0;

    friend bool operator==(const OrderMove&, const OrderMove&) = default;
};

/// Translates a move in a narrowed list (by a filter or a search) into one in the whole order. A
/// clip that goes towards the end lands directly after the visible clip before its new place, one
/// that goes towards the front directly before the visible clip after it; all others keep their
/// order. None for a move that changes nothing or a clip that the order lacks.
[[nodiscard]] std::optional<OrderMove> moveInOrder(const QList<QUuid>& order,
                                                   const QList<QUuid>& visible, OrderMove move);

}  // namespace quillo
