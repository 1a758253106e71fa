// SPDX-License-Identifier: MIT
#include "app/settings/general_page.h"

#include <QShowEvent>

#include "app/settings/delete_history_setting.h"
#include "app/settings/launch_setting.h"
#include "app/settings/setting_rows.h"
#include "app/settings/shortcut_setting.h"
#include "app/settings/status_label.h"
#include "capture/pasteboard_watcher.h"
#include "library/groups/form_controls.h"

using namespace Qt::StringLiterals;

namespace quillo {

GeneralPage::GeneralPage(const SettingsServices& services, QWidget* parent)
    : SettingsPage(u"General"_s, parent), m_services(services) {
    addSection(sectionOf(launchRow()));
    addSection(sectionOf(monitoringRow()));
    addSection(sectionOf(shortcutRow()));
    addSection(sectionOf(switchRow({.title = u"Auto-Paste"_s,
                                    .caption = u"Automatically paste after selecting a clip"_s,
                                    .symbol = u"square.on.square"_s},
                                   services.defaults, u"enableAutoPaste"_s)));
    addSection(sectionOf(deleteRow()));
}

void GeneralPage::showEvent(QShowEvent* event) {
    SettingsPage::showEvent(event);
    m_launch->refresh();
    if (!event->spontaneous() && !m_services.pasteboardWatcher.isRunning()) {
        m_services.pasteboardWatcher.start();
    }
}

SettingsRow* GeneralPage::launchRow() {
    auto* row = new SettingsRow({.title = u"Launch at Login"_s,
                                 .caption = u"Automatically start Quillo when you log in"_s,
                                 .symbol = u"power"_s});
    m_launch = new LaunchSetting(m_services, *row);
    return row;
}

SettingsRow* GeneralPage::monitoringRow() {
    auto* row =
        new SettingsRow({.title = u"Clipboard Monitoring"_s, .symbol = u"doc.on.clipboard"_s});
    auto* status = new StatusLabel;
    auto* button = new PushButton(PushButton::Style::Plain, u"Stop"_s);
    row->addBelow(status);
    row->addControl(button);
    PasteboardWatcher& watcher = m_services.pasteboardWatcher;
    const auto show = [status, button, &watcher] {
        const bool isRunning = watcher.isRunning();
        status->setStatus(isRunning ? u"Running"_s : u"Stopped"_s, isRunning);
        button->setText(isRunning ? u"Stop"_s : u"Start"_s);
        button->setAccessibleName(isRunning ? u"Stop Clipboard Monitoring"_s
                                            : u"Start Clipboard Monitoring"_s);
        button->updateGeometry();
    };
    connect(button, &QAbstractButton::clicked, row,
            [&watcher] { watcher.isRunning() ? watcher.stop() : watcher.start(); });
    follow(watcher, &PasteboardWatcher::isRunningChanged, row, show);
    return row;
}

SettingsRow* GeneralPage::shortcutRow() {
    auto* row = new SettingsRow({.title = u"Quick Overlay"_s, .symbol = u"wand.and.stars"_s});
    new ShortcutSetting(m_services, *row);
    return row;
}

SettingsRow* GeneralPage::deleteRow() {
    auto* row = new SettingsRow({.title = u"Delete All"_s, .symbol = u"trash"_s});
    new DeleteHistorySetting(m_services, *row);
    return row;
}

}  // namespace quillo
