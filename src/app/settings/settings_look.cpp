// SPDX-License-Identifier: MIT
#include "app/settings/settings_look.h"

#include <QWidget>

#include "appearance/contrast.h"
#include "appearance/palette.h"
#include "library/groups/form_controls.h"

namespace quillo {
namespace {

constexpr QColor kGreen(0x6b, 0xcb, 0x77);
constexpr QColor kRed(0xff, 0x5a, 0x52);
constexpr QColor kLinkBlue(0x7a, 0xae, 0xff);
constexpr QColor kDarkSecondary(0xa1, 0xa1, 0xa8);
constexpr QColor kLightSecondary(0x5f, 0x5f, 0x66);

SettingsLook darkLook() {
    SettingsLook look;
    look.controls = popupLook(paletteFor(ColorScheme::Dark));
    look.window = QColor(0x23, 0x23, 0x26);
    look.divider = QColor(0x34, 0x34, 0x37);
    look.section = QColor(0x32, 0x32, 0x35);
    look.sectionBorder = QColor(0x42, 0x42, 0x44);
    look.track = QColor(0x49, 0x49, 0x4b);
    look.controls.field = QColor(0x40, 0x40, 0x42);
    return look;
}

SettingsLook lightLook() {
    SettingsLook look;
    look.controls = popupLook(paletteFor(ColorScheme::Light));
    look.window = QColor(0xf5, 0xf5, 0xf7);
    look.divider = QColor(0xe1, 0xe1, 0xe3);
    look.section = Qt::white;
    look.sectionBorder = QColor(0xe4, 0xe4, 0xe6);
    look.track = QColor(0xd6, 0xd6, 0xd9);
    look.controls.field = QColor(0xe8, 0xe8, 0xe8);
    return look;
}

SettingsLook completed(SettingsLook look, const QColor& link, const QColor& secondary) {
    look.controls.ground = look.section;
    look.controls.border = look.sectionBorder;
    // Chosen for a panel of any ground; here it stands on these two.
    look.controls.secondaryText =
        readableText(readableText(secondary, {look.section}), {look.controls.field});
    look.controls.separator = look.divider;
    look.success = readableText(kGreen, {look.section});
    look.destructive = readableText(readableText(kRed, {look.section}), {look.controls.field});
    look.controls.destructive = look.destructive;
    look.link = readableText(readableText(link, {look.section}), {look.window});
    look.controls.accentText = look.link;
    look.heading = readableText(look.controls.secondaryText, {look.window});
    return look;
}

}  // namespace

const SettingsLook& settingsLook(ColorScheme scheme) {
    static const SettingsLook kDark = completed(darkLook(), kLinkBlue, kDarkSecondary);
    static const SettingsLook kLight =
        completed(lightLook(), paletteFor(ColorScheme::Light).accent, kLightSecondary);
    return scheme == ColorScheme::Dark ? kDark : kLight;
}

PopupLook settingsControls(ColorScheme scheme) {
    return settingsLook(scheme).controls;
}

const SettingsLook& lookOf(const QWidget& widget) {
    return settingsLook(schemeOf(widget.palette()));
}

QPalette settingsPalette(ColorScheme scheme) {
    const SettingsLook& look = settingsLook(scheme);
    QPalette palette = widgetPalette(scheme);
    palette.setColor(QPalette::Window, look.window);
    palette.setColor(QPalette::Base, look.section);
    palette.setColor(QPalette::PlaceholderText, look.controls.secondaryText);
    palette.setColor(QPalette::Link, look.link);
    palette.setColor(QPalette::LinkVisited, look.success);
    palette.setColor(QPalette::BrightText, look.destructive);
    return palette;
}

void applySettingsLook(QWidget& root) {
    dressControls(root, lookOf(root).controls);
}

}  // namespace quillo
