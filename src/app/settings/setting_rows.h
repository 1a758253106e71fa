// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/following.h"
#include "app/settings/settings_section.h"

namespace quillo {

/// A row with a switch that shows and sets a setting, on where it is absent or no truth value.
[[nodiscard]] SettingsRow* switchRow(const SettingsRow::Texts& texts, UserDefaults& defaults,
                                     const QString& key);

/// A section of that one row.
[[nodiscard]] SettingsSection* sectionOf(SettingsRow* row);

}  // namespace quillo
