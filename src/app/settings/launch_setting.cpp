// SPDX-License-Identifier: MIT
#include "app/settings/launch_setting.h"

#include <cstdio>

#include "app/settings/setting_rows.h"
#include "app/settings/toggle_switch.h"
#include "platform/login_item.h"

using namespace Qt::StringLiterals;

namespace quillo {

LaunchSetting::LaunchSetting(const SettingsServices& services, SettingsRow& row)
    : QObject(&row),
      m_services(services),
      m_switch(new ToggleSwitch(row.title().text())),
      m_trouble(new FormLabel(FormLabel::Style::Trouble)) {
    m_switch->setToolTip(row.caption().text());
    row.addControl(m_switch);
    row.addBelow(m_trouble);
    m_trouble->hide();
    connect(m_switch, &ToggleSwitch::toggledByPerson, this, &LaunchSetting::change);
    follow(services.defaults, u"launchAtLogin"_s, this, [this] { refresh(); });
}

void LaunchSetting::refresh() {
    m_switch->setChecked(m_services.loginItem.isRegistered());
}

void LaunchSetting::change(bool isWanted) {
    const Result<void> done =
        isWanted ? m_services.loginItem.registerItem() : m_services.loginItem.unregisterItem();
    m_trouble->setVisible(!done);
    if (!done) {
        const QString failure = u"Failed to %1 launch at login: %2"_s.arg(
            isWanted ? u"enable"_s : u"disable"_s, done.error().text);
        m_trouble->setText(failure);
        std::puts(qUtf8Printable(failure));
        std::fflush(stdout);
    }
    m_services.defaults.setObject(u"launchAtLogin"_s, isWanted);
    refresh();
}

}  // namespace quillo
