// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "app/desktop_services.h"
#include "app/status/popover.h"
#include "app/status/status_bar_controller.h"
#include "app/updates/sparkle_update_manager.h"
#include "app/windows/shell_windows.h"
#include "appearance/clip_type_color_manager.h"
#include "appearance/theme_manager.h"
#include "base/clock.h"
#include "capture/capture_sound.h"
#include "capture/clip_saver.h"
#include "capture/link_preview_fetcher.h"
#include "capture/pasteboard_watcher.h"
#include "hotkey/hotkey_manager.h"
#include "library/list/clip_list_view.h"
#include "model/persistence_controller.h"
#include "paste/paste_back.h"
#include "platform/application_service.h"
#include "platform/notification_center.h"
#include "platform/tick_timer.h"
#include "platform/user_defaults.h"

namespace quillo {

class LibraryView;

/// Creates the long-lived owners in order, holds them for the life of the process, and ends them
/// in the reverse order, after everything that was captured is stored. Main thread.
class AppDelegate final {
public:
    AppDelegate();
    ~AppDelegate();

    /// Starts everything; an error means that the program cannot run here.
    [[nodiscard]] Result<void> applicationDidFinishLaunching();

    /// Ends the process with 1 when the display server is gone, after everything that was captured
    /// is stored. Nothing is destroyed that talks to the display. Main thread, never returns.
    [[noreturn]] void endWithoutDisplay();

private:
    void storeWhatWasCaptured();
    void startCapture();
    void startOverlay();
    void prepareUpdates();
    void startShell();
    void perform(ApplicationAction action);
    [[nodiscard]] std::unique_ptr<HotkeyManager> makeHotkeyManager();
    [[nodiscard]] std::unique_ptr<OverlayPanelController> makeOverlayController();
    [[nodiscard]] std::unique_ptr<Popover> makePopover();
    [[nodiscard]] std::unique_ptr<LibraryView> makeLibrary();
    [[nodiscard]] std::unique_ptr<ShellWindows> makeShellWindows();
    [[nodiscard]] std::unique_ptr<StatusBarController> makeStatusBarController();
    [[nodiscard]] ClipListServices clipListServices();

    SystemClock m_clock;
    DesktopServices m_services;
    std::unique_ptr<UserDefaults> m_defaults;
    NotificationCenter m_notifications;
    std::unique_ptr<PersistenceController> m_persistence;
    std::unique_ptr<LinkPreviewFetcher> m_linkPreviews;
    std::unique_ptr<ClipSaver> m_saver;
    std::unique_ptr<TickTimer> m_captureTimer;
    std::unique_ptr<PasteboardWatcher> m_pasteboardWatcher;
    std::unique_ptr<CaptureSounds> m_captureSounds;
    std::unique_ptr<PasteBack> m_pasteBack;
    std::unique_ptr<ThemeManager> m_themeManager;
    std::unique_ptr<ClipTypeColorManager> m_colorManager;
    std::unique_ptr<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<SparkleUpdateManager> m_updates;
    std::unique_ptr<Popover> m_popover;
    std::unique_ptr<ShellWindows> m_windows;
    std::unique_ptr<StatusBarController> m_statusBarController;
    QObject m_context;  ///< Of delayed calls.
};

}  // namespace quillo
