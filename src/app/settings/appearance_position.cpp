// SPDX-License-Identifier: MIT
#include <algorithm>

#include "app/settings/appearance_sections.h"
#include "app/settings/following.h"
#include "app/settings/segmented_control.h"
#include "app/settings/settings_section.h"
#include "app/settings/toggle_switch.h"
#include "appearance/clip_type_color_manager.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr int kPickerWidth = 200;

using Control = PanelPositionControl;

QString title(PanelPosition position) {
    switch (position) {
        case PanelPosition::Top:
            return QStringLiteral("Top");
        case PanelPosition::Center:
            return QStringLiteral("Center");
        case PanelPosition::Bottom:
            break;
    }
    return QStringLiteral("Bottom");
}

SettingsRow* newDockRow(Control* control) {
    auto* picker = new SegmentedControl(QStringLiteral("Dock Position"));
    picker->setFixedWidth(kPickerWidth);
    const auto positions = allCases<PanelPosition>();
    for (const PanelPosition position : positions) {
        picker->addSegment(title(position));
    }
    auto* row = new SettingsRow({.title = QStringLiteral("Dock Position")});
    row->setPlain();
    row->addControl(picker);
    if (control != nullptr) {
        QObject::connect(picker, &SegmentedControl::chosen, control, [control, positions](int at) {
            control->setPanelPosition(positions[size_t(at)]);
        });
        follow(*control, &Control::panelPositionChanged, picker, [control, picker, positions] {
            const auto at = std::ranges::find(positions, control->panelPosition());
            picker->setCurrentIndex(int(at - positions.begin()));
        });
    }
    return row;
}

void showLock(SettingsRow& row, ToggleSwitch& toggle, bool isLocked) {
    toggle.setChecked(isLocked);
    row.setSymbol(isLocked ? QStringLiteral("lock.fill") : QStringLiteral("lock.open"));
    row.setCaption(isLocked ? QStringLiteral("Panel position is locked.")
                            : QStringLiteral("Drag the panel to reposition it. Changes are saved "
                                             "automatically."));
    toggle.setAccessibleDescription(row.caption().text());
}

SettingsRow* newLockRow(Control* control) {
    auto* row = new SettingsRow(
        {.title = QStringLiteral("Lock Position"), .symbol = QStringLiteral("lock.fill")});
    row->setPlain();
    auto* toggle = new ToggleSwitch(QStringLiteral("Lock Position"));
    row->addControl(toggle);
    showLock(*row, *toggle, true);
    if (control != nullptr) {
        QObject::connect(toggle, &ToggleSwitch::toggledByPerson, control,
                         &Control::setPositionLocked);
        follow(*control, &Control::positionLockedChanged, toggle,
               [control, row, toggle] { showLock(*row, *toggle, control->isPositionLocked()); });
    }
    return row;
}

SettingsRow* newResetRow(Control* control) {
    auto* reset =
        new PushButton(PushButton::Style::Plain, QStringLiteral("Reset to Default Position"));
    if (control != nullptr) {
        QObject::connect(reset, &QAbstractButton::clicked, control,
                         &Control::resetToDefaultPosition);
    }
    auto* row = new SettingsRow({});
    row->title().hide();
    row->addBesideTitle(reset);
    return row;
}

}  // namespace

std::unique_ptr<QWidget> makePositionSection(const ClipTypeColorManager& manager) {
    auto section = std::make_unique<SettingsSection>(QStringLiteral("Position"));
    section->setObjectName(QStringLiteral("PositionSection"));
    Control* control = manager.overlayController();
    section->addRow(newDockRow(control));
    section->addRow(newLockRow(control));
    section->addRow(newResetRow(control));
    section->setEnabled(control != nullptr);
    if (control != nullptr) {
        QObject::connect(control, &QObject::destroyed, section.get(),
                         [section = section.get()] { section->setEnabled(false); });
    }
    return section;
}

}  // namespace quillo
