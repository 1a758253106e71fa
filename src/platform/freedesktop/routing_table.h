// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

/// Whether the kernel knows a way out of the local networks: a default route for IPv4 or IPv6 that
/// is no rejection and no loop (rtnetlink(7)). Asks the kernel and nobody else; false when it
/// does not answer. Any thread; well under a millisecond.
[[nodiscard]] bool hasDefaultRoute();

}  // namespace quillo
