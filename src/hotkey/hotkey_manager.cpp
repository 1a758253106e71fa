// SPDX-License-Identifier: MIT
#include "hotkey/hotkey_manager.h"

#include <QScopedValueRollback>

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcHotkey, "HotkeyManager")

}  // namespace

HotkeyManager::HotkeyManager(HotkeyServices services,
                             std::unique_ptr<OverlayPanelController> overlayController,
                             QObject* parent)
    : QObject(parent),
      m_services(services),
      m_overlayController(std::move(overlayController)),
      m_currentConfig(loadHotkeyConfig(services.defaults)) {
    registerShortcut();
    connect(&services.defaults, &UserDefaults::changed, this, &HotkeyManager::settingEdited);
}

HotkeyManager::~HotkeyManager() = default;

std::optional<QString> HotkeyManager::updateHotkey(const HotkeyConfig& config) {
    std::optional<QString> conflict = systemShortcutName(config);
    if (!conflict) {
        apply(config);
    }
    return conflict;
}

void HotkeyManager::resetToDefault() {
    apply(HotkeyConfig{});
}

void HotkeyManager::apply(const HotkeyConfig& config) {
    const QScopedValueRollback writing(m_isWriting, true);
    replace(config);
    storeHotkeyConfig(m_services.defaults, config);
    Q_EMIT currentConfigChanged();
}

void HotkeyManager::replace(const HotkeyConfig& config) {
    m_registration.reset();
    m_currentConfig = config;
    registerShortcut();
}

void HotkeyManager::settingEdited(const QString& key) {
    if (!m_isWriting && !m_isSuspended && key.startsWith(QLatin1StringView("hotkey"))) {
        takeStored();
    }
}

void HotkeyManager::takeStored() {
    if (const HotkeyConfig stored = loadHotkeyConfig(m_services.defaults);
        stored != m_currentConfig) {
        replace(stored);
        Q_EMIT currentConfigChanged();
    }
}

void HotkeyManager::setSuspended(bool isSuspended) {
    if (m_isSuspended == isSuspended) {
        return;
    }
    m_isSuspended = isSuspended;
    m_services.hotKeys.setSuspended(isSuspended);
    if (!isSuspended) {
        takeStored();
        retryIfDisabled();
    }
}

void HotkeyManager::registerShortcut() {
    if (const Result<void> done = tryToRegister(); !done) {
        qCWarning(lcHotkey, "The shortcut %s could not be registered: %s",
                  qUtf8Printable(displayString(m_currentConfig)),
                  qUtf8Printable(done.error().text));
    }
    Q_EMIT isEnabledChanged(isEnabled());
}

void HotkeyManager::retryIfDisabled() {
    // A registration while nothing may be grabbed would succeed without being so.
    if (!isEnabled() && !m_isSuspended && tryToRegister()) {
        qCInfo(lcHotkey, "The shortcut %s is free again",
               qUtf8Printable(displayString(m_currentConfig)));
        Q_EMIT isEnabledChanged(true);
    }
}

Result<void> HotkeyManager::tryToRegister() {
    Result<std::unique_ptr<HotKeyRegistration>> registration =
        m_services.hotKeys.registerHotKey({m_currentConfig.keyCode, m_currentConfig.modifiers},
                                          [this] { m_overlayController->toggle(); });
    watchWhileTaken(!registration && registration.error().kind == ErrorKind::Busy);
    if (!registration) {
        return std::unexpected(registration.error());
    }
    m_registration = std::move(*registration);
    return {};
}

void HotkeyManager::watchWhileTaken(bool isTaken) {
    if (!isTaken) {
        m_watch.reset();
    } else if (m_watch == nullptr) {
        // From the event loop: the watch ends with a success and may not do so in its own call.
        m_watch = m_services.workspace.watchActivation([this] {
            QMetaObject::invokeMethod(this, &HotkeyManager::retryIfDisabled, Qt::QueuedConnection);
        });
    }
}

}  // namespace quillo
