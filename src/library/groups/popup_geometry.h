// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace quillo {

/// The side of its anchor that a popup opens on.
enum class PopupSide { Below, Above, Left, Right };

/// How it lies along its anchor's edge.
enum class PopupAlignment { Leading, Center };

/// What places a popup; all in the panel's coordinates.
struct PopupRequest {
    QRect anchor;  ///< What it belongs to; may be empty, a mere point.
    QSize wanted;  ///< Its ground, without the shadow.
    QRect bounds;  ///< It lies inside these.
    PopupSide side = PopupSide::Below;
    PopupAlignment alignment = PopupAlignment::Leading;
    int gap = 0;  ///< Between anchor and ground.
};

struct PopupPlace {
    QRect ground;
    bool isCut = false;  ///< Shorter than wanted: the content scrolls.
};

/// On the wanted side, else on the opposite one, else as near as the bounds let it, over the
/// anchor where there is no other way. What reaches over
/// the bounds along the anchor's edge is moved back into them. What is larger than the bounds
/// becomes as large as they are.
[[nodiscard]] PopupPlace placePopup(const PopupRequest& request);

}  // namespace quillo
