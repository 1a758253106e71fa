// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSet>
#include <QUuid>
#include <optional>

namespace quillo {

/// Clips of a list that go to another place of it, together and in the order that they have.
struct ClipMove {
    QList<QUuid> clips;
    QUuid before;  ///< One that stays; null for the list's end.

    friend bool operator==(const ClipMove&, const ClipMove&) = default;
};

/// To the gap before the list's place `gap`, its length for the end. None where that changes
/// nothing. Linear in the list, as all of these are.
[[nodiscard]] std::optional<ClipMove> moveToGap(const QList<QUuid>& list, const QSet<QUuid>& moved,
                                                qsizetype gap);

/// Past so many clips that stay: towards the front, counted from the first that moves, for fewer
/// than none, else towards the end, counted from the last.
[[nodiscard]] std::optional<ClipMove> moveBySteps(const QList<QUuid>& list,
                                                  const QSet<QUuid>& moved, qsizetype steps);

/// The list after the move, whose clips it may lack; unchanged where it lacks the one before which
/// they go.
[[nodiscard]] QList<QUuid> withClipsMoved(const QList<QUuid>& list, const ClipMove& move);

}  // namespace quillo
