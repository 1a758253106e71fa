// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// The address of the person's session bus; empty where there is none. Without an address the bus
/// library would start a bus of its own.
[[nodiscard]] QString sessionBusAddress();

}  // namespace quillo
