// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_scroller.h"

#include <QScrollBar>
#include <algorithm>

namespace quillo {
namespace {

constexpr int kGlideDurationMs = 140;
constexpr int kFirstStepMs = 16;
constexpr int kPullIntervalMs = 16;
constexpr int kEdge = 40;
constexpr int kDepthPerPixel = 3;
constexpr int kFarthestPull = 60;

}  // namespace

ClipGridScroller::ClipGridScroller(QScrollBar& bar) : m_bar(bar) {
    m_glide.setDuration(kGlideDurationMs);
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_glide, &QVariantAnimation::valueChanged, &bar,
            [this](const QVariant& at) { m_bar.setValue(at.toInt()); });
    connect(&bar, &QScrollBar::sliderPressed, &m_glide, &QVariantAnimation::stop);
    m_pull.setInterval(kPullIntervalMs);
    connect(&m_pull, &QTimer::timeout, this, [this] { jumpTo(m_bar.value() + m_pullStep); });
}

void ClipGridScroller::jumpTo(int position) {
    m_glide.stop();
    m_bar.setValue(position);
}

void ClipGridScroller::glideBy(int pixels) {
    const bool isGliding = m_glide.state() == QAbstractAnimation::Running;
    const int from = isGliding ? m_glide.endValue().toInt() : m_bar.value();
    const int target = std::clamp(from + pixels, m_bar.minimum(), m_bar.maximum());
    m_glide.stop();
    if (target == m_bar.value()) {
        return;
    }
    m_glide.setStartValue(m_bar.value());
    m_glide.setEndValue(target);
    m_glide.start();
    // The first step at once, not a frame later.
    m_glide.setCurrentTime(kFirstStepMs);
}

void ClipGridScroller::shiftBy(int pixels) {
    const bool isGliding = m_glide.state() == QAbstractAnimation::Running;
    const int left = isGliding ? m_glide.endValue().toInt() - m_bar.value() : 0;
    jumpTo(m_bar.value() + pixels);
    if (left != 0) {
        glideBy(left);
    }
}

// The farther, the faster.
void ClipGridScroller::pull(int y, int height) {
    const int above = kEdge - y;
    const int below = y - (height - 1 - kEdge);
    const int depth = above > 0 ? -above : std::max(0, below);
    m_pullStep = std::clamp(depth / kDepthPerPixel, -kFarthestPull, kFarthestPull);
    if (m_pullStep == 0) {
        m_pull.stop();
    } else if (!m_pull.isActive()) {
        m_pull.start();
    }
}

void ClipGridScroller::endPull() {
    m_pull.stop();
}

}  // namespace quillo
