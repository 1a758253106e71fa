// SPDX-License-Identifier: MIT
#include "library/window/clip_grid_scroller.h"

#include <QScrollBar>
#include <algorithm>

namespace quillo {
namespace {

constexpr int kGlideDurationMs = 140;
constexpr int kFirstStepMs = 16;

}  // namespace

ClipGridScroller::ClipGridScroller(QScrollBar& bar) : m_bar(bar) {
    m_glide.setDuration(kGlideDurationMs);
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_glide, &QVariantAnimation::valueChanged, &bar,
            [this](const QVariant& at) { m_bar.setValue(at.toInt()); });
    connect(&bar, &QScrollBar::sliderPressed, &m_glide, &QVariantAnimation::stop);
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

}  // namespace quillo
