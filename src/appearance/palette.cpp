// SPDX-License-Identifier: MIT
#include "appearance/palette.h"

#include "appearance/contrast.h"

namespace quillo {
namespace {

// Fusion shades its edges with these.
void setShades(QPalette& palette, const QColor& button, const QColor& ink) {
    palette.setColor(QPalette::Light, mixed(button, Qt::white, 0.2));
    palette.setColor(QPalette::Midlight, mixed(button, Qt::white, 0.1));
    palette.setColor(QPalette::Mid, mixed(button, Qt::black, 0.15));
    palette.setColor(QPalette::Dark, mixed(button, Qt::black, 0.3));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::BrightText, ink);
}

void setTexts(QPalette& palette, const Palette& colors) {
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, colors.primaryText);
        palette.setColor(QPalette::Disabled, role,
                         mixed(colors.panelBackground, colors.primaryText, 0.45));
    }
    palette.setColor(QPalette::PlaceholderText, colors.secondaryText);
    const Ground page{colors.cardBase};
    palette.setColor(QPalette::Link, readableText(colors.accent, page));
    palette.setColor(QPalette::LinkVisited, readableText(QColor(0x9b, 0x59, 0xb6), page));
}

}  // namespace

const Palette& paletteFor(ColorScheme scheme) {
    static const Palette kLight{.panelBackground = QColor(0xf0, 0xf0, 0xf2),
                                .panelBorder = QColor(0, 0, 0, 28),
                                .field = QColor(0xe1, 0xe1, 0xe3),
                                .primaryText = QColor(0x1c, 0x1c, 0x1e),
                                .secondaryText = QColor(0x4a, 0x4a, 0x52),
                                .cardBase = QColor(0xff, 0xff, 0xff),
                                .cardBorder = QColor(0, 0, 0, 26),
                                .accent = QColor(0x2d, 0x6f, 0xe8)};
    static const Palette kDark{.panelBackground = QColor(0x2c, 0x2c, 0x2e),
                               .panelBorder = QColor(255, 255, 255, 30),
                               .field = QColor(0x3c, 0x3c, 0x3e),
                               .primaryText = QColor(0xf5, 0xf5, 0xf7),
                               .secondaryText = QColor(0xc2, 0xc2, 0xca),
                               .cardBase = QColor(0x37, 0x37, 0x3a),
                               .cardBorder = QColor(255, 255, 255, 30),
                               .accent = QColor(0x2d, 0x6f, 0xe8)};
    return scheme == ColorScheme::Dark ? kDark : kLight;
}

QPalette widgetPalette(ColorScheme scheme) {
    const Palette& colors = paletteFor(scheme);
    QPalette palette;
    palette.setColor(QPalette::Window, colors.panelBackground);
    palette.setColor(QPalette::Base, colors.cardBase);
    palette.setColor(QPalette::AlternateBase, mixed(colors.cardBase, colors.panelBackground, 0.5));
    palette.setColor(QPalette::Button, colors.field);
    palette.setColor(QPalette::ToolTipBase, colors.cardBase);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.field);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    setTexts(palette, colors);
    setShades(palette, colors.field, colors.primaryText);
    return palette;
}

ColorScheme schemeOf(const QPalette& palette) {
    // Halfway in lightness, not in luminance.
    return luminance(palette.color(QPalette::Active, QPalette::Window)) < 0.18 ? ColorScheme::Dark
                                                                               : ColorScheme::Light;
}

}  // namespace quillo
