// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_section.h"
#include "app/settings/settings_services.h"

namespace quillo {

class ToggleSwitch;

/// The switch of a row that has the session start the program. Shows what is registered, not what
/// was wished for; a change that failed says so below.
class LaunchSetting final : public QObject {
    Q_OBJECT

public:
    /// Belongs to the row.
    LaunchSetting(const SettingsServices& services, SettingsRow& row);

    /// Asks again: somebody else may have changed it.
    void refresh();

private:
    void change(bool isWanted);

    SettingsServices m_services;
    ToggleSwitch* m_switch;
    FormLabel* m_trouble;
};

}  // namespace quillo
