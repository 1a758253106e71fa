// SPDX-License-Identifier: MIT
#pragma once

#include "app/settings/settings_section.h"
#include "app/settings/settings_services.h"
#include "hotkey/shortcut_recorder.h"

namespace quillo {

class PushButton;
class StatusLabel;

/// The overlay's shortcut in a row: whether it works, a button that shows it and records another
/// one, and the way back to the default.
class ShortcutSetting final : public QObject {
    Q_OBJECT

public:
    /// Belongs to the row.
    ShortcutSetting(const SettingsServices& services, SettingsRow& row);
    ~ShortcutSetting() override;

private:
    void addControls();
    void showStatus();
    void showShortcut();
    void showHint(const QString& hint);
    void showConflict(const QString& name);

    HotkeyManager& m_manager;
    SettingsRow& m_row;
    ShortcutRecorder m_recorder;
    StatusLabel* m_status;
    PushButton* m_button;
};

}  // namespace quillo
