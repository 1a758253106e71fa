// SPDX-License-Identifier: MIT
#include "app/settings/setting_rows.h"

#include "app/settings/toggle_switch.h"
#include "platform/user_defaults.h"

namespace quillo {

void followSetting(const UserDefaults& defaults, const QString& key, QObject* context,
                   const std::function<void()>& show) {
    QObject::connect(&defaults, &UserDefaults::changed, context,
                     [key, show](const QString& changed) {
                         if (changed == key) {
                             show();
                         }
                     });
    show();
}

SettingsRow* switchRow(const SettingsRow::Texts& texts, UserDefaults& defaults,
                       const QString& key) {
    auto* row = new SettingsRow(texts);
    auto* control = new ToggleSwitch(texts.title);
    control->setToolTip(texts.caption.isEmpty() ? texts.title : texts.caption);
    row->addControl(control);
    followSetting(defaults, key, control, [control, &defaults, key] {
        control->setChecked(defaults.boolean(key).value_or(true));
    });
    QObject::connect(control, &ToggleSwitch::toggledByPerson, control,
                     [&defaults, key](bool isOn) { defaults.setObject(key, isOn); });
    return row;
}

SettingsSection* sectionOf(SettingsRow* row) {
    auto* section = new SettingsSection;
    section->addRow(row);
    return section;
}

}  // namespace quillo
