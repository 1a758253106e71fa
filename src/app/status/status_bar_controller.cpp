// SPDX-License-Identifier: MIT
#include "app/status/status_bar_controller.h"

#include "hotkey/hotkey_config.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

const QString kIconKey = u"statusBarIcon"_s;
const QString kToolTip = u"Quillo"_s;
const QString kWithheldToolTip =
    u"Copied, but not pasted: the window you came from was not in front again. "
    "Paste it there with that program's own key."_s;

StatusBarIcon storedIcon(const UserDefaults& defaults) {
    return statusBarIconFromRaw(defaults.string(kIconKey).value_or(QString()))
        .value_or(StatusBarIcon::Quillo);
}

}  // namespace

StatusBarController::StatusBarController(StatusBarServices services, QObject* parent)
    : QObject(parent),
      m_services(std::move(services)),
      m_currentIcon(storedIcon(m_services.defaults)),
      m_animation(m_services.after, [this](const std::optional<StatusPicture>& picture) {
          if (picture) {
              m_services.statusItem.setImage(image(*picture));
          } else {
              showImage();
          }
      }) {
    m_services.statusItem.setToolTip(kToolTip);
    showImage();
    buildMenu();
    connect(&m_services.statusItem, &StatusItem::activated, this,
            &StatusBarController::togglePopover);
    connect(&m_services.defaults, &UserDefaults::changed, this,
            &StatusBarController::settingEdited);
    connect(&m_services.appearance, &SystemAppearance::colorSchemeChanged, this, [this] {
        showImage();
        buildMenu();
    });
    NotificationCenter& notifications = m_services.notifications;
    notifications.observe(kOpenPreferencesNotification, this, [this] { showPreferences(); });
    notifications.observe(kOpenLibraryNotification, this, [this] { showMainWindow(); });
    notifications.observe(kClipSavedNotification, this, [this] { handleClipSaved(); });
}

StatusBarController::~StatusBarController() = default;

void StatusBarController::setHotkeyManager(HotkeyManager& manager) {
    disconnect(m_hotkeyObservation);
    m_hotkeyManager = &manager;
    m_hotkeyObservation = connect(&manager, &HotkeyManager::currentConfigChanged, this,
                                  &StatusBarController::buildMenu);
    buildMenu();
}

StatusMenuItem StatusBarController::menuItem(const QString& title,
                                             void (StatusBarController::*action)(),
                                             const QKeySequence& key) {
    return {.title = title,
            .action = [this, action](const StatusMenuItem&) { (this->*action)(); },
            .key = key};
}

void StatusBarController::buildMenu() {
    const HotkeyConfig shortcut =
        m_hotkeyManager ? m_hotkeyManager->currentConfig() : HotkeyConfig();
    StatusMenuItem updates =
        menuItem(u"Check for Updates..."_s, &StatusBarController::checkForUpdates);
    if (!m_services.checkForUpdates) {
        updates.action = nullptr;
    }
    m_services.statusItem.setMenu(
        {menuItem(u"Show Overlay (%1)"_s.arg(displayString(shortcut)),
                  &StatusBarController::showOverlay),
         menuItem(u"Show Library"_s, &StatusBarController::showMainWindow),
         {},
         menuItem(u"Preferences..."_s, &StatusBarController::showPreferences,
                  QKeySequence(u"Ctrl+,"_s)),
         iconMenu(),
         updates,
         {},
         menuItem(u"Quit Quillo"_s, &StatusBarController::quitApp, QKeySequence(u"Ctrl+Q"_s))});
}

StatusMenuItem StatusBarController::iconMenu() {
    StatusMenuItem menu{.title = u"Menu Bar Icon"_s};
    for (const StatusBarIcon icon : allCases<StatusBarIcon>()) {
        menu.submenu.append(
            {.title = label(icon),
             .action = [this](const StatusMenuItem& item) { iconMenuItemTapped(item); },
             .icon = image(icon, ink()),
             .mark = icon == m_currentIcon ? StatusMenuItem::Mark::Checked
                                           : StatusMenuItem::Mark::Unchecked,
             .representedObject = rawValue(icon)});
    }
    return menu;
}

void StatusBarController::iconMenuItemTapped(const StatusMenuItem& item) {
    if (item.representedObject.typeId() != QMetaType::QString) {
        return;
    }
    if (const auto icon = statusBarIconFromRaw(item.representedObject.toString())) {
        setIcon(*icon);
    }
}

void StatusBarController::setIcon(StatusBarIcon icon) {
    m_currentIcon = icon;
    m_services.defaults.setObject(kIconKey, rawValue(icon));
    showImage();
    buildMenu();
}

void StatusBarController::settingEdited(const QString& key) {
    if (key == kIconKey && storedIcon(m_services.defaults) != m_currentIcon) {
        m_currentIcon = storedIcon(m_services.defaults);
        showImage();
        buildMenu();
    }
}

StatusPicture StatusBarController::pictureAtRest() const {
    return {.symbol = rawValue(m_currentIcon),
            .ink = ink(),
            .frame = {},
            .hasWarning = m_isWithheldShown};
}

void StatusBarController::showImage() {
    m_services.statusItem.setImage(image(pictureAtRest()));
}

void StatusBarController::handleClipSaved() {
    // The bounce is drawn for somebody to see.
    if (m_services.statusItem.isAvailable()) {
        m_animation.play(pictureAtRest());
    }
}

void StatusBarController::handlePasteWithheld() {
    m_isWithheldShown = true;
    m_services.statusItem.setToolTip(kWithheldToolTip);
    showImage();
    const quint64 count = ++m_withheldCount;
    m_services.after(kWithheldShown, [self = QPointer(this), count] {
        if (self && self->m_withheldCount == count) {
            self->m_isWithheldShown = false;
            self->m_services.statusItem.setToolTip(kToolTip);
            self->showImage();
        }
    });
}

void StatusBarController::togglePopover() {
    if (m_services.popover.isShown()) {
        m_services.popover.dismiss();
    } else if (!m_services.popover.wasJustDismissed()) {
        m_services.hideOverlay();
        m_services.popover.present(m_services.statusItem.iconRect());
    }
}

void StatusBarController::showOverlay() {
    if (!m_hotkeyManager) {
        m_ownHotkeyManager = m_services.makeHotkeyManager();
        setHotkeyManager(*m_ownHotkeyManager);
    }
    m_services.popover.dismiss();
    m_hotkeyManager->overlayController().toggle();
}

void StatusBarController::showPreferences() {
    m_services.hideOverlay();
    m_services.popover.dismiss();
    m_services.windows.showPreferences();
}

void StatusBarController::showMainWindow() {
    m_services.hideOverlay();
    m_services.popover.dismiss();
    m_services.windows.showMainWindow();
}

void StatusBarController::checkForUpdates() {
    if (m_services.checkForUpdates) {
        m_services.checkForUpdates();
    }
}

void StatusBarController::quitApp() {
    m_services.quitApp();
}

}  // namespace quillo
