// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <optional>

#include "library/thumbnails/card_content.h"
#include "model/clip_order.h"

namespace quillo {

/// What happens in the strip's list when a dragged card comes over another one: the positions of
/// the move, or none. Only within a group, and a card that is pinned there keeps its place.
[[nodiscard]] std::optional<OrderMove> moveOnDragOver(const QList<CardContent>& shown,
                                                      const QUuid& dragged, int overIndex,
                                                      bool isGroupShown);

}  // namespace quillo
