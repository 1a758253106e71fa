// SPDX-License-Identifier: MIT
#include "app/status/drop_bounce.h"

#include <QEasingCurve>
#include <QPointF>
#include <algorithm>
#include <array>
#include <cmath>

namespace quillo {
namespace {

// At equal distances of eased time.
constexpr std::array<BounceFrame, 5> kKeyFrames = {
    BounceFrame{0, 1.0, 1.0}, {8, 1.3, 0.7}, {-3, 0.85, 1.2}, {1, 1.05, 0.95}, {0, 1.0, 1.0}};

double eased(double progress) {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
    return curve.valueForProgress(progress);
}

}  // namespace

BounceFrame dropBounceAt(std::chrono::milliseconds elapsed) {
    const double progress = double(elapsed.count()) / double(kBounceDuration.count());
    if (progress <= 0 || progress >= 1) {
        return {};
    }
    const double place = eased(progress) * double(kKeyFrames.size() - 1);
    const size_t before = std::min(size_t(place), kKeyFrames.size() - 2);
    const double share = place - double(before);
    const BounceFrame& from = kKeyFrames[before];
    const BounceFrame& to = kKeyFrames[before + 1];
    return {.dropPoints = std::lerp(from.dropPoints, to.dropPoints, share),
            .scaleX = std::lerp(from.scaleX, to.scaleX, share),
            .scaleY = std::lerp(from.scaleY, to.scaleY, share)};
}

}  // namespace quillo
