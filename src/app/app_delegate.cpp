// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"

#include <QCoreApplication>
#include <cstdlib>

#include "base/logging.h"
#include "platform/freedesktop/json_user_defaults.h"
#include "platform/thread_tick_timer.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcApp, "AppDelegate")

}  // namespace

AppDelegate::AppDelegate() = default;

AppDelegate::~AppDelegate() {
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
    qCInfo(lcApp, "applicationDidFinishLaunching completed");
    return {};
}

void AppDelegate::startCapture() {
    m_saver = std::make_unique<ClipSaver>(ClipSaverServices{
        *m_persistence, *m_defaults, m_notifications, *m_services.richText, m_clock});
    m_captureTimer = std::make_unique<ThreadTickTimer>();
    m_pasteboardWatcher = std::make_unique<PasteboardWatcher>(
        PasteboardWatcherServices{*m_services.pasteboard, *m_services.workspace, *m_captureTimer,
                                  *m_saver, *m_services.images});
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
    m_hotkeyManager =
        std::make_unique<HotkeyManager>(*m_services.hotKeys, *m_defaults, makeOverlayController());
    m_colorManager->setOverlayController(&m_hotkeyManager->overlayController());
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
