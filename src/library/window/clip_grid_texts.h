// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/clock.h"
#include "model/clip.h"

namespace quillo {

struct CardContent;

/// How long ago a moment is, in its largest unit: "now", "5 min", "3 hr", "1 day", "2 wk", "4 mo",
/// "1 yr". A moment in the future is now.
[[nodiscard]] QString relativeAge(Timestamp moment, Timestamp now);

/// The symbol of a stored kind in the library.
[[nodiscard]] QString kindSymbol(ClipType kind);

/// What a card says to screen readers, and what beside it.
[[nodiscard]] QString spokenName(const CardContent& card);
[[nodiscard]] QString spokenDetails(const CardContent& card, Timestamp now);

}  // namespace quillo
