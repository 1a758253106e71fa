// SPDX-License-Identifier: MIT
#include <array>

#include "app/settings/appearance_sections.h"
#include "app/settings/color_well.h"
#include "app/settings/following.h"
#include "app/settings/segmented_control.h"
#include "app/settings/settings_section.h"
#include "app/settings/value_slider.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kPickerWidth = 150;
constexpr int kPercentWidth = 38;
constexpr std::array kWidths = {0.8, 1.0};
/// From here on a width that was edited by hand counts as the whole.
constexpr double kWholeWidth = 0.9;

using Manager = ClipTypeColorManager;

SettingsRow* newRow(const QString& title) {
    auto* row = new SettingsRow({.title = title});
    row->setPlain();
    return row;
}

SettingsRow* newWidthRow(Manager& manager) {
    auto* picker = new SegmentedControl(QStringLiteral("Width"));
    picker->setFixedWidth(kPickerWidth);
    for (const double width : kWidths) {
        picker->addSegment(percentText(width));
    }
    QObject::connect(picker, &SegmentedControl::chosen, &manager,
                     [&manager](int index) { manager.setPanelWidth(kWidths.at(size_t(index))); });
    follow(manager, &Manager::panelWidthChanged, picker, [&manager, picker] {
        picker->setCurrentIndex(manager.panelWidth() >= kWholeWidth ? 1 : 0);
    });
    auto* row = newRow(QStringLiteral("Width"));
    row->addControl(picker);
    return row;
}

void chooseBackground(Manager& manager, const QColor& color) {
    manager.setPanelBackgroundColor(color);
    manager.setHasCustomPanelBackground(true);
    manager.savePanelBackgroundColor();
}

SettingsRow* newBackgroundRow(Manager& manager) {
    auto* reset = new PushButton(PushButton::Style::Link, QStringLiteral("Reset to default"));
    reset->setSymbol(QStringLiteral("arrow.counterclockwise"));
    reset->setAccessibleDescription(QStringLiteral("The panel's background"));
    QObject::connect(reset, &QAbstractButton::clicked, &manager,
                     [&manager] { manager.resetPanelBackgroundColor(); });
    auto* well = new ColorWell(QStringLiteral("Background"));
    QObject::connect(well, &ColorWell::chosen, &manager,
                     [&manager](const QColor& color) { chooseBackground(manager, color); });
    follow(manager, &Manager::panelBackgroundColorChanged, well,
           [&manager, well] { well->setColor(manager.panelBackgroundColor()); });
    auto* row = newRow(QStringLiteral("Background"));
    row->addControl(reset);
    row->addControl(well);
    return row;
}

struct Opacity {
    QString title;
    double (Manager::*value)() const;
    void (Manager::*setValue)(double);
    void (Manager::*changed)();
};

SettingsRow* newOpacityRow(Manager& manager, const Opacity& opacity) {
    const ValueSlider::Range range{.least = PanelLook::kLeastOpacity, .greatest = 1, .step = 0.05};
    auto* slider = new ValueSlider(opacity.title, range);
    slider->setFixedWidth(slider->sizeHint().width());
    auto* percent = new FormLabel(FormLabel::Style::Text);
    percent->setForegroundRole(QPalette::PlaceholderText);
    percent->setFixedWidth(kPercentWidth);
    percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QObject::connect(slider, &ValueSlider::chosen, &manager, opacity.setValue);
    follow(manager, opacity.changed, slider,
           [&manager, slider, percent, range, value = opacity.value] {
               slider->setShownValue((manager.*value)());
               percent->setText(percentText(qMax(range.least, (manager.*value)())));
               slider->setAccessibleDescription(percent->text());
           });
    auto* row = newRow(opacity.title);
    row->addControl(slider);
    row->addControl(percent);
    return row;
}

}  // namespace

std::unique_ptr<QWidget> makePanelSection(ClipTypeColorManager& manager) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Panel"));
    section->setObjectName(QStringLiteral("PanelSection"));
    section->addRow(newWidthRow(manager));
    section->addRow(newBackgroundRow(manager));
    section->addRow(
        newOpacityRow(manager, {QStringLiteral("Panel Opacity"), &Manager::panelOpacity,
                                &Manager::setPanelOpacity, &Manager::panelOpacityChanged}));
    section->addRow(
        newOpacityRow(manager, {QStringLiteral("Item Opacity"), &Manager::itemOpacity,
                                &Manager::setItemOpacity, &Manager::itemOpacityChanged}));
    return section;
}

}  // namespace quillo
