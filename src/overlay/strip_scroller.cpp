// SPDX-License-Identifier: MIT
#include "overlay/strip_scroller.h"

#include <algorithm>

namespace quillo {
namespace {

constexpr int kGlideDurationMs = 160;
constexpr int kFirstStepMs = 16;

}  // namespace

StripScroller::StripScroller(QObject* parent) : QObject(parent) {
    m_glide.setDuration(kGlideDurationMs);
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_glide, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& at) { moveTo(at.toInt()); });
}

void StripScroller::setLimit(int limit) {
    m_limit = std::max(0, limit);
    if (m_position > m_limit) {
        jumpTo(m_limit);
    }
}

void StripScroller::jumpTo(int position) {
    m_glide.stop();
    moveTo(position);
}

void StripScroller::scrollBy(int pixels) {
    jumpTo(m_position + pixels);
}

void StripScroller::glideBy(int pixels) {
    const bool isGliding = m_glide.state() == QAbstractAnimation::Running;
    const int from = isGliding ? m_glide.endValue().toInt() : m_position;
    const int target = std::clamp(from + pixels, 0, m_limit);
    m_glide.stop();
    if (target == m_position) {
        return;
    }
    m_glide.setStartValue(m_position);
    m_glide.setEndValue(target);
    m_glide.start();
    // The first step at once, not a frame later.
    m_glide.setCurrentTime(kFirstStepMs);
}

void StripScroller::moveTo(int position) {
    const int clamped = std::clamp(position, 0, m_limit);
    if (clamped != m_position) {
        m_position = clamped;
        Q_EMIT moved();
    }
}

}  // namespace quillo
