// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

#include "app/status/popover.h"
#include "app/status/save_animation.h"
#include "app/status/status_bar_icon.h"
#include "app/windows/shell_windows.h"
#include "hotkey/hotkey_manager.h"
#include "platform/notification_center.h"
#include "platform/status_item.h"
#include "platform/system_appearance.h"
#include "platform/user_defaults.h"

namespace quillo {

/// What the controller needs; everything must outlive it.
struct StatusBarServices {
    StatusItem& statusItem;
    Popover& popover;
    ShellWindows& windows;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    const SystemAppearance& appearance;
    Scheduler after;
    /// For a request for the overlay before a manager was attached.
    std::function<std::unique_ptr<HotkeyManager>()> makeHotkeyManager;
    /// The panel floats above every window: it goes before one of ours comes.
    std::function<void()> hideOverlay;
    /// Checks for updates with its own windows; without it the menu shows that nobody does.
    std::function<void()> checkForUpdates;
    std::function<void()> quitApp;
};

/// The status item and what can be reached through it: the popover, the overlay, the windows, the
/// choice of its own icon. Opens the windows for other parts too, and shows each saved clip and a
/// paste that was withheld. Main thread.
class StatusBarController final : public QObject {
    Q_OBJECT

public:
    /// For how long a withheld paste is shown.
    static constexpr std::chrono::milliseconds kWithheldShown{8000};

    explicit StatusBarController(StatusBarServices services, QObject* parent = nullptr);
    ~StatusBarController() override;

    /// The menu names its shortcut from now on; a later manager replaces it.
    void setHotkeyManager(HotkeyManager& manager);

    void handleClipSaved();
    /// The clip was copied but could not be pasted: says so for some seconds.
    void handlePasteWithheld();
    /// The item's represented object names the icon; anything else is ignored.
    void iconMenuItemTapped(const StatusMenuItem& item);
    /// Stores the choice and shows it.
    void setIcon(StatusBarIcon icon);
    void togglePopover();
    void showOverlay();
    void showPreferences();
    void showMainWindow();
    void checkForUpdates();
    void quitApp();

    [[nodiscard]] StatusBarIcon currentIcon() const { return m_currentIcon; }
    [[nodiscard]] bool isAnimating() const { return m_animation.isAnimating(); }

private:
    void buildMenu();
    [[nodiscard]] StatusMenuItem iconMenu();
    [[nodiscard]] StatusMenuItem menuItem(const QString& title,
                                          void (StatusBarController::*action)(),
                                          const QKeySequence& key = {});
    void showImage();
    void settingEdited(const QString& key);
    [[nodiscard]] QColor ink() const { return statusInk(m_services.appearance.colorScheme()); }
    [[nodiscard]] StatusPicture pictureAtRest() const;

    StatusBarServices m_services;
    QPointer<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<HotkeyManager> m_ownHotkeyManager;
    QMetaObject::Connection m_hotkeyObservation;
    StatusBarIcon m_currentIcon;
    SaveAnimation m_animation;
    quint64 m_withheldCount = 0;
    bool m_isWithheldShown = false;
};

}  // namespace quillo
