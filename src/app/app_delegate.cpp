// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"

#include <QCoreApplication>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <cstdlib>

#include "app/settings/settings_view.h"
#include "app/status/quick_clip_view.h"
#include "base/logging.h"
#include "library/window/library_view.h"
#include "platform/freedesktop/file_manager.h"
#include "platform/freedesktop/json_user_defaults.h"
#include "platform/thread_tick_timer.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcApp, "AppDelegate")

}  // namespace

AppDelegate::AppDelegate() = default;

AppDelegate::~AppDelegate() {
    m_statusBarController.reset();
    m_windows.reset();
    m_popover.reset();
    m_hotkeyManager.reset();
    m_pasteBack.reset();
    storeWhatWasCaptured();
}

void AppDelegate::endWithoutDisplay() {
    storeWhatWasCaptured();
    m_defaults.reset();
    // Its thread ends with it, and has said in the log what happened.
    m_services.pasteboard.reset();
    std::_Exit(1);
}

void AppDelegate::storeWhatWasCaptured() {
    if (m_pasteboardWatcher) {
        m_pasteboardWatcher->stop();
    }
    if (m_persistence) {
        // What was captured is being stored by work that uses the owners destroyed next.
        m_persistence->waitUntilIdle();
    }
}

Result<void> AppDelegate::applicationDidFinishLaunching() {
    qCInfo(lcApp, "applicationDidFinishLaunching started");
    Result<DesktopServices> services = makeDesktopServices([this] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [this] { endWithoutDisplay(); }, Qt::QueuedConnection);
    });
    if (!services) {
        return std::unexpected(services.error());
    }
    m_services = std::move(*services);
    m_defaults = std::make_unique<JsonUserDefaults>();
    PersistenceController::Options options;
    options.clock = &m_clock;
    options.defaults = m_defaults.get();
    m_persistence = std::make_unique<PersistenceController>(options);
    startCapture();
    startOverlay();
    startShell();
    prepareUpdates();
    qCInfo(lcApp, "applicationDidFinishLaunching completed");
    return {};
}

void AppDelegate::startCapture() {
    m_linkPreviews = std::make_unique<LinkPreviewFetcher>(
        LinkPreviewServices{*m_persistence, *m_services.path, *m_services.http, m_clock});
    m_saver = std::make_unique<ClipSaver>(ClipSaverServices{*m_persistence, *m_defaults,
                                                            m_notifications, *m_services.richText,
                                                            m_clock, m_linkPreviews.get()});
    m_captureSounds =
        std::make_unique<CaptureSounds>(*m_defaults, *m_services.sounds, m_notifications);
    m_captureTimer = std::make_unique<ThreadTickTimer>();
    m_pasteboardWatcher = std::make_unique<PasteboardWatcher>(
        PasteboardWatcherServices{*m_services.pasteboard, *m_services.workspace, *m_captureTimer,
                                  *m_saver, *m_services.images, *m_defaults});
    m_pasteboardWatcher->start();
}

void AppDelegate::startOverlay() {
    m_pasteBack = std::make_unique<PasteBack>(
        PasteBackServices{*m_services.pasteboard, *m_services.workspace, *m_services.keyEvents,
                          *m_services.hotKeys, *m_persistence, *m_defaults,
                          ContentReaders{*m_services.richText, *m_services.images}, m_clock});
    m_themeManager = std::make_unique<ThemeManager>(*m_defaults, *m_services.appearance);
    m_themeManager->applyTheme();
    m_colorManager = std::make_unique<ClipTypeColorManager>(*m_defaults, *m_themeManager);
    m_hotkeyManager = makeHotkeyManager();
    m_colorManager->setOverlayController(&m_hotkeyManager->overlayController());
}

void AppDelegate::startShell() {
    m_popover = makePopover();
    m_windows = makeShellWindows();
    m_statusBarController = makeStatusBarController();
    m_statusBarController->setHotkeyManager(*m_hotkeyManager);
    QObject::connect(m_windows.get(), &ShellWindows::preferencesRequested,
                     m_statusBarController.get(), &StatusBarController::showPreferences);
    QObject::connect(m_windows.get(), &ShellWindows::quitRequested, m_statusBarController.get(),
                     &StatusBarController::quitApp);
    QObject::connect(m_pasteBack.get(), &PasteBack::pasteWithheld, m_statusBarController.get(),
                     &StatusBarController::handlePasteWithheld);
    QObject::connect(m_services.applicationService.get(), &ApplicationService::requested,
                     m_statusBarController.get(),
                     [this](ApplicationAction action) { perform(action); });
    m_services.startSessionBus();
}

void AppDelegate::prepareUpdates() {
    m_updates = std::make_unique<SparkleUpdateManager>(*m_services.http, builtInUpdateFeed());
    if (m_updates->hasFeed()) {
        qCInfo(lcApp, "Sparkle updater initialized for direct distribution");
    }
}

void AppDelegate::perform(ApplicationAction action) {
    switch (action) {
        case ApplicationAction::ShowOverlay:
            m_statusBarController->showOverlay();
            break;
        case ApplicationAction::ShowLibrary:
            m_statusBarController->showMainWindow();
            break;
        case ApplicationAction::ShowSettings:
            m_statusBarController->showPreferences();
            break;
    }
}

ClipListServices AppDelegate::clipListServices() {
    return {
        *m_persistence, m_hotkeyManager->overlayController().search(), m_clock,
        [this](ClipType kind) { return m_colorManager->colors().value(kind, defaultColor(kind)); },
        [this](const Clip& clip) { m_pasteBack->copyQuickly(clip); }};
}

std::unique_ptr<Popover> AppDelegate::makePopover() {
    return std::make_unique<Popover>(*m_services.panelSurface, [this] {
        auto view = std::make_unique<QuickClipView>(clipListServices());
        QObject::connect(view.get(), &QuickClipView::closeRequested, m_popover.get(),
                         &Popover::dismiss);
        return view;
    });
}

std::unique_ptr<LibraryView> AppDelegate::makeLibrary() {
    return std::make_unique<LibraryView>(LibraryServices{
        *m_persistence, m_hotkeyManager->overlayController().search(), *m_pasteBack, *m_defaults,
        *m_services.images, *m_services.richText, *m_services.thumbnails, *m_services.workspace,
        m_clock, &openAddress, [](const QUrl& file) { showInFolder(file.toLocalFile()); },
        [this] { return spokenString(m_hotkeyManager->currentConfig()); }});
}

std::unique_ptr<ShellWindows> AppDelegate::makeShellWindows() {
    return std::make_unique<ShellWindows>(
        *m_defaults,
        ShellWindows::Parts{.makeSettings =
                                [this] {
                                    return std::make_unique<SettingsView>(SettingsServices{
                                        *m_defaults, *m_persistence, *m_pasteboardWatcher,
                                        *m_hotkeyManager, *m_colorManager, *m_themeManager,
                                        *m_captureSounds, *m_services.loginItem});
                                },
                            .makeLibrary = [this] { return makeLibrary(); },
                            .bringToFront =
                                [this](QWindow& window) {
                                    RunningApplication ours;
                                    ours.windowId = quint32(window.winId());
                                    m_services.workspace->activate(ours);
                                }});
}

std::unique_ptr<StatusBarController> AppDelegate::makeStatusBarController() {
    return std::make_unique<StatusBarController>(StatusBarServices{
        *m_services.statusItem, *m_popover, *m_windows, *m_defaults, m_notifications,
        *m_services.appearance,
        [this](std::chrono::milliseconds delay, std::function<void()> work) {
            QTimer::singleShot(delay, Qt::PreciseTimer, &m_context, std::move(work));
        },
        [this] { return makeHotkeyManager(); },
        [this] { m_hotkeyManager->overlayController().hide(); },
        [this] { m_updates->checkForUpdates(); }, [] { QCoreApplication::quit(); }});
}

std::unique_ptr<HotkeyManager> AppDelegate::makeHotkeyManager() {
    return std::make_unique<HotkeyManager>(
        HotkeyServices{*m_services.hotKeys, *m_defaults, *m_services.workspace},
        makeOverlayController());
}

std::unique_ptr<OverlayPanelController> AppDelegate::makeOverlayController() {
    return std::make_unique<OverlayPanelController>(
        OverlayPanelServices{*m_persistence, *m_services.workspace, *m_pasteBack, *m_defaults,
                             *m_themeManager, *m_colorManager, m_notifications, *m_services.images,
                             *m_services.richText, *m_services.thumbnails, *m_services.panelSurface,
                             m_clock, [this] { m_pasteboardWatcher->checkSoon(); },
                             [this] { return m_services.hotKeys->lastPressTime(); }});
}

}  // namespace quillo
