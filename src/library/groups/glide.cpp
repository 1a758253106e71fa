// SPDX-License-Identifier: MIT
#include "library/groups/glide.h"

#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

constexpr int kDurationMs = 160;
constexpr int kFrameMs = 16;

}  // namespace

Glide::Glide(QObject* parent) : QObject(parent), m_time(kDurationMs) {
    m_time.setUpdateInterval(kFrameMs);
    m_time.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_time, &QTimeLine::valueChanged, this, [this](qreal done) {
        Q_EMIT moved(m_from + int(std::lround(done * (m_target - m_from))));
    });
}

void Glide::start(int position, int pixels, int least, int most) {
    const int target = std::clamp(position + left(position) + pixels, least, most);
    stop();
    if (target == position) {
        return;
    }
    m_from = position;
    m_target = target;
    // The first step at once, not a frame later.
    m_time.setCurrentTime(0);
    m_time.setCurrentTime(kFrameMs);
    m_time.resume();
}

void Glide::stop() {
    m_time.stop();
}

int Glide::left(int position) const {
    return m_time.state() == QTimeLine::Running ? m_target - position : 0;
}

}  // namespace quillo
