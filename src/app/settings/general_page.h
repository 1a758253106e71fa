// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_page.h"
#include "app/settings/settings_services.h"

namespace quillo {

class LaunchSetting;
class SettingsRow;

/// Starting at login, the capture loop, the overlay's shortcut, pasting, and deleting everything.
class GeneralPage final : public SettingsPage {
    Q_OBJECT

public:
    explicit GeneralPage(const SettingsServices& services, QWidget* parent = nullptr);

protected:
    /// A capture loop that was stopped runs again when the page is looked at.
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] SettingsRow* launchRow();
    [[nodiscard]] SettingsRow* monitoringRow();
    [[nodiscard]] SettingsRow* shortcutRow();
    [[nodiscard]] SettingsRow* deleteRow();

    SettingsServices m_services;
    LaunchSetting* m_launch = nullptr;
};

}  // namespace quillo
