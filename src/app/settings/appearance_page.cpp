// SPDX-License-Identifier: MIT
#include "app/settings/appearance_page.h"

#include <QHBoxLayout>

#include "app/settings/appearance_sections.h"
#include "app/settings/settings_page.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/form_controls.h"
#include "model/persistence_controller.h"

namespace quillo {
namespace {

std::unique_ptr<QWidget> makeResetLine(ClipTypeColorManager& manager) {
    auto line = std::make_unique<QWidget>();
    line->setObjectName(QStringLiteral("ResetLine"));
    auto* row = new QHBoxLayout(line.get());
    row->setContentsMargins(0, 0, 0, 0);
    auto* reset = new PushButton(PushButton::Style::Plain, QStringLiteral("Reset to Defaults"));
    reset->setObjectName(QStringLiteral("ResetEverything"));
    reset->setSymbol(QStringLiteral("arrow.counterclockwise"));
    reset->setToolTip(
        QStringLiteral("Panel, type filters and clip colors; keeps badge colors and groups"));
    reset->setAccessibleDescription(reset->toolTip());
    QObject::connect(reset, &QAbstractButton::clicked, &manager,
                     &ClipTypeColorManager::resetToDefaults);
    row->addWidget(reset);
    row->addStretch(1);
    return line;
}

}  // namespace

std::unique_ptr<QWidget> makeAppearancePage(ThemeManager& theme, ClipTypeColorManager& manager,
                                            ObjectContext& context) {
    auto page = std::make_unique<SettingsPage>(QStringLiteral("Appearance"));
    page->addSection(makeThemeSection(theme).release());
    page->addSection(makeGroupsSection(context).release());
    page->addSection(makePanelSection(manager).release());
    page->addSection(makeTypeFiltersSection(manager).release());
    page->addSection(makePositionSection(manager).release());
    page->addSection(makeBadgeColorsSection(manager).release());
    page->addSection(makePreviewSection(manager, theme).release());
    page->addSection(makeResetLine(manager).release());
    return page;
}

std::unique_ptr<QWidget> makeAppearancePage(const SettingsServices& services) {
    return makeAppearancePage(services.themeManager, services.colorManager,
                              services.persistence.viewContext());
}

}  // namespace quillo
