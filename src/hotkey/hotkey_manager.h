// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "hotkey/hotkey_config.h"
#include "overlay/overlay_panel_controller.h"
#include "platform/workspace.h"

namespace quillo {

/// What the manager needs; everything must outlive it.
struct HotkeyServices {
    HotKeys& hotKeys;
    UserDefaults& defaults;
    Workspace& workspace;
};

/// Owns the system-wide shortcut and the overlay's controller that it toggles. A shortcut that is
/// edited in the settings by hand takes effect at once, as a stored one does at the start. One that
/// another program owns is tried again whenever another window becomes active: that program may
/// have ended. Main thread.
class HotkeyManager final : public QObject {
    Q_OBJECT

public:
    /// Registers the stored shortcut.
    HotkeyManager(HotkeyServices services,
                  std::unique_ptr<OverlayPanelController> overlayController,
                  QObject* parent = nullptr);
    ~HotkeyManager() override;

    /// The name of the system's shortcut when the combination is refused, and then nothing has
    /// changed; none when it was applied and stored.
    [[nodiscard]] std::optional<QString> updateHotkey(const HotkeyConfig& config);

    /// Applies and stores Shift-Command-V without a check.
    void resetToDefault();

    /// Tries once more to register a shortcut that is not; for when somebody looks.
    void retryIfDisabled();

    /// Lifts (true) or restores (false) the shortcut's grab, so that its keys can be recorded. What
    /// the settings say meanwhile takes effect afterwards.
    void setSuspended(bool isSuspended);

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
    void registerShortcut();
    [[nodiscard]] Result<void> tryToRegister();
    void watchWhileTaken(bool isTaken);
    void settingEdited(const QString& key);
    void takeStored();

    HotkeyServices m_services;
    std::unique_ptr<OverlayPanelController> m_overlayController;
    HotkeyConfig m_currentConfig;
    std::unique_ptr<HotKeyRegistration> m_registration;
    std::unique_ptr<ActivationWatch> m_watch;  ///< Only while another program owns the shortcut.
    bool m_isSuspended = false;
    bool m_isWriting = false;  ///< What changes now in the settings is ours.
};

}  // namespace quillo
