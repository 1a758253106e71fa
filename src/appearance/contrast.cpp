// SPDX-License-Identifier: MIT
#include "appearance/contrast.h"

#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

constexpr int kSteps = 20;

double linear(float component) {
    return component <= 0.04045F ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

int mixedByte(int base, int over, double share) {
    return int(std::lround(base * (1 - share) + over * share));
}

double leastContrast(const QColor& text, const Ground& ground) {
    return std::min(contrastRatio(text, ground.overBlack()),
                    contrastRatio(text, ground.overWhite()));
}

QColor betterEnd(const Ground& ground) {
    return leastContrast(Qt::white, ground) >= leastContrast(Qt::black, ground) ? Qt::white
                                                                                : Qt::black;
}

}  // namespace

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrastRatio(const QColor& first, const QColor& second) {
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& base, const QColor& over, double share) {
    const double part = std::clamp(share, 0.0, 1.0);
    return {mixedByte(base.red(), over.red(), part), mixedByte(base.green(), over.green(), part),
            mixedByte(base.blue(), over.blue(), part)};
}

Ground layered(const Ground& below, const QColor& color, double opacity) {
    const double part = std::clamp(opacity, 0.0, 1.0);
    const double coverage = 1 - (1 - below.coverage) * (1 - part);
    // Of what is not seen through, the new layer has its own part and the one below the rest.
    return {coverage > 0 ? mixed(below.color, color, part / coverage) : color, coverage};
}

// A text between the two ends in lightness could be lost on something in between.
bool isReadable(const QColor& text, const Ground& ground) {
    const double own = luminance(text);
    const bool isOutside =
        own >= luminance(ground.overWhite()) || own <= luminance(ground.overBlack());
    return isOutside && leastContrast(text, ground) >= kTextContrast;
}

QColor readableText(const QColor& wanted, const Ground& ground) {
    const QColor end = betterEnd(ground);
    for (int step = 0; step < kSteps; ++step) {
        const QColor text = mixed(wanted, end, double(step) / kSteps);
        if (isReadable(text, ground)) {
            return text;
        }
    }
    return end;
}

bool carriesText(const Ground& ground) {
    return leastContrast(betterEnd(ground), ground) >= kTextContrast;
}

QColor awayFrom(const QColor& text, const Ground& ground) {
    return luminance(text) >= luminance(ground.overWhite()) ? Qt::black : Qt::white;
}

}  // namespace quillo
