// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/http_fetch.h"

namespace quillo {

/// Asks the system for the addresses of a name, each time on a thread of its own that nobody waits
/// for: a name server that does not answer holds up neither a deadline nor the end of the program.
[[nodiscard]] HostResolver systemResolver();

}  // namespace quillo
