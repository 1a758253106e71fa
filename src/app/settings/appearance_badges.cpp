// SPDX-License-Identifier: MIT
#include "app/settings/appearance_sections.h"
#include "app/settings/color_well.h"
#include "app/settings/following.h"
#include "app/settings/settings_section.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

SettingsRow* newRow(ClipTypeColorManager& manager, FilterType filter) {
    auto* well = new ColorWell(label(filter));
    well->setObjectName(rawValue(filter));
    QObject::connect(well, &ColorWell::chosen, &manager, [&manager, filter](const QColor& color) {
        manager.setFilterBadgeColor(color, filter);
    });
    follow(manager, &ClipTypeColorManager::filterBadgeColorsChanged, well,
           [&manager, filter, well] { well->setColor(manager.badgeColor(filter)); });
    auto* row = new SettingsRow({.title = label(filter), .symbol = icon(filter)});
    row->setPlain();
    row->addControl(well);
    return row;
}

SettingsRow* newResetRow(ClipTypeColorManager& manager) {
    auto* reset = new PushButton(PushButton::Style::Plain, QStringLiteral("Reset to Defaults"));
    reset->setObjectName(QStringLiteral("ResetBadgeColors"));
    reset->setAccessibleDescription(QStringLiteral("The badge colors"));
    QObject::connect(reset, &QAbstractButton::clicked, &manager,
                     &ClipTypeColorManager::resetBadgeColors);
    auto* row = new SettingsRow({});
    row->title().hide();
    row->addBesideTitle(reset);
    return row;
}

}  // namespace

std::unique_ptr<QWidget> makeBadgeColorsSection(ClipTypeColorManager& manager) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Badge Colors"));
    section->setObjectName(QStringLiteral("BadgeColorsSection"));
    for (const FilterType filter : allCases<FilterType>()) {
        section->addRow(newRow(manager, filter));
    }
    section->addRow(newResetRow(manager));
    return section;
}

}  // namespace quillo
