// SPDX-License-Identifier: MIT
#include "library/window/library_look.h"

#include <QWidget>

namespace quillo {
namespace {

LibraryLook withControls(LibraryLook look, ColorScheme scheme) {
    look.menus = paletteFor(scheme);
    look.controls = popupLook(look.menus);
    look.controls.ground = look.ground;
    look.controls.field = look.field;
    look.controls.primaryText = look.primaryText;
    look.controls.secondaryText = look.secondaryText;
    look.controls.accent = look.accent;
    look.controls.onAccent = look.onAccent;
    look.controls.accentText = readableText(look.accent, {look.ground});
    look.controls.ring = look.accent;
    return look;
}

LibraryLook darkLook() {
    return {.ground = QColor(0x1e, 0x1e, 0x20),
            .sidebar = QColor(0x26, 0x26, 0x29),
            .line = QColor(0x35, 0x35, 0x38),
            .card = QColor(0x2a, 0x2a, 0x2d),
            .cardBorder = QColor(0x3d, 0x3d, 0x3f),
            .field = QColor(0x2e, 0x2e, 0x30),
            .primaryText = QColor(0xf2, 0xf2, 0xf5),
            .secondaryText = QColor(0xa9, 0xa9, 0xb0)};
}

LibraryLook lightLook() {
    return {.ground = QColor(0xff, 0xff, 0xff),
            .sidebar = QColor(0xf3, 0xf3, 0xf6),
            .line = QColor(0xe0, 0xe0, 0xe2),
            .card = QColor(0xfa, 0xfa, 0xfc),
            .cardBorder = QColor(0xe3, 0xe3, 0xe5),
            .field = QColor(0xf1, 0xf1, 0xf1),
            .primaryText = QColor(0x1c, 0x1c, 0x1e),
            .secondaryText = QColor(0x5e, 0x5e, 0x66)};
}

}  // namespace

const LibraryLook& libraryLook(ColorScheme scheme) {
    static const LibraryLook kDark = withControls(darkLook(), ColorScheme::Dark);
    static const LibraryLook kLight = withControls(lightLook(), ColorScheme::Light);
    return scheme == ColorScheme::Dark ? kDark : kLight;
}

const LibraryLook& libraryLookOf(const QWidget& widget) {
    return libraryLook(schemeOf(widget.palette()));
}

PopupLook librarySheet(ColorScheme scheme) {
    return popupLook(libraryLook(scheme).menus);
}

}  // namespace quillo
