// SPDX-License-Identifier: MIT
#pragma once

namespace quillo {

/// Whether something listens on the socket of the person's sound server: the one that PULSE_SERVER
/// names, else the usual one in the runtime folder. True where the server is not on this machine's
/// file system. Returns at once; says nothing of whether it answers.
[[nodiscard]] bool soundServerListens();

}  // namespace quillo
