// SPDX-License-Identifier: MIT
#include "app/settings/setting_rows.h"

#include "app/settings/toggle_switch.h"

namespace quillo {

SettingsRow* switchRow(const SettingsRow::Texts& texts, UserDefaults& defaults,
                       const QString& key) {
    auto* row = new SettingsRow(texts);
    auto* control = new ToggleSwitch(texts.title);
    control->setToolTip(texts.caption.isEmpty() ? texts.title : texts.caption);
    row->addControl(control);
    follow(defaults, key, control, [control, &defaults, key] {
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
