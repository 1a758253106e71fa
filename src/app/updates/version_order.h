// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>
#include <compare>

namespace quillo {

/// Orders two version texts: runs of digits by their value, of any length; words by their letters,
/// and a word comes before a number and before the end, so that 1.0b2 < 1.0 < 1.0.1. Missing parts
/// count as 0; what follows a "+" does not count.
[[nodiscard]] std::strong_ordering compareVersions(QStringView left, QStringView right);

}  // namespace quillo
