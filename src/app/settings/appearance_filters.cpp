// SPDX-License-Identifier: MIT
#include "app/settings/appearance_sections.h"
#include "app/settings/filter_list.h"
#include "app/settings/settings_section.h"
#include "appearance/clip_type_color_manager.h"

namespace quillo {

std::unique_ptr<QWidget> makeTypeFiltersSection(ClipTypeColorManager& manager) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Type Filters"));
    section->setObjectName(QStringLiteral("TypeFiltersSection"));
    auto* hint =
        new SettingsRow({.title = {},
                         .caption = QStringLiteral("Show, hide, and reorder the type filter chips "
                                                   "in the search bar. Drag to reorder.")});
    hint->title().hide();
    section->addRow(hint);
    section->addRow(new FilterList(manager));
    return section;
}

}  // namespace quillo
