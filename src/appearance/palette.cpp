// SPDX-License-Identifier: MIT
#include "appearance/palette.h"

#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

double linear(float component) {
    return component <= 0.04045F ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

int mixed(int base, int over, double share) {
    return int(std::lround(base * (1 - share) + over * share));
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

QColor tintedCard(const Palette& palette, const QColor& kind, double share) {
    const QColor& base = palette.cardBase;
    return QColor(mixed(base.red(), kind.red(), share), mixed(base.green(), kind.green(), share),
                  mixed(base.blue(), kind.blue(), share));
}

double contrastRatio(const QColor& first, const QColor& second) {
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

ColorScheme desktopColorScheme() {
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    return luminance(window) < 0.18 ? ColorScheme::Dark : ColorScheme::Light;
}

}  // namespace quillo
