// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/clock.h"

namespace quillo {

/// How long ago a moment is, in its largest unit: "now", "5 min", "3 hr", "1 day", "2 wk", "4 mo",
/// "1 yr". A moment in the future is now.
[[nodiscard]] QString relativeAge(Timestamp moment, Timestamp now);

}  // namespace quillo
