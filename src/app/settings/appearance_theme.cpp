// SPDX-License-Identifier: MIT
#include "app/settings/appearance_sections.h"
#include "app/settings/following.h"
#include "app/settings/segmented_control.h"
#include "app/settings/settings_section.h"
#include "appearance/theme_manager.h"

namespace quillo {
namespace {

constexpr int kPickerWidth = 200;

SegmentedControl* newPicker(ThemeManager& theme) {
    auto* picker = new SegmentedControl(QStringLiteral("Color Scheme"));
    picker->setFixedWidth(kPickerWidth);
    const auto choices = allCases<AppTheme>();
    for (const AppTheme choice : choices) {
        picker->addSegment(label(choice), icon(choice));
    }
    QObject::connect(picker, &SegmentedControl::chosen, &theme, [&theme, choices](int index) {
        theme.setCurrentTheme(choices[size_t(index)]);
    });
    follow(theme, &ThemeManager::currentThemeChanged, picker, [&theme, choices, picker] {
        const auto at = std::ranges::find(choices, theme.currentTheme());
        picker->setCurrentIndex(int(at - choices.begin()));
    });
    return picker;
}

}  // namespace

std::unique_ptr<QWidget> makeThemeSection(ThemeManager& theme) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Theme"));
    section->setObjectName(QStringLiteral("ThemeSection"));
    auto* row = new SettingsRow(
        {.title = QStringLiteral("Color Scheme"),
         .caption = QStringLiteral("Choose light, dark, or match system appearance"),
         .symbol = QStringLiteral("circle.lefthalf.filled")});
    row->addControl(newPicker(theme));
    section->addRow(row);
    return section;
}

}  // namespace quillo
