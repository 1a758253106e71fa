// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/all_cases.h"

namespace quillo {

/// What the person chose: the desktop's light or dark, or one of them always.
enum class AppTheme { Auto, Light, Dark };

/// In the order in which they are offered.
template <>
[[nodiscard]] std::span<const AppTheme> allCases<AppTheme>();

/// The stored text ("auto").
[[nodiscard]] QString rawValue(AppTheme theme);
/// A text that is no raw value reads as Auto; upper and lower case differ.
[[nodiscard]] AppTheme appThemeFromRaw(QStringView raw);
/// What its choice says ("Auto").
[[nodiscard]] QString label(AppTheme theme);
/// The name of its symbol ("moon.fill").
[[nodiscard]] QString icon(AppTheme theme);

}  // namespace quillo
