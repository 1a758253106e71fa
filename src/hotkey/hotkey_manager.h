// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "hotkey/hotkey_config.h"
#include "overlay/overlay_panel_controller.h"

namespace quillo {

/// Owns the system-wide shortcut and the overlay's controller that it toggles. A shortcut that is
/// edited in the settings by hand takes effect at once, as a stored one does at the start. Main
/// thread.
class HotkeyManager final : public QObject {
    Q_OBJECT

public:
    /// Registers the stored shortcut. hotKeys and defaults must outlive the manager.
    HotkeyManager(HotKeys& hotKeys, UserDefaults& defaults,
                  std::unique_ptr<OverlayPanelController> overlayController,
                  QObject* parent = nullptr);
    ~HotkeyManager() override;

    /// The name of the system's shortcut when the combination is refused, and then nothing has
    /// changed; none when it was applied and stored.
    [[nodiscard]] std::optional<QString> updateHotkey(const HotkeyConfig& config);

    /// Applies and stores Shift-Command-V without a check.
    void resetToDefault();

    /// True while the shortcut is registered.
    [[nodiscard]] bool isEnabled() const { return m_registration != nullptr; }
    [[nodiscard]] const HotkeyConfig& currentConfig() const { return m_currentConfig; }
    [[nodiscard]] OverlayPanelController& overlayController() { return *m_overlayController; }

Q_SIGNALS:
    void isEnabledChanged(bool isEnabled);
    void currentConfigChanged();

private:
    void apply(const HotkeyConfig& config);
    void replace(const HotkeyConfig& config);
    void registerShortcut(const HotkeyConfig& config);
    void settingEdited(const QString& key);

    HotKeys& m_hotKeys;
    UserDefaults& m_defaults;
    std::unique_ptr<OverlayPanelController> m_overlayController;
    HotkeyConfig m_currentConfig;
    std::unique_ptr<HotKeyRegistration> m_registration;
    bool m_isWriting = false;  ///< What changes now in the settings is ours.
};

}  // namespace quillo
