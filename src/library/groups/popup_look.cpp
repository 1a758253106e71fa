// SPDX-License-Identifier: MIT
#include "library/groups/popup_look.h"

#include <QWidget>

#include "appearance/contrast.h"

namespace quillo {
namespace {

// How far the ground stands out from a dark panel and from a light one, towards white.
constexpr double kRaisedDark = 0.066;
constexpr double kRaisedLight = 0.72;
constexpr double kFieldShare = 0.08;
constexpr double kRingContrast = 1.8;
constexpr QColor kRed(0xff, 0x5a, 0x52);

QColor opaque(QColor color) {
    color.setAlpha(255);
    return color;
}

QColor withAlpha(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

}  // namespace

PopupLook popupLook(const Palette& panel) {
    const QColor base = opaque(panel.panelBackground);
    const bool isDark = luminance(panel.primaryText) > luminance(base);
    PopupLook look;
    look.ground = mixed(base, Qt::white, isDark ? kRaisedDark : kRaisedLight);
    look.primaryText = readableText(panel.primaryText, {look.ground});
    look.field = mixed(look.ground, look.primaryText, kFieldShare);
    // A ground of middling lightness lets no text stand on what is still nearer to it.
    if (!carriesText({look.field}) || !isReadable(look.primaryText, {look.field})) {
        look.field = look.ground;
    }
    look.secondaryText =
        readableText(readableText(panel.secondaryText, {look.ground}), {look.field});
    look.border = withAlpha(look.primaryText, isDark ? 26 : 30);
    look.separator = withAlpha(look.primaryText, 36);
    look.fieldBorder = withAlpha(look.primaryText, 40);
    look.accent = opaque(panel.accent);
    look.onAccent = readableText(Qt::white, {look.accent});
    look.accentText = readableText(look.accent, {look.ground});
    // WCAG 2.1, success criterion 1.4.11, asks for 3 : 1; the ring is told by its shape too.
    const bool isSeen = contrastRatio(look.accent, look.field) >= kRingContrast;
    look.ring = isSeen ? look.accent : look.primaryText;
    look.destructive = readableText(kRed, {look.ground});
    return look;
}

void applyLook(QWidget& widget, const PopupLook& look) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, look.ground);
    palette.setColor(QPalette::Base, look.field);
    palette.setColor(QPalette::Button, look.field);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, look.primaryText);
    }
    palette.setColor(QPalette::PlaceholderText, look.secondaryText);
    palette.setColor(QPalette::Highlight, look.accent);
    palette.setColor(QPalette::HighlightedText, look.onAccent);
    widget.setPalette(palette);
}

}  // namespace quillo
