// SPDX-License-Identifier: MIT
#include "base/clock.h"

namespace quillo {

Timestamp SystemClock::now() const {
    return std::chrono::time_point_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now());
}

}  // namespace quillo
