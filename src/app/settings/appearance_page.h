// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <memory>

#include "app/settings/settings_services.h"

namespace quillo {

class ObjectContext;

/// The page of the settings window on which theme, groups, panel, filters and colours are set. What
/// it works on must outlive it. Main thread.
[[nodiscard]] std::unique_ptr<QWidget> makeAppearancePage(const SettingsServices& services);
[[nodiscard]] std::unique_ptr<QWidget> makeAppearancePage(ThemeManager& theme,
                                                          ClipTypeColorManager& manager,
                                                          ObjectContext& context);

}  // namespace quillo
