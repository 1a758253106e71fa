// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>

#include "app/settings/settings_section.h"

namespace quillo {

class UserDefaults;

/// Calls show now and whenever the setting is another one, whoever changed it, as long as the
/// context lives.
void followSetting(const UserDefaults& defaults, const QString& key, QObject* context,
                   const std::function<void()>& show);

/// A row with a switch that shows and sets a setting, on where it is absent or no truth value.
[[nodiscard]] SettingsRow* switchRow(const SettingsRow::Texts& texts, UserDefaults& defaults,
                                     const QString& key);

/// A section of that one row.
[[nodiscard]] SettingsSection* sectionOf(SettingsRow* row);

}  // namespace quillo
