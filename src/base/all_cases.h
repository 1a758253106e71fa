// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace quillo {

/// Every case of an enumeration in its order; specialised next to each enumeration that has it.
template <typename Enumeration>
[[nodiscard]] std::span<const Enumeration> allCases();

}  // namespace quillo
