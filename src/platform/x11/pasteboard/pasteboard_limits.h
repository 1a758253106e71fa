// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <chrono>

namespace quillo::x11 {

using TimePoint = std::chrono::steady_clock::time_point;

/// The bounds within which other programs are waited for.
struct PasteboardLimits {
    qsizetype maxBytes = 64 * 1024 * 1024;           ///< Of one representation.
    std::chrono::milliseconds firstByte{10'000};     ///< From the request to the first byte.
    std::chrono::milliseconds progress{5'000};       ///< Between two parts of one representation.
    std::chrono::milliseconds wholeRead{20'000};     ///< For one representation.
    int stallsUntilGivenUp = 2;                      ///< Reads of one copy that may run late.
    std::chrono::milliseconds ownerGrace{20};        ///< Before an empty selection is believed.
    std::chrono::milliseconds idleTransfer{60'000};  ///< For a requestor that takes nothing.
    std::chrono::milliseconds saveTargets{10'000};   ///< For settle() after LeavingSoon.
    std::chrono::milliseconds handOver{1'000};       ///< For another manager when we quit.
};

}  // namespace quillo::x11
