// SPDX-License-Identifier: MIT
#include "hotkey/hotkey_manager.h"

#include <QScopedValueRollback>

#include "base/logging.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcHotkey, "HotkeyManager")

}  // namespace

HotkeyManager::HotkeyManager(HotKeys& hotKeys, UserDefaults& defaults,
                             std::unique_ptr<OverlayPanelController> overlayController,
                             QObject* parent)
    : QObject(parent),
      m_hotKeys(hotKeys),
      m_defaults(defaults),
      m_overlayController(std::move(overlayController)),
      m_currentConfig(loadHotkeyConfig(defaults)) {
    registerShortcut(m_currentConfig);
    connect(&m_defaults, &UserDefaults::changed, this, &HotkeyManager::settingEdited);
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
    storeHotkeyConfig(m_defaults, config);
    Q_EMIT currentConfigChanged();
}

void HotkeyManager::replace(const HotkeyConfig& config) {
    m_registration.reset();
    registerShortcut(config);
    m_currentConfig = config;
}

void HotkeyManager::settingEdited(const QString& key) {
    if (m_isWriting || !key.startsWith(QLatin1StringView("hotkey"))) {
        return;
    }
    if (const HotkeyConfig stored = loadHotkeyConfig(m_defaults); stored != m_currentConfig) {
        replace(stored);
        Q_EMIT currentConfigChanged();
    }
}

void HotkeyManager::registerShortcut(const HotkeyConfig& config) {
    Result<std::unique_ptr<HotKeyRegistration>> registration = m_hotKeys.registerHotKey(
        {config.keyCode, config.modifiers}, [this] { m_overlayController->toggle(); });
    if (registration) {
        m_registration = std::move(*registration);
    } else {
        qCWarning(lcHotkey, "The shortcut %s could not be registered: %s",
                  qUtf8Printable(displayString(config)), qUtf8Printable(registration.error().text));
    }
    Q_EMIT isEnabledChanged(isEnabled());
}

}  // namespace quillo
