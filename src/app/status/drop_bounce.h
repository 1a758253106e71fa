// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace quillo {

/// How the status item's drawing is moved and stretched at one moment of the drop bounce.
struct BounceFrame {
    double dropPoints = 0;  ///< Downwards, for a panel of 22 points.
    double scaleX = 1;
    double scaleY = 1;
};

inline constexpr std::chrono::milliseconds kBounceDuration{500};

/// The drawing drops and is pressed flat, springs up, and settles, faster in the middle than at
/// both ends. At rest before the beginning and after the end.
[[nodiscard]] BounceFrame dropBounceAt(std::chrono::milliseconds elapsed);

}  // namespace quillo
